#pragma once

#include "library/FileRecord.h"

#include <QAbstractListModel>
#include <QHash>
#include <QTimer>

/**
 * The files in view in the order chosen by the user. Files that arrive in batches are taken in together, so that a
 * large folder costs a few merges and not one for each batch.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class FileGridModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum class Order { Name, NewestFirst };

    explicit FileGridModel(QObject *pParent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int nRole) const override;

    FileRecordPtr recordAt(int nRow) const { return m_files.value(nRow); }
    int rowOf(qint64 nFileId) const;
    QVector<qint64> fileIds() const;

    Order order() const { return m_order; }
    void setOrder(Order order);

    /** Keeps the files of this folder and its sub-folders in view, the others aside; empty: all files. */
    void setFolder(const QString &folder);

    void clear();
    void addRecords(const FileRecordList &records);
    void removeFiles(const QVector<qint64> &fileIds);

private:
    using Compare = bool (*)(const FileRecordPtr &, const FileRecordPtr &);
    Compare compare() const;
    void takeInPending();
    bool isWanted(const FileRecordPtr &pRecord) const;
    void rememberRows() const;

    FileRecordList m_files;
    FileRecordList m_pending;
    QHash<qint64, FileRecordPtr> m_aside;
    QString m_folder;
    mutable QHash<qint64, int> m_rows;
    QTimer m_mergeTimer;
    Order m_order = Order::Name;
};
