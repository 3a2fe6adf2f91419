#include "media/VideoTraits.h"

#include "media/MediaInput.h"
#include "media/ToneMapping.h"

media::VideoTraits media::videoTraits(const QByteArray &native, const Cancelled &cancelled)
{
    const InputPointer pInput = openHead(native, cancelled);
    const AVStream *pStream = pInput != nullptr ? videoStream(*pInput) : nullptr;
    if (pStream == nullptr)
        return {};
    return {uprightRotation(*pStream), isHighRange(pStream->codecpar->color_trc)};
}
