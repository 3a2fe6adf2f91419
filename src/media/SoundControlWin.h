#pragma once

#include <QWidget>

class QSlider;

/** The small pop-up with the vertical volume slider. Owner: the bar it belongs to. */
class SoundControlWin : public QWidget {
    Q_OBJECT

public:
    explicit SoundControlWin(QWidget *pParent);

    int soundValue() const;
    /** Emits SoundChange when the value differs. */
    void setSoundValue(int nValue);
    /** The same without a signal: the volume is known where it comes from. */
    void showSoundValue(int nValue);

Q_SIGNALS:
    void SoundChange(int value);

private:
    void applyStyle();

    QWidget *m_pGround;
    QSlider *m_pSlider;
};
