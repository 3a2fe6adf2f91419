#pragma once

#include "FakePlugins.h"
#include "interfaces/services/ITsMediaPlayerPlugin.h"

#include <QGraphicsRectItem>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>
#include <QSize>
#include <QStringList>
#include <QWidget>

#include <utility>

/** Emits what the test says, from any thread. */
class FakePlayerSignals final : public QObject {
    Q_OBJECT

Q_SIGNALS:
    void signal_TotalTimeChanged(qint64 nMsec);
    void signal_currentTime(qint64 nMsec);
};

/** A waveform that is clicked when the test says so. */
class FakeWave final : public QWidget {
    Q_OBJECT

Q_SIGNALS:
    void signal_seekPlay(qint64 nMsec);
};

/** A media player that plays nothing and remembers what was asked of it. GUI thread only. */
class FakePlayer final : public FakePlugin, public ITsMediaPlayerPlugin {
    Q_OBJECT
    Q_INTERFACES(ITsMediaPlayerPlugin)

public:
    QObject *getSignalObject() override { return hasSignals ? &times : nullptr; }
    void attachOwner(QWidget *pOwner) override { owners.insert(pOwner); }
    void attachAudioOwner(QWidget *pOwner, bool) override { owners.insert(pOwner); }
    void detachOwner(QWidget *pOwner) override
    {
        owners.remove(pOwner);
        openPath.clear();
    }
    QWidget *videoWidget(QWidget *) override { return hasWidgets ? new QWidget : nullptr; }
    void resetOwner(QWidget *) override {}
    QString currentFrame(QWidget *) override { return framePicture; }
    void positionShown(QWidget *) override { note(QStringLiteral("shown")); }
    void setWavePosition(QWidget *, qint64 nMsec) override { note(QStringLiteral("wave position %1").arg(nMsec)); }
    void setWaveSource(QWidget *, const QString &path, int) override { note(QStringLiteral("wave ") + path); }
    void setWaveDuration(QWidget *, qint64 nMsec) override { note(QStringLiteral("wave duration %1").arg(nMsec)); }
    QWidget *waveWidget(QWidget *) override
    {
        wave = hasWidgets ? new FakeWave : nullptr;
        return wave;
    }
    void initAudioView() override {}
    QGraphicsItem *audioItem() override
    {
        item = hasWidgets ? new QGraphicsRectItem(-90, -90, 180, 180) : nullptr;
        return item;
    }
    void animateAudioItem(int nState) override { note(QStringLiteral("animate %1").arg(nState)); }
    double audioItemScale() override { return itemScale; }
    void layoutAudioItem() override { note(QStringLiteral("lay out item")); }
    void openAudio(const QString &path) override { openAndPlay(nullptr, path, 0); }
    void openAndPlay(QWidget *, const QString &path, int nStartMsec) override
    {
        note(QStringLiteral("open %1 %2").arg(path).arg(nStartMsec));
        if (!opensFiles)
            return;
        openPath = path;
        now = Playing;
    }
    void play() override { change(QStringLiteral("play"), Playing); }
    void pause() override { change(QStringLiteral("pause"), Paused); }
    void stop(QWidget *) override
    {
        change(QStringLiteral("stop"), Stopped);
        openPath.clear();
    }
    void seek(int nMsec) override { note(QStringLiteral("seek %1").arg(nMsec)); }
    void setMute(bool bMute) override { note(QStringLiteral("mute %1").arg(bMute)); }
    void setVolume(float fVolume) override { note(QStringLiteral("volume %1").arg(double(fVolume), 0, 'f', 2)); }
    int state() override { return now; }
    int videoWidth() override { return frame.width(); }
    int videoHeight() override { return frame.height(); }

    /** Takes what was asked so far, joined by commas: all of it, or what begins with this word. */
    QString takeCalls(const QString &word = {})
    {
        const QStringList taken = std::exchange(calls, {});
        return QStringList(taken.filter(QRegularExpression(QLatin1Char('^') + word))).join(QLatin1Char(','));
    }

    // What the player is like.
    int now = Stopped;
    QSize frame;
    QString framePicture;
    bool opensFiles = true; ///< False: stays stopped when asked to open.
    bool hasSignals = true; ///< False: there is no signal object.
    bool hasWidgets = true; ///< False: no video widget, no waveform, no cover item.
    double itemScale = 1.0;

    FakePlayerSignals times;
    QSet<QWidget *> owners;            ///< Attached now.
    QString openPath;                  ///< The file that it holds open.
    QPointer<FakeWave> wave;           ///< The last one handed out.
    QGraphicsRectItem *item = nullptr; ///< The last one handed out; belongs to its scene.
    QStringList calls;

private:
    void note(const QString &call) { calls.append(call); }
    void change(const QString &call, int nState)
    {
        note(call);
        if (now != Stopped)
            now = nState;
    }
};
