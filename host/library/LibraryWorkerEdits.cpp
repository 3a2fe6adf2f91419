// What users change: labels, names, files that they want forgotten.
#include "files/NativePath.h"
#include "files/SafeRename.h"
#include "library/FileTypes.h"
#include "library/LibraryWorker.h"

#include <QDateTime>
#include <QFileInfo>

void LibraryWorker::reportWriteError()
{
    Q_EMIT signalProblem(tr("The library cannot be written: %1").arg(m_store.lastError()));
}

void LibraryWorker::announceLabels(const QVector<qint64> &fileIds)
{
    m_labels = m_store.allLabels();
    QHash<qint64, TagRecordList> changed;
    for (const qint64 nFileId : fileIds)
        changed.insert(nFileId, m_labels.value(nFileId));
    Q_EMIT signalLabels(changed);
    Q_EMIT signalLabelRecords(m_store.labelRecords());
}

void LibraryWorker::removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds)
{
    if (m_store.removeLabels(fileIds, labelIds))
        announceLabels(fileIds);
    else
        reportWriteError();
}

void LibraryWorker::setLabelColor(quint64 nLabelId, quint32 nColor)
{
    if (m_store.setLabelColor(nLabelId, nColor))
        Q_EMIT signalLabelRecords(m_store.labelRecords());
    else
        reportWriteError();
}

void LibraryWorker::deleteLabel(quint64 nLabelId)
{
    QVector<qint64> fileIds;
    for (auto entry = m_labels.cbegin(); entry != m_labels.cend(); ++entry) {
        for (const TagRecordPtr &pLabel : entry.value()) {
            if (pLabel->id == nLabelId)
                fileIds.append(entry.key());
        }
    }
    if (m_store.deleteLabel(nLabelId))
        announceLabels(fileIds);
    else
        reportWriteError();
}

void LibraryWorker::renameFile(qint64 nActionId, const FileRow &file, const QString &newName)
{
    QString error = fileNameFault(newName);
    FileRow renamed = file;
    renamed.name = newName;
    renamed.nType = FileTypes::typeOfSuffix(FileTypes::suffixOfName(newName));
    const QString folder = file.folder + QLatin1Char('/');
    const auto onDisk = [&] {
        return renameWithoutReplacing(folder + file.name, folder + newName, &error);
    };
    if (error.isEmpty() && !m_store.renameFile(file, newName, renamed.nType, onDisk) && error.isEmpty())
        error = m_store.lastError();
    if (error.isEmpty())
        announce(m_nGeneration, {renamed});
    Q_EMIT signalRenamed(nActionId, file.id, error);
}

void LibraryWorker::setAnalysis(const QVector<FileRow> &files)
{
    // Not worth a message: what is not kept is only done again.
    m_store.setAnalysis(files);
}

void LibraryWorker::putAside(const QString &path)
{
    m_store.close();
    const QString mark =
        QStringLiteral(".unusable-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (const char *pPart : {"", "-wal", "-shm"}) {
        QString error;
        const QString from = path + QLatin1String(pPart);
        if (QFileInfo::exists(from) && !renameWithoutReplacing(from, path + mark + QLatin1String(pPart), &error))
            Q_EMIT signalProblem(tr("%1 cannot be put aside: %2").arg(from, error));
    }
}
