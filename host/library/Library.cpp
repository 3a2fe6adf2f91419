#include "library/Library.h"

#include <QDir>
#include <QStandardPaths>

namespace {

void registerTypes()
{
    qRegisterMetaType<FileRecordList>("FileRecordList");
    qRegisterMetaType<ScanReport>("ScanReport");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QVector<NoteRecord>>("QVector<NoteRecord>");
    qRegisterMetaType<QHash<qint64, TagRecordList>>("QHash<qint64,TagRecordList>");
    qRegisterMetaType<QSharedPointer<const IResponseInfo>>("QSharedPointer<const IResponseInfo>");
}

} // namespace

Library::Library(QObject *pParent)
    : QObject(pParent)
    , m_pRenditions(new RenditionSource)
    , m_pWorker(new LibraryWorker(m_pRenditions))
    , m_pCancelled(std::make_shared<std::atomic_bool>(false))
{
    registerTypes();
    m_scanPool.setMaxThreadCount(1);
    m_thread.setObjectName(QStringLiteral("library"));
    m_pWorker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_pWorker, &QObject::deleteLater);
    connectWorker();
    m_thread.start();
}

Library::~Library()
{
    *m_pCancelled = true;
    m_scanPool.waitForDone();
    m_pWorker->disconnect(this);
    // Everything asked for is stored first: the call stands behind all others in the worker's queue.
    post([pWorker = m_pWorker, pThread = &m_thread] {
        pWorker->close();
        pThread->quit();
    });
    m_thread.wait();
}

QString Library::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/bigimgpreview/library.sqlite");
}

void Library::connectWorker()
{
    connect(m_pWorker, &LibraryWorker::signalProblem, this, &Library::signalProblem);
    connect(m_pWorker, &LibraryWorker::signalLabels, this, &Library::takeLabels);
    connect(m_pWorker, &LibraryWorker::signalRecords, this, &Library::takeRecords);
    connect(m_pWorker, &LibraryWorker::signalScanned, this, [this](int nGeneration, int nFiles) {
        if (nGeneration == m_nGeneration)
            Q_EMIT signalScanProgress(nFiles);
    });
    connect(m_pWorker, &LibraryWorker::signalScanEnded, this, &Library::takeScanEnd);
    connect(m_pWorker, &LibraryWorker::signalNotesStored, this,
            [this](qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes,
                   const QSharedPointer<const IResponseInfo> &pResponse) {
                takeNotes(nFileId, notes);
                Q_EMIT signalNotesStored(nActionId, pResponse);
            });
    connect(m_pWorker, &LibraryWorker::signalLabelsStored, this, &Library::signalLabelsStored);
}

void Library::open(const QString &path)
{
    post([pWorker = m_pWorker, path] { pWorker->open(path); });
    loadKeeping(path);
}

void Library::setAnalysis(IHostAnalysis *pAnalysis)
{
    m_pRenditions->pAnalysis = pAnalysis;
}

void Library::changeFolders(const QStringList &folders, bool bRecursive)
{
    cancelScan();
    m_folders.clear();
    for (const QString &folder : folders)
        m_folders.append(QDir::cleanPath(QDir(folder).absolutePath()));
    m_folders.removeDuplicates();
    m_bRecursive = bRecursive;
    m_records.clear();
    Q_EMIT signalCleared();
}

void Library::showFolders(const QStringList &folders)
{
    changeFolders(folders, true);
    startScan(true);
}

void Library::showFolderNow(const QString &folder, const QString &wantedName)
{
    changeFolders({folder}, false);
    m_pCancelled = std::make_shared<std::atomic_bool>(false);
    m_bScanning = true;
    ++m_nGeneration;
    post([pWorker = m_pWorker, nGeneration = m_nGeneration, path = m_folders.first(), wantedName,
          pCancelled = m_pCancelled] { pWorker->listFolder(nGeneration, path, wantedName, pCancelled); });
}

void Library::rescan()
{
    // What an unfinished scan announced may not have arrived: then everything known comes again.
    const bool bUnfinished = m_bScanning;
    cancelScan();
    startScan(bUnfinished);
}

void Library::cancelScan()
{
    *m_pCancelled = true;
}

void Library::startScan(bool bAnnounceKnown)
{
    m_pCancelled = std::make_shared<std::atomic_bool>(false);
    m_bScanning = true;
    const int nGeneration = ++m_nGeneration;
    post([pWorker = m_pWorker, nGeneration, folders = m_folders, bRecursive = m_bRecursive, bAnnounceKnown] {
        pWorker->beginScan(nGeneration, folders, bRecursive, bAnnounceKnown);
    });
    // The scanner only posts to the worker, which outlives the pool.
    m_scanPool.start([pWorker = m_pWorker, nGeneration, folders = m_folders, bRecursive = m_bRecursive,
                      pCancelled = m_pCancelled] {
        FolderScanner scanner(pCancelled, [pWorker, nGeneration](const FolderScanner::Batch &batch) {
            QMetaObject::invokeMethod(
                pWorker, [pWorker, nGeneration, batch] { pWorker->takeIn(nGeneration, batch); }, Qt::QueuedConnection);
        });
        const ScanReport report = scanner.scan(folders, bRecursive);
        QMetaObject::invokeMethod(
            pWorker, [pWorker, nGeneration, report] { pWorker->endScan(nGeneration, report); }, Qt::QueuedConnection);
    });
}

void Library::takeRecords(int nGeneration, const FileRecordList &records)
{
    if (nGeneration != m_nGeneration)
        return;
    m_records.reserve(m_records.size() + records.size());
    for (const FileRecordPtr &pRecord : records)
        m_records.insert(pRecord->fileId(), pRecord);
    Q_EMIT signalRecords(records);
}

void Library::takeScanEnd(int nGeneration, const QVector<qint64> &goneIds, const ScanReport &report)
{
    if (nGeneration != m_nGeneration)
        return;
    m_bScanning = false;
    QVector<qint64> removed;
    for (const qint64 nId : goneIds) {
        if (m_records.remove(nId) > 0)
            removed.append(nId);
    }
    if (!removed.isEmpty())
        Q_EMIT signalRemoved(removed);
    Q_EMIT signalScanEnded(report);
}

void Library::takeNotes(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    const FileRecordPtr pRecord = m_records.value(nFileId);
    if (pRecord == nullptr)
        return;
    const FileRecordPtr pChanged = pRecord->withAnnotations({notes, pRecord->tags()});
    m_records.insert(nFileId, pChanged);
    Q_EMIT signalRecords({pChanged});
}

void Library::takeLabels(const QHash<qint64, TagRecordList> &labels)
{
    FileRecordList changed;
    for (auto entry = labels.cbegin(); entry != labels.cend(); ++entry) {
        const FileRecordPtr pRecord = m_records.value(entry.key());
        if (pRecord == nullptr)
            continue;
        changed.append(pRecord->withAnnotations({pRecord->notes(), entry.value()}));
        m_records.insert(entry.key(), changed.last());
    }
    if (!changed.isEmpty())
        Q_EMIT signalRecords(changed);
}

void Library::forgetFiles(const QVector<qint64> &fileIds)
{
    QVector<qint64> removed;
    for (const qint64 nId : fileIds) {
        if (m_records.remove(nId) > 0)
            removed.append(nId);
    }
    post([pWorker = m_pWorker, fileIds] { pWorker->forget(fileIds); });
    if (!removed.isEmpty())
        Q_EMIT signalRemoved(removed);
}

qint64 Library::setNotes(qint64 nFileId, const QVector<NoteRecord> &notes)
{
    const qint64 nActionId = ++m_nLastActionId;
    post([pWorker = m_pWorker, nActionId, nFileId, notes] { pWorker->setNotes(nActionId, nFileId, notes); });
    return nActionId;
}

qint64 Library::addLabels(const QVector<qint64> &fileIds, const TagRecordList &labels)
{
    const qint64 nActionId = ++m_nLastActionId;
    post([pWorker = m_pWorker, nActionId, fileIds, labels] { pWorker->addLabels(nActionId, fileIds, labels); });
    return nActionId;
}
