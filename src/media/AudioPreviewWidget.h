#pragma once

#include "image/PreviewRoom.h"

/** The hub's page for audio files. */
class AudioPreviewWidget : public PreviewRoom {
    Q_OBJECT

public:
    explicit AudioPreviewWidget(QWidget *pParent);
};
