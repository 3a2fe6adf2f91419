#pragma once

#include "interfaces/ReservedOperation.h"

#include <QString>
#include <QtPlugin>

class QGraphicsItem;
class QObject;
class QWidget;

/**
 * The host's media player. It keeps one player for each owner widget; operations without an owner act on the player
 * that was attached or opened last. The positions of the operations are fixed; the numbers count from 0.
 *
 * Times are milliseconds. Thread: GUI thread only. An owner that was never attached is ignored.
 */
class ITsMediaPlayerPlugin {
public:
    /** Answer of state(). */
    enum PlayerState { Stopped = 0, Paused = 1, Playing = 2 };

    /**
     * Keys of QGraphicsItem::data() of the cover item. CoverPicture: the file's preview picture, a QPixmap of 360 x 360
     * pixels, to be drawn instead of the item's own; none where the file has no preview picture. The item is updated
     * after a change.
     */
    enum CoverItemData { CoverPicture = 0 };

    /**
     * 0: the object, owned by the plug-in, that emits signal_TotalTimeChanged(qint64) once a file is open and
     * signal_currentTime(qint64) while it plays.
     */
    virtual QObject *getSignalObject() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(1)
    BIGIMGPREVIEW_RESERVED_OPERATION(2)

    /** 3: binds a video player to the owner. */
    virtual void attachOwner(QWidget *pOwner) = 0;

    /** 4: releases the owner's player and what it has open. */
    virtual void detachOwner(QWidget *pOwner) = 0;

    /** 5: the widget in which the owner's player draws; owned by the widget it is placed in. May be null. */
    virtual QWidget *videoWidget(QWidget *pOwner) = 0;

    /** 6: the owner went back to idle: the last frame may be forgotten. */
    virtual void resetOwner(QWidget *pOwner) = 0;

    /** 7: path of a picture file of the frame on screen; empty when there is none. */
    virtual QString currentFrame(QWidget *pOwner) = 0;

    /** 8: the last reported position was shown. */
    virtual void positionShown(QWidget *pOwner) = 0;

    /** 9: binds an audio player to the owner. */
    virtual void attachAudioOwner(QWidget *pOwner, bool bWithWave) = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(10)
    BIGIMGPREVIEW_RESERVED_OPERATION(11)
    BIGIMGPREVIEW_RESERVED_OPERATION(12)

    /** 13: moves the waveform's play mark; -1 clears it. */
    virtual void setWavePosition(QWidget *pOwner, qint64 nMsec) = 0;

    /** 14: prepares the waveform of a file for a width in device-independent pixels. */
    virtual void setWaveSource(QWidget *pOwner, const QString &path, int nWidth) = 0;

    /** 15: scales the waveform to the file's duration. */
    virtual void setWaveDuration(QWidget *pOwner, qint64 nMsec) = 0;

    /** 16: the waveform widget, which emits signal_seekPlay(qint64); owned by the widget it is placed in. */
    virtual QWidget *waveWidget(QWidget *pOwner) = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(17)

    /** 18: prepares the cover item; called once. */
    virtual void initAudioView() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(19)

    /** 20: the cover item; owned by the scene it is placed in. */
    virtual QGraphicsItem *audioItem() = 0;

    /** 21: one animation step of the cover item, for a PlayerState. */
    virtual void animateAudioItem(int nState) = 0;

    /** 22: the cover item's present scale. */
    virtual double audioItemScale() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(23)
    BIGIMGPREVIEW_RESERVED_OPERATION(24)

    /** 25: re-places the cover item after its view was resized. */
    virtual void layoutAudioItem() = 0;

    /** 26: opens a video and plays it from a position. */
    virtual void openAndPlay(QWidget *pOwner, const QString &path, int nStartMsec) = 0;

    /** 27: opens an audio file and plays it. */
    virtual void openAudio(const QString &path) = 0;

    /** 28: resumes. */
    virtual void play() = 0;

    /** 29: pauses. */
    virtual void pause() = 0;

    /** 30: stops and closes the owner's file. */
    virtual void stop(QWidget *pOwner) = 0;

    /** 31: moves to a position. */
    virtual void seek(int nMsec) = 0;

    /** 32: switches the sound off or on. */
    virtual void setMute(bool bMute) = 0;

    /** 33: volume from 0.0 to 1.0. */
    virtual void setVolume(float fVolume) = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(34)

    /** 35: a PlayerState. */
    virtual int state() = 0;

    /** 36: frame width in pixels, as displayed; 0 until known. */
    virtual int videoWidth() = 0;

    /** 37: frame height in pixels, as displayed; 0 until known. */
    virtual int videoHeight() = 0;

protected:
    ~ITsMediaPlayerPlugin() = default;
};

Q_DECLARE_INTERFACE(ITsMediaPlayerPlugin, "Tessaro.Plugin.ITsMediaPlayerPlugin/1.0")
