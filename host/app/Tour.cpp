#include "app/Tour.h"

Tour::Tour(HostSession *pSession, const QString &folder)
    : m_pSession(pSession)
    , m_folder(folder)
{
}
Tour::~Tour() = default;
void Tour::start()
{
}
