#pragma once

#include <QObject>
#include <QPointer>
#include <QSharedPointer>

class ActionRunner;
class HostDataSource;
class IFileAction;
class Library;
class MainWindow;
struct ActionProgress;

/**
 * What the window offers beyond previews: importing packs (Ctrl+I, the folders' menu, a pack dropped on the window),
 * protecting folders from deleting, and taking chosen preview pictures away. Shows in the status line what went wrong
 * with any action.
 *
 * Owner: HostSession. Thread: GUI thread only.
 */
class FileDeeds : public QObject {
    Q_OBJECT

public:
    FileDeeds(Library *pLibrary, HostDataSource *pDataSource, MainWindow *pWindow);

    /** Imports into a new folder below the one in view, or below the user's pictures, and shows it. */
    void importPack(const QString &packPath);

Q_SIGNALS:
    /** The import ended; the folder is empty when it failed. */
    void signalImported(const QString &folder);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void choosePack();
    void removeCover(qint64 nFileId);
    void showFolderMenu(const QPoint &position);
    void showImported(const QString &folder, int nFiles, const QString &error);
    QString importFolder() const;

    Library *m_pLibrary;
    HostDataSource *m_pDataSource;
    QPointer<MainWindow> m_pWindow;
    QSharedPointer<IFileAction> m_pCoverAction; ///< Of the latest removal.
};
