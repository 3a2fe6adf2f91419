#include "services/basemodule/decode/DecodeRequest.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace basemodule {

QSize DecodeRequest::targetSize(const QSize &fullSize) const
{
    double fX = std::clamp(scaleX, 0.0, 1.0);
    double fY = std::clamp(scaleY, 0.0, 1.0);
    if (longestSide > 0) {
        const double fFit = double(longestSide) / std::max({fullSize.width(), fullSize.height(), longestSide});
        fX *= fFit;
        fY *= fFit;
    }
    return QSize(std::max(1, int(std::lround(fullSize.width() * fX))),
                 std::max(1, int(std::lround(fullSize.height() * fY))));
}

Orientation Orientation::fromExif(int nExifValue)
{
    switch (nExifValue) {
    case 2:
        return {true, 0};
    case 3:
        return {false, 180};
    case 4:
        return {true, 180};
    case 5:
        return {true, 270};
    case 6:
        return {false, 90};
    case 7:
        return {true, 90};
    case 8:
        return {false, 270};
    default:
        return {false, 0};
    }
}

int exifOrientation(const QByteArray &tiffBlock)
{
    const auto *pData = reinterpret_cast<const uchar *>(tiffBlock.constData());
    const quint32 nSize = quint32(tiffBlock.size());
    if (nSize < 14)
        return 1;
    const bool bBigEndian = tiffBlock.startsWith("MM");
    if (!bBigEndian && !tiffBlock.startsWith("II"))
        return 1;
    const auto word = [=](quint32 nAt) {
        return bBigEndian ? qFromBigEndian<quint16>(pData + nAt) : qFromLittleEndian<quint16>(pData + nAt);
    };
    const quint32 nIfd = bBigEndian ? qFromBigEndian<quint32>(pData + 4) : qFromLittleEndian<quint32>(pData + 4);
    if (nIfd > nSize - 2)
        return 1;
    const quint32 nEntries = word(nIfd);
    for (quint32 i = 0; i < nEntries; ++i) {
        const quint32 nEntry = nIfd + 2 + 12 * i;
        if (nEntry + 12 > nSize)
            return 1;
        if (word(nEntry) == 0x0112) {
            const int nValue = word(nEntry + 8);
            return nValue >= 1 && nValue <= 8 ? nValue : 1;
        }
    }
    return 1;
}

namespace {

template <int N>
void mirrorPixels(uchar *pRow, int nWidth)
{
    uchar *pLeft = pRow;
    uchar *pRight = pRow + qint64(nWidth - 1) * N;
    for (; pLeft < pRight; pLeft += N, pRight -= N)
        std::swap_ranges(pLeft, pLeft + N, pRight);
}

} // namespace

void mirrorRow(uchar *pRow, int nWidth, int nBytesPerPixel)
{
    if (nBytesPerPixel == 4)
        mirrorPixels<4>(pRow, nWidth);
    else
        mirrorPixels<3>(pRow, nWidth);
}

} // namespace basemodule
