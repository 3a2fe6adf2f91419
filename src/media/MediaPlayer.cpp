#include "media/MediaPlayer.h"

#include "plugin/HostLookup.h"
#include "plugin/PluginInnerData.h"

MediaPlayer::MediaPlayer()
    : m_pObject(lookupHostObject(PluginInnerData::instance()->pluginManager(), QStringLiteral("ITsMediaPlayerPlugin")))
    , m_pPlayer(hostInterfaceOf<ITsMediaPlayerPlugin>(m_pObject))
{
}

bool MediaPlayer::connectTimes(const QObject *pReceiver, const char *pTotalSlot, const char *pCurrentSlot) const
{
    const QObject *pSignals = *this ? get()->getSignalObject() : nullptr;
    return pSignals != nullptr &&
           QObject::connect(pSignals, SIGNAL(signal_TotalTimeChanged(qint64)), pReceiver, pTotalSlot) &&
           QObject::connect(pSignals, SIGNAL(signal_currentTime(qint64)), pReceiver, pCurrentSlot);
}

void MediaPlayer::onGone(const QObject *pReceiver, const std::function<void()> &handler) const
{
    if (m_pObject != nullptr)
        QObject::connect(m_pObject, &QObject::destroyed, pReceiver, handler);
}
