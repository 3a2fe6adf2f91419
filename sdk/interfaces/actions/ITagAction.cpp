#include "interfaces/actions/ITagAction.h"

ITagAction::ITagAction(QObject *pParent)
    : QObject(pParent)
{
}

ITagAction::~ITagAction() = default;
