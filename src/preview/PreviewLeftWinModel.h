#pragma once

#include "interfaces/data/IFileInfo.h"

#include <QAbstractListModel>
#include <QVector>

/** The records of the listed files, in list order, for the strip. Owner: the strip. Thread: GUI thread. */
class PreviewLeftWinModel : public QAbstractListModel {
    Q_OBJECT

public:
    /** Role of a row's record. */
    enum Role { FileInfoRole = Qt::UserRole + 1 };

    explicit PreviewLeftWinModel(QObject *pParent);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int nRole) const override;

    void clear();
    /** Takes over the shared state's records. */
    void setList();

private:
    QVector<FileInfoPtr> m_files;
};
