#include "app/FileGridModel.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace {

constexpr int k_nMergeIntervalMsec = 150;

bool nameBefore(const FileRecordPtr &pLeft, const FileRecordPtr &pRight)
{
    const int nOrder = pLeft->sortKey().compare(pRight->sortKey());
    return nOrder != 0 ? nOrder < 0 : pLeft->fileId() < pRight->fileId();
}

bool newerBefore(const FileRecordPtr &pLeft, const FileRecordPtr &pRight)
{
    const qint64 nLeft = pLeft->row().nModifiedMsec;
    const qint64 nRight = pRight->row().nModifiedMsec;
    return nLeft != nRight ? nLeft > nRight : nameBefore(pLeft, pRight);
}

} // namespace

FileGridModel::FileGridModel(QObject *pParent)
    : QAbstractListModel(pParent)
{
    m_mergeTimer.setSingleShot(true);
    connect(&m_mergeTimer, &QTimer::timeout, this, &FileGridModel::takeInPending);
}

int FileGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_files.size();
}

QVariant FileGridModel::data(const QModelIndex &index, int nRole) const
{
    const FileRecordPtr pRecord = recordAt(index.row());
    if (pRecord == nullptr)
        return {};
    switch (nRole) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return pRecord->fileName();
    case Qt::ToolTipRole:
        return pRecord->filePath();
    default:
        return {};
    }
}

void FileGridModel::rememberRows() const
{
    if (m_rows.size() == m_files.size())
        return;
    m_rows.clear();
    m_rows.reserve(m_files.size());
    for (int i = 0; i < m_files.size(); ++i)
        m_rows.insert(m_files.at(i)->fileId(), i);
}

int FileGridModel::rowOf(qint64 nFileId) const
{
    rememberRows();
    return m_rows.value(nFileId, -1);
}

QVector<qint64> FileGridModel::fileIds() const
{
    QVector<qint64> ids;
    ids.reserve(m_files.size());
    for (const FileRecordPtr &pRecord : m_files)
        ids.append(pRecord->fileId());
    return ids;
}

FileGridModel::Compare FileGridModel::compare() const
{
    return m_order == Order::Name ? &nameBefore : &newerBefore;
}

void FileGridModel::setOrder(Order order)
{
    if (order == m_order)
        return;
    beginResetModel();
    m_order = order;
    std::sort(m_files.begin(), m_files.end(), compare());
    m_rows.clear();
    endResetModel();
}

bool FileGridModel::isWanted(const FileRecordPtr &pRecord) const
{
    const QString &folder = pRecord->row().folder;
    return m_folder.isEmpty() || (folder.startsWith(m_folder) &&
                                  (folder.size() == m_folder.size() || folder.at(m_folder.size()) == QLatin1Char('/')));
}

void FileGridModel::setFolder(const QString &folder)
{
    if (folder == m_folder)
        return;
    takeInPending();
    beginResetModel();
    m_folder = folder;
    FileRecordList all;
    all.reserve(m_files.size() + m_aside.size());
    all += m_files;
    for (const FileRecordPtr &pRecord : qAsConst(m_aside))
        all.append(pRecord);
    m_files.clear();
    m_aside.clear();
    for (const FileRecordPtr &pRecord : qAsConst(all)) {
        if (isWanted(pRecord))
            m_files.append(pRecord);
        else
            m_aside.insert(pRecord->fileId(), pRecord);
    }
    std::sort(m_files.begin(), m_files.end(), compare());
    m_rows.clear();
    endResetModel();
}

void FileGridModel::clear()
{
    beginResetModel();
    m_files.clear();
    m_aside.clear();
    m_folder.clear();
    m_pending.clear();
    m_rows.clear();
    m_mergeTimer.stop();
    endResetModel();
}

void FileGridModel::addRecords(const FileRecordList &records)
{
    m_pending += records;
    // The first files are wanted at once; the more there are, the less it matters to see each batch.
    if (m_files.isEmpty())
        takeInPending();
    else if (!m_mergeTimer.isActive())
        m_mergeTimer.start(k_nMergeIntervalMsec + m_files.size() / 100);
}

void FileGridModel::takeInPending()
{
    if (m_pending.isEmpty())
        return;
    FileRecordList added;
    bool bMoved = false;
    for (const FileRecordPtr &pRecord : qAsConst(m_pending)) {
        const int nRow = rowOf(pRecord->fileId());
        if (nRow < 0) {
            if (isWanted(pRecord))
                added.append(pRecord);
            else
                m_aside.insert(pRecord->fileId(), pRecord);
            continue;
        }
        bMoved = bMoved || m_files.at(nRow)->row().nModifiedMsec != pRecord->row().nModifiedMsec;
        m_files[nRow] = pRecord;
        Q_EMIT dataChanged(index(nRow), index(nRow));
    }
    m_pending.clear();
    if (added.isEmpty() && !(bMoved && m_order != Order::Name))
        return;

    beginResetModel();
    std::sort(added.begin(), added.end(), compare());
    if (bMoved)
        std::sort(m_files.begin(), m_files.end(), compare());
    FileRecordList merged;
    merged.reserve(m_files.size() + added.size());
    std::merge(m_files.cbegin(), m_files.cend(), added.cbegin(), added.cend(), std::back_inserter(merged), compare());
    // The same file may stand in one batch and in the next.
    merged.erase(std::unique(merged.begin(), merged.end(),
                             [](const FileRecordPtr &pLeft, const FileRecordPtr &pRight) {
                                 return pLeft->fileId() == pRight->fileId();
                             }),
                 merged.end());
    m_files.swap(merged);
    m_rows.clear();
    endResetModel();
}

void FileGridModel::removeFiles(const QVector<qint64> &fileIds)
{
    takeInPending();
    QSet<qint64> gone;
    for (const qint64 nId : fileIds) {
        gone.insert(nId);
        m_aside.remove(nId);
    }
    beginResetModel();
    m_files.erase(std::remove_if(m_files.begin(), m_files.end(),
                                 [&gone](const FileRecordPtr &pRecord) { return gone.contains(pRecord->fileId()); }),
                  m_files.end());
    m_rows.clear();
    endResetModel();
}
