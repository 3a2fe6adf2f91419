#include "app/FileGridModel.h"

#include <utility>

namespace {

constexpr int k_nMergeIntervalMsec = 150;
/** Up to here arranging takes less than a frame. */
constexpr int k_nShortList = 2000;

} // namespace

FileGridModel::FileGridModel(QObject *pParent)
    : QAbstractListModel(pParent)
{
    m_pool.setMaxThreadCount(1);
    m_mergeTimer.setSingleShot(true);
    connect(&m_mergeTimer, &QTimer::timeout, this, &FileGridModel::arrangeNow);
}

FileGridModel::~FileGridModel()
{
    m_pool.waitForDone();
}

int FileGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_now.files.size();
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
        return pRecord->isUnavailable() ? tr("%1\nMissing").arg(pRecord->filePath()) : pRecord->filePath();
    default:
        return {};
    }
}

QVector<qint64> FileGridModel::fileIds() const
{
    QVector<qint64> ids;
    ids.reserve(m_now.files.size());
    for (const FileRecordPtr &pRecord : m_now.files)
        ids.append(pRecord->fileId());
    return ids;
}

void FileGridModel::setOrder(Order order)
{
    if (order == m_order)
        return;
    m_order = order;
    arrangeNow();
}

void FileGridModel::setFilter(const FileFilter &filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    arrangeNow();
}

void FileGridModel::setFolder(const QString &folder)
{
    FileFilter filter = m_filter;
    filter.folder = folder;
    setFilter(filter);
}

void FileGridModel::clear()
{
    ++m_nGeneration;
    m_bArranging = false;
    m_pending = {};
    m_filter.folder.clear();
    m_mergeTimer.stop();
    beginResetModel();
    m_now = {};
    m_now.order = m_order;
    endResetModel();
    Q_EMIT signalArranged();
}

void FileGridModel::addRecords(const FileRecordList &records)
{
    for (const FileRecordPtr &pRecord : records)
        m_pending.gone.remove(pRecord->fileId());
    m_pending.records += records;
    // The first files are wanted at once; the more there are, the less it matters to see each batch.
    if (m_now.all.isEmpty())
        arrangeNow();
    else if (!m_mergeTimer.isActive())
        m_mergeTimer.start(k_nMergeIntervalMsec + m_now.all.size() / 100);
}

void FileGridModel::removeFiles(const QVector<qint64> &fileIds)
{
    for (const qint64 nId : fileIds)
        m_pending.gone.insert(nId);
    arrangeNow();
}

bool FileGridModel::isArranged() const
{
    return !m_bArranging && m_pending.isEmpty();
}

void FileGridModel::arrangeNow()
{
    m_bStale = m_bArranging;
    if (m_bArranging)
        return;
    m_mergeTimer.stop();
    const FileChanges changes = std::move(m_pending);
    m_pending = {};
    if (m_now.all.size() + changes.records.size() <= k_nShortList) {
        take(arrange(m_now, changes, m_filter, m_order));
        return;
    }
    m_bArranging = true;
    m_pool.start([this, nGeneration = m_nGeneration, last = m_now, changes, filter = m_filter, order = m_order] {
        const FileArrangement next = arrange(last, changes, filter, order);
        QMetaObject::invokeMethod(
            this,
            [this, nGeneration, next] {
                if (nGeneration != m_nGeneration)
                    return;
                m_bArranging = false;
                take(next);
                if (m_bStale)
                    arrangeNow();
            },
            Qt::QueuedConnection);
    });
}

void FileGridModel::take(const FileArrangement &next)
{
    if (!next.bSameRows)
        beginResetModel();
    const bool bLong = m_now.all.size() > k_nShortList;
    FileArrangement last = std::exchange(m_now, next);
    // To take a long list apart would take a frame here.
    if (bLong)
        m_pool.start([last = std::move(last)] { Q_UNUSED(last) });
    if (!next.bSameRows)
        endResetModel();
    for (const auto &run : next.changedRows)
        Q_EMIT dataChanged(index(run.first), index(run.second));
    Q_EMIT signalArranged();
}
