#include "interfaces/actions/IRecycleAction.h"

IRecycleAction::IRecycleAction(QObject *pParent)
    : QObject(pParent)
{
}

IRecycleAction::~IRecycleAction() = default;
