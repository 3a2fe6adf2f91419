#include "media/MediaPlayer.h"

#include "plugin/HostLookup.h"
#include "plugin/PluginInnerData.h"

MediaPlayer::MediaPlayer()
    : m_pObject(lookupHostObject(PluginInnerData::instance()->pluginManager(), QStringLiteral("ITsMediaPlayerPlugin")))
    , m_pPlayer(hostInterfaceOf<ITsMediaPlayerPlugin>(m_pObject))
{
}

void MediaPlayer::connectTimes(const QObject *pReceiver, const char *pTotalSlot, const char *pCurrentSlot) const
{
    const QObject *pSignals = *this ? get()->getSignalObject() : nullptr;
    if (pSignals == nullptr)
        return;
    QObject::connect(pSignals, SIGNAL(signal_TotalTimeChanged(qint64)), pReceiver, pTotalSlot);
    QObject::connect(pSignals, SIGNAL(signal_currentTime(qint64)), pReceiver, pCurrentSlot);
}
