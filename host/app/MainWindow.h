#pragma once

#include "interfaces/surfaces/IMainWindowHandle.h"
#include "library/FolderScanner.h"

#include <QPointer>
#include <QWidget>

class ElidedLabel;
class EmptyState;
class FileGridModel;
class FileGridView;
class FolderTree;
class ITSCacheManager;
class Library;
class QComboBox;
class QStackedWidget;
class QToolButton;
class StatusLine;
class ThumbnailSource;
class TitleBar;

/**
 * The host's window: title bar, tool row, grid and status line, frameless. Shows the library and says what the user
 * asks for; opens nothing itself.
 *
 * Owner: HostSession. Thread: GUI thread only.
 */
class MainWindow : public QWidget {
    Q_OBJECT

public:
    MainWindow(Library *pLibrary, FileGridModel *pModel);
    ~MainWindow() override;

    void setThumbnailCache(const QSharedPointer<ITSCacheManager> &pCache);
    bool areThumbnailsComing() const;
    FileGridView *grid() const { return m_pGrid; }
    FolderTree *folderTree() const { return m_pFolders; }
    StatusLine *statusLine() const { return m_pStatus; }

    /** Geometry as text for the settings file, and back. */
    QByteArray geometryState() const;
    void restoreGeometryState(const QByteArray &state);

    void toggleMaximized();

Q_SIGNALS:
    void signalQuickPreview(qint64 nFileId);
    void signalOpenFile(qint64 nFileId);
    void signalFolderChosen(const QString &folder);
    void signalThemeToggled();
    void signalAboutToClose();

protected:
    void resizeEvent(QResizeEvent *pEvent) override;
    void closeEvent(QCloseEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    QWidget *buildToolRow();
    QWidget *buildMiddle();
    void buildLayout();
    void connectLibrary();
    void connectFolders();
    void addShortcuts();
    void rescan();
    void startOver();
    void applyTheme();
    void chooseFolder();
    void showCounts();
    void showPage();
    void reportScan(const ScanReport &report);

    Library *m_pLibrary;
    QWidget *m_pContent; ///< Carries the style sheet, which must not reach the previews opened over the window.
    FileGridModel *m_pModel;
    ThumbnailSource *m_pThumbnails;
    TitleBar *m_pTitleBar;
    ElidedLabel *m_pPlace;
    QComboBox *m_pOrder;
    QToolButton *m_pFolderButton;
    QToolButton *m_pRefreshButton;
    FolderTree *m_pFolders;
    QWidget *m_pFolderColumn;
    QStackedWidget *m_pPages;
    FileGridView *m_pGrid;
    EmptyState *m_pEmpty;
    StatusLine *m_pStatus;
};

/** The window as previews steer it. Owner: HostSession; outlives the previews. Thread: GUI thread only. */
class MainWindowHandle final : public IMainWindowHandle {
public:
    explicit MainWindowHandle(MainWindow *pWindow);
    virtual ~MainWindowHandle() = default;
    Q_DISABLE_COPY(MainWindowHandle)

    void moveBy(const QPoint &offset) override;
    bool isMaximized() const override;
    void minimize() override;
    void toggleMaximized() override;
    void close() override;

private:
    QPointer<MainWindow> m_pWindow;
};
