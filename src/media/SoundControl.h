#pragma once

#include <QObject>
#include <QPoint>

class MediaButton;
class QEvent;
class QWidget;
class SoundControlWin;

/**
 * The volume button of a media bar with its pop-up slider: when the pop-up comes and goes, muting, and the icon. The
 * bar is the event filter of both and hands their events on.
 *
 * Owner: the bar. Thread: GUI thread.
 */
class SoundControl : public QObject {
    Q_OBJECT

public:
    SoundControl(MediaButton *pButton, QWidget *pBar);

    SoundControlWin *window() const { return m_pWindow; }
    int volume() const;
    /** Shows a volume that somebody else has set. */
    void showVolume(int nPercent);
    /** Shows whether there is anything to be heard. */
    void showAudible(bool bAudible);
    /** Silence, or what was heard before it. */
    void toggleMute();
    /** Puts the pop-up over a button that stands at this place in the bar, and shows it. */
    void showOver(const QPoint &buttonPosition);
    /** An event of the button or the pop-up; true when it is not to go any further. */
    bool filterEvent(const QObject *pWatched, const QEvent *pEvent);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void leaveButton();
    void leaveWindow();
    void showAtButton();

    MediaButton *m_pButton;
    QWidget *m_pBar;
    SoundControlWin *m_pWindow;
    bool m_bMuted = false;
    int m_nSavedVolume = 0;
};
