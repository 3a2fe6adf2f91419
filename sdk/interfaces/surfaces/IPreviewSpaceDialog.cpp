#include "interfaces/surfaces/IPreviewSpaceDialog.h"

IPreviewSpaceDialog::IPreviewSpaceDialog(QWidget *pParent, Qt::WindowFlags flags)
    : QDialog(pParent, flags)
{
}

IPreviewSpaceDialog::~IPreviewSpaceDialog() = default;
