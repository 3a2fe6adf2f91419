#include "interfaces/data/IFileListProvider.h"

IFileListProvider::IFileListProvider(QObject *pParent)
    : QObject(pParent)
{
}

IFileListProvider::~IFileListProvider() = default;
