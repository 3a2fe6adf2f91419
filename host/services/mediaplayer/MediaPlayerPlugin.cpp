#include "services/mediaplayer/MediaPlayerPlugin.h"
