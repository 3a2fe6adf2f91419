#include "services/basemodule/decode/ColorProfile.h"

#include <algorithm>
#include <cstdlib>
#include <lcms2.h>
#include <vector>

namespace basemodule {

namespace {

struct ProfileCloser {
    void operator()(void *pProfile) const { cmsCloseProfile(pProfile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

Profile openProfile(const QByteArray &icc)
{
    return Profile(icc.isEmpty() ? nullptr : cmsOpenProfileFromMem(icc.constData(), cmsUInt32Number(icc.size())));
}

cmsColorSpaceSignature colorSpaceOf(ColorProfile::Input input)
{
    if (input == ColorProfile::Input::Bgra)
        return cmsSigRgbData;
    return input == ColorProfile::Input::Gray ? cmsSigGrayData : cmsSigCmykData;
}

cmsUInt32Number pixelTypeOf(ColorProfile::Input input)
{
    switch (input) {
    case ColorProfile::Input::Gray:
        return TYPE_GRAY_8;
    case ColorProfile::Input::Cmyk:
        return TYPE_CMYK_8;
    case ColorProfile::Input::CmykInverted:
        return TYPE_CMYK_8_REV;
    default:
        return TYPE_BGRA_8;
    }
}

cmsHTRANSFORM makeTransform(void *pProfile, cmsUInt32Number nType)
{
    const Profile srgb(cmsCreate_sRGBProfile());
    const cmsUInt32Number nFlags = cmsFLAGS_BLACKPOINTCOMPENSATION | (nType == TYPE_BGRA_8 ? cmsFLAGS_COPY_ALPHA : 0);
    return cmsCreateTransform(pProfile, nType, srgb.get(), TYPE_BGRA_8, INTENT_RELATIVE_COLORIMETRIC, nFlags);
}

// Cameras and editors write sRGB in dozens of wordings; what counts is whether any colour would come out different.
bool isIdentity(cmsHTRANSFORM pTransform)
{
    constexpr int kSteps = 6;
    std::vector<uchar> in;
    for (int b = 0; b < kSteps; ++b) {
        for (int g = 0; g < kSteps; ++g) {
            for (int r = 0; r < kSteps; ++r)
                in.insert(in.end(), {uchar(b * 51), uchar(g * 51), uchar(r * 51), 255});
        }
    }
    std::vector<uchar> out(in.size());
    cmsDoTransform(pTransform, in.data(), out.data(), cmsUInt32Number(in.size() / 4));
    return std::equal(in.begin(), in.end(), out.begin(), [](int a, int b) { return std::abs(a - b) <= 2; });
}

} // namespace

ColorProfile::ColorProfile(void *pTransform, bool bSetAlpha)
    : m_pTransform(pTransform)
    , m_bSetAlpha(bSetAlpha)
{
}

ColorProfile::~ColorProfile()
{
    cmsDeleteTransform(m_pTransform);
}

std::unique_ptr<ColorProfile> ColorProfile::toSrgb(const QByteArray &icc, Input input)
{
    const Profile profile = openProfile(icc);
    if (!profile || cmsGetColorSpace(profile.get()) != colorSpaceOf(input))
        return {};
    cmsHTRANSFORM pTransform = makeTransform(profile.get(), pixelTypeOf(input));
    if (!pTransform)
        return {};
    std::unique_ptr<ColorProfile> result(new ColorProfile(pTransform, input != Input::Bgra));
    if (input == Input::Bgra && isIdentity(pTransform))
        return {};
    return result;
}

bool ColorProfile::changesRgb(const QByteArray &icc)
{
    return toSrgb(icc, Input::Bgra) != nullptr;
}

QByteArray ColorProfile::srgbProfile()
{
    const Profile srgb(cmsCreate_sRGBProfile());
    cmsUInt32Number nSize = 0;
    cmsSaveProfileToMem(srgb.get(), nullptr, &nSize);
    QByteArray bytes(int(nSize), '\0');
    cmsSaveProfileToMem(srgb.get(), bytes.data(), &nSize);
    return bytes;
}

void ColorProfile::convertRow(const uchar *pIn, uchar *pOut, int nWidth) const
{
    cmsDoTransform(m_pTransform, pIn, pOut, cmsUInt32Number(nWidth));
    if (m_bSetAlpha) {
        for (int x = 0; x < nWidth; ++x)
            pOut[4 * x + 3] = 255;
    }
}

} // namespace basemodule
