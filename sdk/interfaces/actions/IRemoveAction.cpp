#include "interfaces/actions/IRemoveAction.h"

IRemoveAction::IRemoveAction(QObject *pParent)
    : QObject(pParent)
{
}

IRemoveAction::~IRemoveAction() = default;
