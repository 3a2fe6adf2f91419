#include "library/Library.h"

#include <QDir>
#include <QStandardPaths>

#include <utility>

namespace {

void registerTypes()
{
    qRegisterMetaType<FileRecordList>("FileRecordList");
    qRegisterMetaType<ScanReport>("ScanReport");
    qRegisterMetaType<QVector<LabelRecord>>("QVector<LabelRecord>");
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
    connect(m_pWorker, &LibraryWorker::signalFoldersChanged, this, &Library::lookAgain);
    connect(m_pWorker, &LibraryWorker::signalRenamed, this, &Library::signalRenamed);
    connect(m_pWorker, &LibraryWorker::signalLabelRecords, this, [this](const QVector<LabelRecord> &labels) {
        m_labels = labels;
        Q_EMIT signalLabelRecords();
    });
    connect(m_pWorker, &LibraryWorker::signalUnusable, this, [this](const QString &path, const QString &reason) {
        withdrawFault();
        m_fault = tr("The library %1 cannot be used: %2. Changes of this session are not kept.").arg(path, reason);
        Q_EMIT signalProblem(m_fault);
        Q_EMIT signalUnusable(path, reason);
    });
    connect(m_pWorker, &LibraryWorker::signalUsable, this, &Library::withdrawFault);
    connect(m_pWorker, &LibraryWorker::signalNotesStored, this,
            [this](qint64 nActionId, qint64 nFileId, const QVector<NoteRecord> &notes,
                   const QSharedPointer<const IResponseInfo> &pResponse) {
                takeNotes(nFileId, notes);
                Q_EMIT signalNotesStored(nActionId, pResponse);
            });
    connect(m_pWorker, &LibraryWorker::signalLabelsStored, this, &Library::signalLabelsStored);
}

void Library::withdrawFault()
{
    if (!m_fault.isEmpty())
        Q_EMIT signalProblemSolved(std::exchange(m_fault, QString()));
}

void Library::reopen(bool bStartNew)
{
    openFile(m_path, bStartNew);
    const QStringList folders = m_folders;
    if (!folders.isEmpty())
        showFolders(folders);
}

bool Library::isBusyReason(const QString &reason)
{
    // SQLite's own words, which are never translated.
    return reason.contains(QLatin1String("locked")) || reason.contains(QLatin1String("busy"));
}

void Library::open(const QString &path)
{
    openFile(path, false);
}

void Library::openFile(const QString &path, bool bStartNew)
{
    m_path = path;
    // In one go: a scan that still runs reports to the worker meanwhile, which without a library could only complain.
    post([pWorker = m_pWorker, path, bStartNew] {
        if (bStartNew)
            pWorker->putAside(path);
        pWorker->open(path);
    });
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
    m_pWorker->watcher()->clear();
    m_changedFolders.clear();
    m_bLooking = false;
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
    m_bLooking = false;
    runScanner(nGeneration, m_folders, false);
}

void Library::runScanner(int nGeneration, const QStringList &folders, bool bLook)
{
    // The scanner only posts to the worker, which outlives the pool.
    m_scanPool.start([pWorker = m_pWorker, nGeneration, folders, bRecursive = m_bRecursive, bLook,
                      pCancelled = m_pCancelled] {
        FolderScanner scanner(pCancelled, [pWorker, nGeneration](const FolderScanner::Batch &batch) {
            QMetaObject::invokeMethod(
                pWorker, [pWorker, nGeneration, batch] { pWorker->takeIn(nGeneration, batch); }, Qt::QueuedConnection);
        });
        // Watched before it is listed, so that nothing slips between. A look enters new folders only.
        scanner.setFolderFilter([pWatcher = pWorker->watcher(), &folders, bLook](const QString &folder) {
            if (bLook && pWatcher->contains(folder) && !folders.contains(folder))
                return false;
            pWatcher->add(folder);
            return true;
        });
        ScanReport report = scanner.scan(folders, bRecursive);
        report.bPartial = bLook;
        QMetaObject::invokeMethod(
            pWorker, [pWorker, nGeneration, report] { pWorker->endScan(nGeneration, report); }, Qt::QueuedConnection);
    });
}

void Library::lookAgain(const QStringList &folders)
{
    for (const QString &folder : folders)
        m_changedFolders.insert(folder);
    if (m_bScanning || m_bLooking || m_changedFolders.isEmpty())
        return;
    const QStringList places(m_changedFolders.cbegin(), m_changedFolders.cend());
    m_changedFolders.clear();
    m_bLooking = true;
    m_pCancelled = std::make_shared<std::atomic_bool>(false);
    post([pWorker = m_pWorker, nGeneration = m_nGeneration, places] { pWorker->beginLook(nGeneration, places); });
    runScanner(m_nGeneration, places, true);
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

void Library::takeScanEnd(int nGeneration, const FileRecordList &missing, const ScanReport &report)
{
    if (nGeneration != m_nGeneration)
        return;
    (report.bPartial ? m_bLooking : m_bScanning) = false;
    QVector<qint64> missingIds;
    FileRecordList changed;
    for (const FileRecordPtr &pRecord : missing) {
        if (!m_records.contains(pRecord->fileId()))
            continue;
        m_records.insert(pRecord->fileId(), pRecord);
        missingIds.append(pRecord->fileId());
        changed.append(pRecord);
    }
    if (!changed.isEmpty()) {
        Q_EMIT signalRecords(changed);
        Q_EMIT signalMissing(missingIds);
    }
    if (!report.bPartial)
        Q_EMIT signalScanEnded(report);
    lookAgain({});
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

qint64 Library::renameFile(qint64 nFileId, const QString &newName)
{
    const FileRecordPtr pRecord = m_records.value(nFileId);
    if (pRecord == nullptr)
        return 0;
    const qint64 nActionId = ++m_nLastActionId;
    post([pWorker = m_pWorker, nActionId, row = pRecord->row(), newName] {
        pWorker->renameFile(nActionId, row, newName);
    });
    return nActionId;
}

void Library::removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds)
{
    post([pWorker = m_pWorker, fileIds, labelIds] { pWorker->removeLabels(fileIds, labelIds); });
}

void Library::setLabelColor(quint64 nLabelId, quint32 nColor)
{
    post([pWorker = m_pWorker, nLabelId, nColor] { pWorker->setLabelColor(nLabelId, nColor); });
}

void Library::deleteLabel(quint64 nLabelId)
{
    post([pWorker = m_pWorker, nLabelId] { pWorker->deleteLabel(nLabelId); });
}

void Library::storeAnalysis(const QVector<FileRow> &files)
{
    post([pWorker = m_pWorker, files] { pWorker->setAnalysis(files); });
}
