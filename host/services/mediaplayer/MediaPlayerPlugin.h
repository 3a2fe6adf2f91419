#pragma once

#include "services/mediaplayer/MediaPlayer.h"

/** Entry point of the media player as a Qt plug-in. */
class MediaPlayerPlugin : public MediaPlayer {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "BigImgPreview.Host.MediaPlayer/1.0" FILE "mediaplayer.json")
};
