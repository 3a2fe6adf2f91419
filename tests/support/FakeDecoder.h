#pragma once

#include "Gate.h"
#include "interfaces/services/IImageDecoder.h"

#include <QColor>
#include <QHash>
#include <QSharedPointer>
#include <QSize>
#include <QStringList>

/** What the decoder makes of one path. */
struct FakePicture {
    QSize size{64, 48};
    QColor colour = Qt::darkCyan;
    int layout = IDecodedBitmap::Bgra32; ///< Codes outside the enumeration are given out as four bytes a pixel.
    int rotation = 0;
    int kind = IDecodedDocument::Raster;
    bool opens = true;
    bool hasDocument = true;
    bool hasImageData = true;
    bool hasBitmap = true;
    QSharedPointer<Gate> gate; ///< Where set, decoding waits here.
    QByteArray pixels;         ///< Where set, the bitmap's bytes, in place of size and colour.
    int rowLength = 0;         ///< Bytes of a row of `pixels`.
};

/** What the decoder has seen; a snapshot. */
struct DecoderCounts {
    int opened = 0;        ///< Calls of openFile.
    int closed = 0;        ///< Calls of closeFile; equals `opened` when nothing is left open.
    int liveDocuments = 0; ///< Taken and not released.
    int liveBitmaps = 0;   ///< Made and not released.
    int mostAtOnce = 0;    ///< Largest number of files open at the same time.
    int inGuiThread = 0;   ///< Decodes that ran in the GUI thread.
    QStringList paths;     ///< Paths in the order they were opened.

    /** True when everything that was opened was closed and released, once. */
    bool isBalanced() const { return opened == closed && liveDocuments == 0 && liveBitmaps == 0; }
};

/** Decodes one-coloured pictures from memory. Thread: any; pictures are put in from the GUI thread at any time. */
class FakeDecoder final : public IImageDecoder {
public:
    FakeDecoder();
    ~FakeDecoder();

    void setPicture(const QString &path, const FakePicture &picture);
    DecoderCounts counts() const;

    /** Opens every gate, so that no worker stays behind when the host goes. */
    void openGates();

    bool openFile(const QByteArray &utf8Path) override;
    IDecodedDocument *takeDocument() override;
    void closeFile() override;

private:
    struct State;
    QSharedPointer<State> m_state; ///< Shared with documents and bitmaps, which may be released late.
};
