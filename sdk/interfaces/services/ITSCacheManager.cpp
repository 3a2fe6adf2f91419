#include "interfaces/services/ITSCacheManager.h"

ITSCacheManager::ITSCacheManager(QObject *pParent)
    : QObject(pParent)
{
}

ITSCacheManager::~ITSCacheManager() = default;
