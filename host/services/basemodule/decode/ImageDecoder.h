#pragma once

#include "interfaces/services/IImageDecoder.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSharedPointer>

namespace basemodule {

class DecodeAhead;
class DecodeGate;
class DocumentConverter;
class RenditionStore;
struct DecoderServices;
struct OpenedFile;

/**
 * The decoder that previews know. What one thread opens is its own: several threads may decode at once. Documents and
 * bitmaps outlive the decoder itself.
 *
 * Owner: the base module. Thread: any.
 */
class ImageDecoder final : public IImageDecoder {
public:
    /** `pDocuments` may be null: documents of other programs have no picture then. */
    ImageDecoder(DecodeGate &gate, DecodeAhead &ahead, RenditionStore &renditions, DocumentConverter *pDocuments);
    ~ImageDecoder();

    bool openFile(const QByteArray &utf8Path) override;
    IDecodedDocument *takeDocument() override;
    void closeFile() override;

    /** The file that is looked at now: whoever waits for the conversion of another one gives up. */
    void setFileShown(const QString &path);

    /** Gives up what is being decoded and waits for it; documents give no bitmaps afterwards. */
    void shutdown();

private:
    QSharedPointer<DecoderServices> m_services;
    QMutex m_mutex;
    QHash<Qt::HANDLE, QSharedPointer<OpenedFile>> m_opened;
};

} // namespace basemodule
