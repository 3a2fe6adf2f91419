// What the library keeps beside files, notes and labels: preview pictures, protected folders, imports.
#include "library/Library.h"

#include <QDir>
#include <QSet>

void Library::loadKeeping(const QString &path)
{
    const bool bInMemory = path == QLatin1String(":memory:");
    const QString base = bInMemory ? QDir::temp().filePath(QStringLiteral("bigimgpreview")) : path;
    m_coverFolder = base + QStringLiteral("-covers");
    m_unfinishedFolder = base + QStringLiteral("-unfinished");
    // Another library may have been open before.
    disconnect(m_pWorker, &LibraryWorker::signalProtectedFolders, this, nullptr);
    connect(m_pWorker, &LibraryWorker::signalProtectedFolders, this, [this](const QStringList &folders) {
        m_protectedFolders = QSet<QString>(folders.cbegin(), folders.cend());
        Q_EMIT signalProtectionChanged();
    });
    post([pWorker = m_pWorker, folder = m_coverFolder] { pWorker->loadKeeping(folder); });
}

void Library::setCover(qint64 nFileId, const QString &file, const QString &suffix, const std::shared_ptr<void> &pGuard,
                       const DoneHandler &done)
{
    post([this, pWorker = m_pWorker, nFileId, file, suffix, pGuard, done] {
        const QString error = pWorker->setCover(nFileId, file, suffix);
        QMetaObject::invokeMethod(
            this,
            [this, nFileId, error, done] {
                done(error);
                const FileRecordPtr pRecord = record(nFileId);
                if (error.isEmpty() && pRecord != nullptr)
                    Q_EMIT signalRecords({pRecord});
            },
            Qt::QueuedConnection);
    });
}

void Library::importFiles(const LibraryImport &import, const DoneHandler &done)
{
    post([this, pWorker = m_pWorker, import, done] {
        const QString error = pWorker->importFiles(import);
        QMetaObject::invokeMethod(
            this, [error, done] { done(error); }, Qt::QueuedConnection);
    });
}

void Library::takeOut(const QVector<qint64> &fileIds)
{
    QVector<qint64> removed;
    for (const qint64 nId : fileIds) {
        if (m_records.remove(nId) > 0)
            removed.append(nId);
    }
    post([pWorker = m_pWorker, fileIds] { pWorker->setRecycled(fileIds); });
    if (!removed.isEmpty())
        Q_EMIT signalRemoved(removed);
}

void Library::protectFolder(const QString &folder, bool bProtected)
{
    if (bProtected)
        m_protectedFolders.insert(folder);
    else
        m_protectedFolders.remove(folder);
    post([pWorker = m_pWorker, folder, bProtected] { pWorker->setFolderProtected(folder, bProtected); });
    Q_EMIT signalProtectionChanged();
}

bool Library::isDeletingBlocked(const QString &folder) const
{
    if (m_protectedFolders.isEmpty())
        return false;
    // A folder's protection covers everything below it.
    for (QString place = folder; !place.isEmpty(); place.truncate(qMax(0, place.lastIndexOf(QLatin1Char('/'))))) {
        if (m_protectedFolders.contains(place))
            return true;
    }
    return m_protectedFolders.contains(QStringLiteral("/"));
}
