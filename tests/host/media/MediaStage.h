#pragma once

#include "services/mediaplayer/MediaPlayer.h"
#include "services/mediaplayer/playback/PlayerThread.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QStringList>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>

inline QString mediaSample(const char *pName)
{
    return QStringLiteral(MEDIA_DIR "/") + QString::fromUtf8(pName);
}

/** A media player that makes no noise, with an owner widget as previews have it. */
struct MediaStage {
    QTemporaryDir folder;
    QWidget owner;
    std::unique_ptr<MediaPlayer> player;
    ITsMediaPlayerPlugin *service = nullptr; ///< The player as previews see it.
    QStringList problems;
    std::unique_ptr<QSignalSpy> opened;
    std::unique_ptr<QSignalSpy> positions;

    explicit MediaStage(const QByteArray &soundOutput = QByteArrayLiteral("null"),
                        Rendering rendering = Rendering::Software)
    {
        PlayerSetup setup;
        setup.rendering = rendering;
        setup.soundOutput = soundOutput;
        player = std::make_unique<MediaPlayer>(setup, folder.filePath(QStringLiteral("waves")), nullptr);
        player->setProblemHandler([this](const QString &problem) { problems.append(problem); });
        service = player.get();
        opened = std::make_unique<QSignalSpy>(service->getSignalObject(), SIGNAL(signal_TotalTimeChanged(qint64)));
        positions = std::make_unique<QSignalSpy>(service->getSignalObject(), SIGNAL(signal_currentTime(qint64)));
    }

    /** A video surface of this size on screen. */
    QWidget *showVideo(const QSize &size)
    {
        service->attachOwner(&owner);
        auto *pLayout = new QVBoxLayout(&owner);
        pLayout->setContentsMargins(0, 0, 0, 0);
        QWidget *pArea = service->videoWidget(&owner);
        pLayout->addWidget(pArea);
        owner.resize(size);
        owner.show();
        return pArea;
    }

    qint64 lastPosition() const { return positions->isEmpty() ? -1 : positions->last().constFirst().toLongLong(); }
    qint64 duration() const { return opened->isEmpty() ? -1 : opened->last().constFirst().toLongLong(); }

    /** A copy of a sample that a test may change. */
    QString copyOf(const char *pName, const char *pAs) const
    {
        const QString path = folder.filePath(QString::fromUtf8(pAs));
        return QFile::copy(mediaSample(pName), path) ? path : QString();
    }

    static int handles()
    {
        return int(QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size());
    }
    static int threads() { return int(QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs).size()); }
};

/** The colour in the middle of what a widget shows. */
inline QColor middleOf(QWidget *pWidget)
{
    const QImage image = pWidget->grab().toImage();
    return image.pixelColor(image.width() / 2, image.height() / 2);
}
