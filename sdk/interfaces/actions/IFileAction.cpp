#include "interfaces/actions/IFileAction.h"

IFileAction::IFileAction(QObject *pParent)
    : QObject(pParent)
{
}

IFileAction::~IFileAction() = default;
