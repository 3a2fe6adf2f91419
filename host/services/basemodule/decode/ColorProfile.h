#pragma once

#include <QByteArray>

#include <memory>

namespace basemodule {

/**
 * Brings pixels from an embedded ICC profile to sRGB. Made once a decode; the conversion works row by row while the
 * row is still in the processor's cache. Thread: the one that decodes.
 */
class ColorProfile {
public:
    /** Byte order of the rows that come in; rows always go out as blue, green, red, alpha. */
    enum class Input { Bgra, Gray, Cmyk, CmykInverted };

    /** Null when the profile is missing, damaged, does not fit the pixels, or is sRGB in all but name. */
    static std::unique_ptr<ColorProfile> toSrgb(const QByteArray &icc, Input input);

    /** Whether RGB pixels with this profile would be changed visibly. */
    static bool changesRgb(const QByteArray &icc);

    /** The ICC data of sRGB. */
    static QByteArray srgbProfile();

    ~ColorProfile();
    ColorProfile(const ColorProfile &) = delete;
    ColorProfile &operator=(const ColorProfile &) = delete;

    /** In place for Bgra. Alpha is left as it is for Bgra and set to 255 for the others. */
    void convertRow(const uchar *pIn, uchar *pOut, int nWidth) const;

private:
    explicit ColorProfile(void *pTransform, bool bSetAlpha);

    void *m_pTransform;
    bool m_bSetAlpha;
};

} // namespace basemodule
