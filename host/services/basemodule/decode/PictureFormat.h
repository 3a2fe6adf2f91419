#pragma once

#include <QByteArray>
#include <QString>

namespace basemodule {

/** What a file holds, told from its first bytes; the suffix only decides where content cannot. */
enum class PictureFormat {
    Unknown,
    Jpeg,
    Png,
    Gif,
    Tiff,
    WebP,
    Heif,
    JpegXl,
    Jpeg2000,
    Svg,
    Exr,
    Hdr,
    Pnm,
    Pdf,
    Bmp,
    Ico,
    Tga,
    Psd,
    Dds,
    Pcx,
    Raw,
    Media,      ///< A video, or a sound that may have a cover.
    Office,     ///< A document that LibreOffice reads.
    PostScript, ///< PostScript, encapsulated or not.
    Font
};

/** Number of bytes from the start of a file that sniffing wants to see. */
constexpr int kSniffLength = 4096;

/** The format of a file that starts with `head`. `suffix` without dot, any case. */
PictureFormat sniffFormat(const QByteArray &head, const QString &suffix);

/** Whether previews read files of this suffix through their large rendition, never from the file itself. */
bool isRawSuffix(const QString &suffix);

/** Whether files of this suffix, without dot, any case, are documents that LibreOffice is asked to read. */
bool isOfficeSuffix(const QString &suffix);

/** Whether they are presentations, which are looked at page by page. */
bool isPresentationSuffix(const QString &suffix);

/** Whether a program has to convert files of this suffix, which takes seconds. */
bool isConvertedSuffix(const QString &suffix);

/** Whether files of this suffix may hold transparency. */
bool mayBeTransparent(const QString &suffix);

} // namespace basemodule
