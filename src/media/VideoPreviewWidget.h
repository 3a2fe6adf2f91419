#pragma once

#include "image/PreviewRoom.h"

/** The hub's page for video files. */
class VideoPreviewWidget : public PreviewRoom {
    Q_OBJECT

public:
    explicit VideoPreviewWidget(QWidget *pParent);
};
