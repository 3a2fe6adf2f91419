#pragma once

#include <QByteArray>
#include <QtGlobal>

/** Decoded pixels. Valid until release() is called, exactly once. Thread: the one that decodes. */
class IDecodedBitmap {
public:
    /** How the bytes of a pixel follow each other in memory. Other codes are possible and not shown by previews. */
    enum PixelLayout {
        Rgb24 = 1,        ///< 3 bytes: red, green, blue.
        Bgr24 = 2,        ///< 3 bytes: blue, green, red.
        Bgra32 = 3,       ///< 4 bytes: blue, green, red, alpha; straight alpha, 255 throughout for opaque pictures.
        Rgba32 = 4,       ///< 4 bytes: red, green, blue, alpha; straight alpha.
        Bgra32Layered = 6 ///< 4 bytes as Bgra32, from a flattened layered document.
    };

    /** First byte of the top row. */
    virtual const uchar *pixels() const = 0;

    /** Bytes from one row to the next: width times bytes per pixel, without padding. */
    virtual int rowLength() const = 0;

    /** Number of rows. */
    virtual int height() const = 0;

    /** A PixelLayout value. */
    virtual int pixelLayout() const = 0;

    /** Gives the memory back; the object must not be used afterwards. */
    virtual void release() = 0;

protected:
    ~IDecodedBitmap() = default;
};

/** An opened picture file. Valid until release() is called, exactly once. Thread: the one that decodes. */
class IDecodedDocument {
public:
    enum Kind { Unknown = 0, Vector = 1, Raster = 2 };

    /** A Kind value. Only Raster documents have a bitmap; vector files are delivered as Raster, rendered by the host.
     */
    virtual int kind() const = 0;

    /** True when a bitmap can be made. */
    virtual bool hasImageData() const = 0;

    /**
     * Decodes at a scale: 1.0 and 1.0 for every pixel of the file, in sRGB, not rotated. The caller releases the
     * bitmap. Null when the file is damaged beyond use or too large.
     */
    virtual IDecodedBitmap *createBitmap(double fScaleX, double fScaleY) = 0;

    /** Clockwise degrees by which the bitmap must be turned to stand upright: 0, 90, 180 or 270. */
    virtual int rotation() const = 0;

    /** Closes the document; the object must not be used afterwards. */
    virtual void release() = 0;

protected:
    ~IDecodedDocument() = default;
};

/**
 * The host's picture decoder. Previews call it from worker threads, one decode at a time, in this order: openFile,
 * takeDocument, the document's operations, release of bitmap and document, closeFile.
 *
 * Owner: the base-module plug-in; it stays valid until the host drops the plug-in.
 */
class IImageDecoder {
public:
    /** Opens a file by its path in UTF-8. False when it cannot be read or is no picture. */
    virtual bool openFile(const QByteArray &utf8Path) = 0;

    /** The document of the opened file, owned by the caller; null when there is none. */
    virtual IDecodedDocument *takeDocument() = 0;

    /** Ends what openFile began; also called after a failed openFile. Leaves no handle on the file open. */
    virtual void closeFile() = 0;

protected:
    ~IImageDecoder() = default;
};
