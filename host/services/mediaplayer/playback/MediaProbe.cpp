#include "services/mediaplayer/playback/MediaProbe.h"

#include "files/NativePath.h"

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
    const AVColorTransferCharacteristic transfer = pStream->codecpar->color_trc;
    probe.bHighRange = transfer == AVCOL_TRC_SMPTE2084 || transfer == AVCOL_TRC_ARIB_STD_B67;
    return probe;
}

QByteArray videoFilters(int nRotation, bool bHighRange)
{
    QByteArrayList filters;
    if (bHighRange) {
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
