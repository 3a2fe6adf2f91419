#include "media/VideoPreviewWidget.h"

VideoPreviewWidget::VideoPreviewWidget(QWidget *pParent)
    : PreviewRoom(pParent)
{
}
