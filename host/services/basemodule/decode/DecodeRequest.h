#pragma once

#include "services/basemodule/decode/DecodedPicture.h"

#include <QByteArray>
#include <QSize>

namespace basemodule {

/**
 * How a decode asks whether it may go on. Called by the decoding thread between strips; an implementation may block
 * there to let a more urgent decode pass.
 */
class DecodeControl {
public:
    virtual ~DecodeControl() = default;

    /** Before the memory is taken: false refuses a bitmap of this many bytes. */
    virtual bool accept(qint64 nBytes) = 0;
    /** False: give up. */
    virtual bool proceed() = 0;
};

class DocumentConverter;

/** Who waits for a document that has to be converted. */
enum class DocumentWait {
    Nobody,  ///< Only what was converted before is of use.
    Worker,  ///< Background work: one conversion at a time.
    Picture, ///< Somebody looks at the place where it will be shown, but not for ever.
    Reader   ///< Somebody opened the document and waits for it.
};

/** What is wanted of a file. */
struct DecodeRequest {
    double scaleX = 1.0;
    double scaleY = 1.0;
    int longestSide = 0;     ///< Above 0: as large as fits into a square of this side, never enlarged.
    bool headerOnly = false; ///< Only size and rotation; no pixels.
    DecodeControl *control = nullptr;
    DocumentConverter *documents = nullptr; ///< Null: documents of other programs have no picture.
    DocumentWait wait = DocumentWait::Nobody;

    bool accept(qint64 nBytes) const
    {
        return PixelMemory::isAffordable(nBytes) && (!control || control->accept(nBytes));
    }
    bool proceed() const { return !control || control->proceed(); }

    /** The size to deliver for a picture of this size. */
    QSize targetSize(const QSize &fullSize) const;
};

/** What came of it. The picture is null when nothing could be decoded, was refused, or only the header was wanted. */
struct DecodeResult {
    DecodedPicture picture;
    QSize fullSize; ///< Size of the file's picture, not turned; empty when it could not be read.
    int rotation = 0;
};

/** How an EXIF orientation is delivered: mirrored orientations are mirrored left to right in the pixels first. */
struct Orientation {
    bool mirrored = false;
    int rotation = 0;

    static Orientation fromExif(int nExifValue);
};

/** The orientation value (1 to 8) in an EXIF block that starts at its TIFF header; 1 when there is none. */
int exifOrientation(const QByteArray &tiffBlock);

/** Mirrors one row left to right. */
void mirrorRow(uchar *pRow, int nWidth, int nBytesPerPixel);

/** Brings a decoded picture to the size asked, where the file's own reduction stopped short of it. */
DecodedPicture scaledPicture(const DecodedPicture &picture, const QSize &size);

} // namespace basemodule
