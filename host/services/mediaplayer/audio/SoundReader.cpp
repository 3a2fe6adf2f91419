#include "services/mediaplayer/audio/SoundReader.h"

#include "files/NativePath.h"
#include "services/mediaplayer/audio/WaveStore.h"

#include <QCoreApplication>
#include <QPointer>
#include <QtConcurrent>

namespace {

using CancelFlag = std::shared_ptr<std::atomic_bool>;

/** Calls back in the GUI thread unless nobody wants to know any more. */
template <typename Tell>
void tell(const QPointer<SoundReader> &pReader, const CancelFlag &pCancelled, Tell call)
{
    QMetaObject::invokeMethod(
        qApp,
        [pReader, pCancelled, call] {
            if (pReader != nullptr && !*pCancelled)
                call(pReader.data());
        },
        Qt::QueuedConnection);
}

} // namespace

SoundReader::SoundReader(QThreadPool *pPool, QObject *pParent)
    : QObject(pParent)
    , m_pPool(pPool)
{
}

SoundReader::~SoundReader()
{
    cancel();
}

void SoundReader::cancel()
{
    if (m_pCancelled != nullptr)
        *m_pCancelled = true;
    m_pCancelled.reset();
}

CancelFlag SoundReader::restart()
{
    cancel();
    m_pCancelled = std::make_shared<std::atomic_bool>(false);
    return m_pCancelled;
}

void SoundReader::readWave(const QString &path, WaveStore *pStore)
{
    const CancelFlag pCancelled = restart();
    const QPointer<SoundReader> pThis(this);
    QtConcurrent::run(m_pPool, [pThis, pCancelled, path, pStore] {
        if (*pCancelled)
            return;
        const auto report = [&](const media::Peaks &peaks) {
            tell(pThis, pCancelled, [peaks](SoundReader *pReader) { Q_EMIT pReader->signalWave(peaks); });
        };
        const QByteArray native = nativePath(path);
        const QByteArray key = fileState(native).bFile ? WaveStore::contentKey(native) : QByteArray();
        media::Peaks peaks = pStore->find(key);
        if (peaks.isNull() && !key.isEmpty()) {
            const media::Cancelled cancelled = [&pCancelled] {
                return pCancelled->load();
            };
            peaks = media::readPeaks(native, cancelled, report);
            pStore->keep(key, peaks);
        }
        report(peaks);
    });
}

void SoundReader::readCover(const QString &path, int nSide, const CoverSource &source)
{
    const CancelFlag pCancelled = restart();
    const QPointer<SoundReader> pThis(this);
    QtConcurrent::run(m_pPool, [pThis, pCancelled, path, nSide, source] {
        if (*pCancelled)
            return;
        const QImage cover = source(path, nSide, *pCancelled);
        tell(pThis, pCancelled, [cover](SoundReader *pReader) { Q_EMIT pReader->signalCover(cover); });
    });
}
