#include "interfaces/actions/ICommentAction.h"

ICommentAction::ICommentAction(QObject *pParent)
    : QObject(pParent)
{
}

ICommentAction::~ICommentAction() = default;
