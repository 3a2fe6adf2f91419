#pragma once

#include "library/FolderScanner.h"

#include <QWidget>

class EmptyState;
class FileGridModel;
class FileGridView;
class FolderTree;
class FullPreviewPlace;
class InfoPanel;
class ITSCacheManager;
class LeftColumn;
class Library;
class LibraryBanner;
class PaneSplitter;
class QSettings;
class QStackedWidget;
class StatusLine;
class ThumbnailSource;
class TitleBar;
class ToolRow;

/**
 * The host's window: title bar, columns, grid and status line, frameless. Shows the library and says what the user asks
 * for; opens nothing itself. Lends its middle to the full preview.
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
    FolderTree *folderTree() const;
    StatusLine *statusLine() const { return m_pStatus; }
    TitleBar *titleBar() const { return m_pTitleBar; }
    InfoPanel *infoPanel() const { return m_pPanel; }
    FullPreviewPlace *fullPreviewPlace() const { return m_pFullPlace; }

    /** Geometry, columns, order and panel as the user left them. */
    void saveState(QSettings *pIni) const;
    void restoreState(QSettings *pIni);

    void toggleMaximized();

    /** Tells panel and status line which files are selected, or that one is looked at alone. */
    void showSelection();

    /** Puts the cursor into the current file's name in the panel. */
    void renameFile();

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
    void standInTheMiddle();
    QWidget *buildFilesPage();
    void buildLayout();
    void connectLibrary();
    void connectParts();
    void addShortcuts();
    void rescan();
    void startOver();
    void applyTheme();
    void chooseFolder();
    void focusFiles();
    void togglePanel();
    void showColumns();
    void showCounts();
    void showPage();
    void showEmptyText();
    void reportScan(const ScanReport &report);

    Library *m_pLibrary;
    FileGridModel *m_pModel;
    ThumbnailSource *m_pThumbnails;
    TitleBar *m_pTitleBar;
    LibraryBanner *m_pBanner;
    PaneSplitter *m_pSplitter;
    LeftColumn *m_pLeft;
    QStackedWidget *m_pCenter;
    ToolRow *m_pTools;
    QStackedWidget *m_pPages;
    FileGridView *m_pGrid;
    EmptyState *m_pEmpty;
    InfoPanel *m_pPanel;
    StatusLine *m_pStatus;
    FullPreviewPlace *m_pFullPlace;
};
