#pragma once

#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QVector>

class HostDataSource;
class IResponseInfo;
class Library;
class MainWindow;
class QAction;
class QMenu;

/**
 * What can be done with the files selected in the grid: its context menu, with Delete and Ctrl+C as keys. The work is
 * that of the actions that previews ask for, too; the status line tells how far it is and what went wrong.
 *
 * Owner: FileDeeds. Thread: GUI thread only.
 */
class FilesMenu : public QObject {
    Q_OBJECT

public:
    FilesMenu(Library *pLibrary, HostDataSource *pDataSource, MainWindow *pWindow, QObject *pParent);

private:
    QAction *addKey(const QString &text, const QKeySequence &key);
    void show(const QPoint &position);
    void addDeeds(QMenu *pMenu, bool bFiles);
    void copyFiles();
    void copyPaths();
    void openOutside(bool bFolder);
    void chooseExport(bool bPackage);
    void exportTo(const QString &path, bool bPackage);
    void recycle();
    void forget();
    void takeResult(qint64 nActionId, const QSharedPointer<const IResponseInfo> &pInfo);
    QVector<qint64> selection() const;
    /** Of the selected files that are there. */
    QStringList paths() const;

    Library *m_pLibrary;
    HostDataSource *m_pDataSource;
    QPointer<MainWindow> m_pWindow;
    QAction *m_pCopy;
    QAction *m_pRecycle;
    QVector<QSharedPointer<QObject>> m_running; ///< Actions whose result is to come.
};
