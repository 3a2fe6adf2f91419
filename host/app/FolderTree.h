#pragma once

#include "library/FileRecord.h"

#include <QTreeView>

class QStandardItem;
class QStandardItemModel;

/**
 * The opened folders and those of their sub-folders that hold files. Says which one the user wants to see.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class FolderTree : public QTreeView {
    Q_OBJECT

public:
    explicit FolderTree(QWidget *pParent);

    /** Starts over with these folders; the first entry is the current one. */
    void setRoots(const QStringList &folders);

    /** Adds the folders of these files. */
    void addFoldersOf(const FileRecordList &records);

    /** The folder shown at this place of the viewport; empty where there is none, or the entry for all folders. */
    QString folderAt(const QPoint &position) const;

Q_SIGNALS:
    /** Files of this folder and below it; empty: of all folders. */
    void signalFolderWanted(const QString &folder);
    /** The user is done choosing. */
    void signalLeft();

protected:
    void keyPressEvent(QKeyEvent *pEvent) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    QStandardItem *addItem(QStandardItem *pParent, const QString &name, const QString &folder);
    QStandardItem *itemOf(const QString &folder);
    void applyTheme();

    QStandardItemModel *m_pModel;
    QHash<QString, QStandardItem *> m_items; ///< By folder.
    QString m_lastFolder;
};
