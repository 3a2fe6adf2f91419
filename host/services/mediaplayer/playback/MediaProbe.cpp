#include "services/mediaplayer/playback/MediaProbe.h"

#include "files/NativePath.h"

#include <QByteArrayList>

MediaProbe probeMedia(const QString &path, const media::Cancelled &cancelled)
{
    MediaProbe probe;
    probe.native = nativePath(path);
    probe.bFile = fileState(probe.native).bFile;
    if (probe.bFile)
        probe.video = media::videoTraits(probe.native, cancelled);
    return probe;
}

QByteArray videoFilters(const media::VideoTraits &video)
{
    QByteArrayList filters;
    if (video.bHighRange) {
        // Stills are toned down in the same way, see ToneMapping.
        filters.append("zscale=t=linear:npl=203,format=gbrpf32le,zscale=p=bt709,tonemap=mobius:desat=0,"
                       "zscale=t=bt709:m=bt709:r=tv,format=yuv420p");
    }
    if (video.nRotation == 90)
        filters.append("transpose=clock");
    else if (video.nRotation == 180)
        filters.append("hflip,vflip");
    else if (video.nRotation == 270)
        filters.append("transpose=cclock");
    return filters.isEmpty() ? QByteArray() : "lavfi=[" + filters.join(',') + "]";
}
