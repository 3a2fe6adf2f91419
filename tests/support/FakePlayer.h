#pragma once

#include "FakePlugins.h"
#include "interfaces/services/ITsMediaPlayerPlugin.h"

#include <QGraphicsRectItem>
#include <QPointer>
#include <QSet>
#include <QSize>
#include <QStringList>
#include <QWidget>

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
    void attachOwner(QWidget *pOwner) override;
    void detachOwner(QWidget *pOwner) override;
    QWidget *videoWidget(QWidget *pOwner) override;
    void resetOwner(QWidget *pOwner) override;
    QString currentFrame(QWidget *pOwner) override;
    void positionShown(QWidget *pOwner) override;
    void attachAudioOwner(QWidget *pOwner, bool bWithWave) override;
    void setWavePosition(QWidget *pOwner, qint64 nMsec) override;
    void setWaveSource(QWidget *pOwner, const QString &path, int nWidth) override;
    void setWaveDuration(QWidget *pOwner, qint64 nMsec) override;
    QWidget *waveWidget(QWidget *pOwner) override;
    void initAudioView() override;
    QGraphicsItem *audioItem() override;
    void animateAudioItem(int nState) override;
    double audioItemScale() override { return itemScale; }
    void layoutAudioItem() override;
    void openAndPlay(QWidget *pOwner, const QString &path, int nStartMsec) override;
    void openAudio(const QString &path) override;
    void play() override;
    void pause() override;
    void stop(QWidget *pOwner) override;
    void seek(int nMsec) override;
    void setMute(bool bMute) override;
    void setVolume(float fVolume) override;
    int state() override { return now; }
    int videoWidth() override { return frame.width(); }
    int videoHeight() override { return frame.height(); }

    /** Takes what was asked so far. */
    QStringList takeCalls();
    /** What was asked that begins with one of these words, in order. */
    QStringList callsOf(const QStringList &words) const;

    // What the player is like.
    int now = Stopped;
    QSize frame;
    QString framePicture;
    bool opensFiles = true; ///< False: stays stopped when asked to open.
    bool hasSignals = true; ///< False: there is no signal object.
    bool hasWidgets = true; ///< False: no video widget, no waveform, no cover item.
    double itemScale = 1.0;

    FakePlayerSignals times;
    QSet<QWidget *> owners;             ///< Attached now.
    QString openPath;                   ///< The file that it holds open.
    QPointer<FakeWave> wave;            ///< The last one handed out.
    QGraphicsRectItem *pItem = nullptr; ///< The last one handed out; belongs to its scene.
    QStringList calls;

private:
    void note(const QString &call) { calls.append(call); }
};
