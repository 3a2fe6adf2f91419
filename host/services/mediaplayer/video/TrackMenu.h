#pragma once

#include <QMenu>

class MpvPlayer;

/** The menu with which subtitles and sound tracks are switched. Thread: GUI thread only. */
namespace TrackMenu {

/** Null where there is nothing to choose. The menu deletes itself when it closes. */
QMenu *create(MpvPlayer *pPlayer, QWidget *pParent);

} // namespace TrackMenu
