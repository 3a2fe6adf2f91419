#pragma once

#include "app/FileArrangement.h"

#include <QAbstractListModel>
#include <QThreadPool>
#include <QTimer>

/**
 * The files in view in the order chosen by the user. Files that arrive in batches are taken in together. Short lists
 * are arranged at once; long ones on a thread of their own, so that the GUI thread only takes the result over.
 *
 * Owner: HostSession. Thread: GUI thread only.
 */
class FileGridModel : public QAbstractListModel {
    Q_OBJECT

public:
    using Order = FileOrder;

    explicit FileGridModel(QObject *pParent = nullptr);
    ~FileGridModel() override;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int nRole) const override;

    FileRecordPtr recordAt(int nRow) const { return m_now.files.value(nRow); }
    int rowOf(qint64 nFileId) const { return m_now.rows.value(nFileId, -1); }
    QVector<qint64> fileIds() const;
    /** Files whether the filter wants them or not. */
    int totalCount() const { return m_now.all.size(); }
    /** Files by label, whether the filter wants them or not. */
    const QHash<quint64, int> &labelUses() const { return m_now.labelUses; }

    Order order() const { return m_order; }
    void setOrder(Order order);

    const FileFilter &filter() const { return m_filter; }
    void setFilter(const FileFilter &filter);

    /** Keeps the files of this folder and its sub-folders in view, the others aside; empty: all files. */
    void setFolder(const QString &folder);

    void clear();
    void addRecords(const FileRecordList &records);
    void removeFiles(const QVector<qint64> &fileIds);

    /** Whether the rows show everything that was asked for. */
    bool isArranged() const;

Q_SIGNALS:
    /** The rows show what was asked for last, whether they changed or not. */
    void signalArranged();

private:
    void arrangeNow();
    void take(const FileArrangement &next);

    FileArrangement m_now;
    FileChanges m_pending;
    FileFilter m_filter;
    Order m_order = Order::Name;
    QTimer m_mergeTimer;
    QThreadPool m_pool;
    int m_nGeneration = 0; ///< Of what is being arranged; an older result is dropped.
    bool m_bArranging = false;
    bool m_bStale = false; ///< Asked for something else while arranging.
};
