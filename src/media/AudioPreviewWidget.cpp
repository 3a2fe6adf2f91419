#include "media/AudioPreviewWidget.h"

AudioPreviewWidget::AudioPreviewWidget(QWidget *pParent)
    : PreviewRoom(pParent)
{
}
