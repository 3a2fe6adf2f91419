#include "services/basemodule/decode/ImageDecoder.h"

#include "services/basemodule/cache/DecodeAhead.h"
#include "services/basemodule/cache/DecodeGate.h"
#include "services/basemodule/cache/RenditionStore.h"
#include "services/basemodule/decode/PictureFormat.h"
#include "services/basemodule/decode/PictureReader.h"
#include "services/basemodule/documents/DocumentConverter.h"

#include <QThread>

#include <atomic>

namespace basemodule {

/** What documents need of the base module; emptied when the decoder goes, so that late ones fail instead of crash. */
struct DecoderServices {
    QMutex mutex;
    std::atomic_bool bAlive{true};
    DecodeGate *pGate = nullptr;
    DecodeAhead *pAhead = nullptr;
    RenditionStore *pRenditions = nullptr;
    DocumentConverter *pDocuments = nullptr;

    QMutex shownMutex;
    QString shownPath;
    std::atomic_int nShown{0}; ///< Changes with the file that is shown.
};

/** What openFile learned of a file. */
struct OpenedFile {
    FileKey key;
};

namespace {

class Bitmap final : public IDecodedBitmap {
public:
    explicit Bitmap(const DecodedPicture &picture)
        : m_picture(picture)
    {
    }

    const uchar *pixels() const override { return m_picture.memory->data(); }
    int rowLength() const override { return m_picture.rowLength(); }
    int height() const override { return m_picture.height; }
    int pixelLayout() const override { return m_picture.layout; }
    void release() override { delete this; }

private:
    const DecodedPicture m_picture;
};

/** Keeps the base module's services in place while a decode uses them. */
class ServiceUse {
public:
    explicit ServiceUse(const QSharedPointer<DecoderServices> &pServices)
        : m_services(pServices)
        , m_lock(&pServices->mutex)
    {
    }
    bool isAlive() const { return m_services->bAlive; }
    DecoderServices *operator->() const { return m_services.data(); }

private:
    const QSharedPointer<DecoderServices> m_services;
    QMutexLocker m_lock;
};

/** Ends the decode that somebody waits for when the base module is shut down, or a document's when he steps on. */
class ForegroundControl final : public DecodeControl {
public:
    ForegroundControl(DecoderServices &services, const QString &path)
        : m_services(services)
        , m_path(path)
        , m_bDocument(isConvertedSuffix(path.section(QLatin1Char('.'), -1)))
        , m_nShown(services.nShown)
    {
    }
    bool accept(qint64) override { return proceed(); }
    bool proceed() override
    {
        // What was shown when this began does not count: a load may begin before its file is announced.
        if (!m_services.bAlive || !m_bDocument || m_services.nShown == m_nShown)
            return m_services.bAlive;
        const QMutexLocker lock(&m_services.shownMutex);
        return m_services.shownPath.isEmpty() || m_services.shownPath == m_path;
    }

private:
    DecoderServices &m_services;
    const QString m_path;
    const bool m_bDocument;
    const int m_nShown;
};

class Document final : public IDecodedDocument {
public:
    Document(const FileKey &key, const QSharedPointer<DecoderServices> &pServices)
        : m_key(key)
        , m_services(pServices)
    {
    }

    int kind() const override { return Raster; }
    bool hasImageData() const override { return true; }
    IDecodedBitmap *createBitmap(double fScaleX, double fScaleY) override;
    int rotation() const override;
    void release() override { delete this; }

private:
    DecodedPicture decode(double fScaleX, double fScaleY);

    const FileKey m_key;
    const QSharedPointer<DecoderServices> m_services;
    mutable int m_nRotation = -1; ///< -1 until the file was read.
};

IDecodedBitmap *Document::createBitmap(double fScaleX, double fScaleY)
{
    if (!(fScaleX > 0.0) || !(fScaleY > 0.0))
        return nullptr;
    const DecodedPicture picture = decode(fScaleX, fScaleY);
    if (picture.isNull())
        return nullptr;
    m_nRotation = picture.rotation;
    return new Bitmap(picture);
}

DecodedPicture Document::decode(double fScaleX, double fScaleY)
{
    // One picture at a time: two large ones at once would only be late together, and take twice the memory.
    const ServiceUse services(m_services);
    if (!services.isAlive())
        return {};
    const DecodeGate::Foreground foreground(*services->pGate);
    const bool bFull = fScaleX >= 1.0 && fScaleY >= 1.0;
    const FileKey keyNow = fileKey(m_key.path);
    if (bFull) {
        const DecodedPicture ready = services->pAhead->take(keyNow);
        if (!ready.isNull())
            return ready;
    }
    ForegroundControl control(*m_services, m_key.path);
    DecodeRequest request;
    request.documents = services->pDocuments;
    request.wait = DocumentWait::Picture;
    request.control = &control;
    request.scaleX = fScaleX;
    request.scaleY = fScaleY;
    const DecodeResult result = readPicture(m_key.path, request);
    if (bFull && !result.picture.isNull() && fileKey(m_key.path) == keyNow)
        services->pAhead->keepShown(keyNow, result.picture);
    return result.picture;
}

int Document::rotation() const
{
    if (m_nRotation < 0) {
        DecodeRequest request;
        request.headerOnly = true;
        m_nRotation = readPicture(m_key.path, request).rotation;
    }
    return m_nRotation;
}

} // namespace

ImageDecoder::ImageDecoder(DecodeGate &gate, DecodeAhead &ahead, RenditionStore &renditions,
                           DocumentConverter *pDocuments)
    : m_services(new DecoderServices)
{
    m_services->pGate = &gate;
    m_services->pAhead = &ahead;
    m_services->pRenditions = &renditions;
    m_services->pDocuments = pDocuments;
}

ImageDecoder::~ImageDecoder()
{
    shutdown();
}

void ImageDecoder::shutdown()
{
    m_services->bAlive = false;
    const QMutexLocker lock(&m_services->mutex);
}

void ImageDecoder::setFileShown(const QString &path)
{
    {
        const QMutexLocker lock(&m_services->shownMutex);
        m_services->shownPath = path;
    }
    ++m_services->nShown;
    m_services->pDocuments->wake();
}

bool ImageDecoder::openFile(const QByteArray &utf8Path)
{
    closeFile();
    const QString path = QString::fromUtf8(utf8Path);
    // Outside the lock of decodes: making a rendition is guarded on its own.
    if (path.isEmpty() || !m_services->bAlive || !m_services->pRenditions->provide(path))
        return false;
    const QSharedPointer<OpenedFile> opened(new OpenedFile{fileKey(path)});
    if (opened->key.isNull() || pictureFormat(path) == PictureFormat::Unknown)
        return false;
    const QMutexLocker lock(&m_mutex);
    m_opened.insert(QThread::currentThreadId(), opened);
    return true;
}

IDecodedDocument *ImageDecoder::takeDocument()
{
    const QMutexLocker lock(&m_mutex);
    const QSharedPointer<OpenedFile> opened = m_opened.take(QThread::currentThreadId());
    return opened ? new Document(opened->key, m_services) : nullptr;
}

void ImageDecoder::closeFile()
{
    const QMutexLocker lock(&m_mutex);
    m_opened.remove(QThread::currentThreadId());
}

} // namespace basemodule
