#include "media/PPtPreviewWidget.h"

PPtPreviewWidget::PPtPreviewWidget(QWidget *pParent)
    : PreviewRoom(pParent)
{
}
