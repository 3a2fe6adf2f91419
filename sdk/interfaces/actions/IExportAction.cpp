#include "interfaces/actions/IExportAction.h"

IExportAction::IExportAction(QObject *pParent)
    : QObject(pParent)
{
}

IExportAction::~IExportAction() = default;
