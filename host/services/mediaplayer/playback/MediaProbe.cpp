#include "services/mediaplayer/playback/MediaProbe.h"

#include "files/NativePath.h"
#include "media/ToneMapping.h"

#include <QByteArrayList>

MediaProbe probeMedia(const QString &path, const media::Cancelled &cancelled)
{
    MediaProbe probe;
    probe.native = nativePath(path);
    probe.bFile = fileState(probe.native).bFile;
    const media::InputPointer pInput = probe.bFile ? media::openHead(probe.native, cancelled) : nullptr;
    const AVStream *pStream = pInput != nullptr ? media::videoStream(*pInput) : nullptr;
    if (pStream == nullptr)
        return probe;
    probe.nRotation = media::uprightRotation(*pStream);
    probe.bHighRange = media::isHighRange(pStream->codecpar->color_trc);
    return probe;
}

QByteArray videoFilters(int nRotation, bool bHighRange)
{
    QByteArrayList filters;
    if (bHighRange) {
        // Stills are toned down in the same way, see ToneMapping.
        filters.append("zscale=t=linear:npl=203,format=gbrpf32le,zscale=p=bt709,tonemap=mobius:desat=0,"
                       "zscale=t=bt709:m=bt709:r=tv,format=yuv420p");
    }
    if (nRotation == 90)
        filters.append("transpose=clock");
    else if (nRotation == 180)
        filters.append("hflip,vflip");
    else if (nRotation == 270)
        filters.append("transpose=cclock");
    return filters.isEmpty() ? QByteArray() : "lavfi=[" + filters.join(',') + "]";
}
