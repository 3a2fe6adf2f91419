#include "actions/HostDataSource.h"

#include "actions/PackImporter.h"
#include "basemodule/IHostAnalysis.h"
#include "library/Library.h"

#include <QFile>
#include <QImageReader>

namespace {

/** Reads without a base module. */
QImage readWithQt(const QString &path, int nLongestSide, const std::atomic_bool & /*cancelled*/)
{
    constexpr qint64 k_nMostPixels = qint64(100) << 20;
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > k_nMostPixels)
        return {};
    if (qMax(size.width(), size.height()) > nLongestSide)
        reader.setScaledSize(size.scaled(nLongestSide, nLongestSide, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

HostDataSource::HostDataSource(Library *pLibrary)
    : LibraryDataSource(pLibrary)
    , m_pRunner(std::make_unique<ActionRunner>())
    , m_pDesk(std::make_shared<ActionDesk>())
{
    m_pDesk->pLibrary = pLibrary;
    m_pDesk->pRunner = m_pRunner.get();
    m_pDesk->pLeftovers = std::make_shared<const Leftovers>(pLibrary->unfinishedFolder());
    m_pDesk->readPicture = &readWithQt;
    m_pRunner->start(
        [pLeftovers = m_pDesk->pLeftovers](ActionTask & /*task*/) {
            pLeftovers->cleanUp();
            return ActionOutcome();
        },
        {}, {});
}

HostDataSource::~HostDataSource() = default;

void HostDataSource::setAnalysis(IHostAnalysis *pAnalysis)
{
    m_pDesk->readPicture = &readWithQt;
    if (pAnalysis != nullptr)
        m_pDesk->readPicture = [pAnalysis](const QString &path, int nLongestSide, const std::atomic_bool &cancelled) {
            return pAnalysis->readPicture(path, nLongestSide, cancelled);
        };
}

bool HostDataSource::isDeletingBlocked()
{
    const FileRecordPtr pRecord = library() != nullptr ? library()->record(m_nCurrentId) : FileRecordPtr();
    return pRecord != nullptr && library()->isDeletingBlocked(pRecord->row().folder);
}

QSharedPointer<IExportAction> HostDataSource::exportAction()
{
    return QSharedPointer<HostExportAction>::create(m_pDesk);
}

QSharedPointer<IRemoveAction> HostDataSource::removeAction()
{
    return QSharedPointer<HostRemoveAction>::create(m_pDesk);
}

QSharedPointer<IRecycleAction> HostDataSource::recycleAction()
{
    return QSharedPointer<HostRecycleAction>::create(m_pDesk);
}

QSharedPointer<IFileAction> HostDataSource::fileAction()
{
    return QSharedPointer<HostFileAction>::create(m_pDesk);
}

qint64 HostDataSource::importPack(const QString &packPath, const QString &parentFolder,
                                  const std::function<void(const ActionProgress &)> &onProgress,
                                  const ImportHandler &done)
{
    if (m_pRunner == nullptr || library() == nullptr)
        return 0;
    const auto pImporter = std::make_shared<PackImporter>(packPath, parentFolder, library()->coverFolder(),
                                                          m_pDesk->pLeftovers, m_pDesk->readPicture);
    return m_pRunner->start(
        [pImporter](ActionTask &task) { return pImporter->run(task); },
        [onProgress](qint64 /*nActionId*/, const ActionProgress &progress) { onProgress(progress); },
        [pImporter, pDesk = m_pDesk, done](qint64 /*nActionId*/, const ActionOutcome &outcome) {
            if (outcome.nCode != ActionOutcome::Done || pDesk->pLibrary == nullptr) {
                done(QString(), 0, outcome.errors.value(0));
                return;
            }
            const LibraryImport import = pImporter->takeImport();
            const QString folder = QFile::decodeName(import.finalFolder);
            pDesk->pLibrary->importFiles(import, [folder, nFiles = import.files.size(), done](const QString &error) {
                done(error.isEmpty() ? folder : QString(), nFiles, error);
            });
        });
}

void HostDataSource::shutdown()
{
    m_pRunner.reset();
}
