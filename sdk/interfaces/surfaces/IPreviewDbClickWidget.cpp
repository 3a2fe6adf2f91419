#include "interfaces/surfaces/IPreviewDbClickWidget.h"

IPreviewDbClickWidget::IPreviewDbClickWidget(QWidget *pParent, Qt::WindowFlags flags)
    : QWidget(pParent, flags)
{
}

IPreviewDbClickWidget::~IPreviewDbClickWidget() = default;
