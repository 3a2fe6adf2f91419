#pragma once

#include "interfaces/services/ITsMediaPlayerPlugin.h"

#include <QObject>
#include <QPointer>

#include <functional>

/**
 * The host's media player, as a widget that plays has it: looked up when the widget is made, null where the host has
 * none, and null again from the moment the host takes it away.
 */
class MediaPlayer {
public:
    MediaPlayer();

    explicit operator bool() const { return get() != nullptr; }
    ITsMediaPlayerPlugin *operator->() const { return get(); }
    /** What it does; stopped without a player. */
    int state() const { return *this ? get()->state() : int(ITsMediaPlayerPlugin::Stopped); }
    /** Connects the player's times, which it may tell from any thread; false where it tells none. */
    bool connectTimes(const QObject *pReceiver, const char *pTotalSlot, const char *pCurrentSlot) const;
    /** Calls when the host takes the player away, as long as the receiver lives. */
    void onGone(const QObject *pReceiver, const std::function<void()> &handler) const;

private:
    ITsMediaPlayerPlugin *get() const { return m_pObject ? m_pPlayer : nullptr; }

    QPointer<QObject> m_pObject; ///< The plug-in, which tells when it goes.
    ITsMediaPlayerPlugin *m_pPlayer;
};
