#pragma once

#include "app/CommandLine.h"
#include "app/FileGridModel.h"
#include "app/PluginManager.h"
#include "library/Library.h"

#include <QObject>
#include <QSettings>

#include <memory>

class AnalysisQueue;
class IHostAnalysis;
class IHostMedia;
class FileDeeds;
class HostDataSource;
class MainWindow;
class MainWindowHandle;
class PreviewController;

/**
 * One run of the host: owns plug-ins, library, window and previews, connects them and ends them in order.
 *
 * Owner: main. Thread: GUI thread only.
 */
class HostSession : public QObject {
    Q_OBJECT

public:
    HostSession(const CommandLine &commandLine, const QString &applicationFolder);
    ~HostSession() override;

    /** Opens the library, loads the plug-ins and shows the window. */
    void start();

    MainWindow *window() const { return m_pWindow.get(); }
    PreviewController *previews() const { return m_pPreviews.get(); }
    Library *library() { return &m_library; }
    const FileGridModel &model() const { return m_model; }

    void toggleTheme();

private:
    QString pluginFolder() const;
    void showWindow();
    void restoreTheme();
    void connectLanguage();
    void showPlaces();
    void loadPlugins();
    IHostMedia *mediaPlayer();
    void connectPreviews();
    void connectFullPreview();
    void connectAnalysis();
    void openPreview(qint64 nFileId, bool bFull);
    void leavePreview(qint64 nFileId);
    void openWantedFile();
    void saveWindow();
    void shutdown();

    const CommandLine m_commandLine;
    const QString m_applicationFolder;
    QSettings m_ini;
    PluginManager m_plugins;
    Library m_library;
    FileGridModel m_model;
    std::unique_ptr<MainWindow> m_pWindow;
    std::unique_ptr<MainWindowHandle> m_pHandle;
    std::unique_ptr<PreviewController> m_pPreviews;
    std::unique_ptr<AnalysisQueue> m_pQueue;
    QSharedPointer<HostDataSource> m_pDataSource;
    std::unique_ptr<FileDeeds> m_pDeeds;
    IHostAnalysis *m_pAnalysis = nullptr;
    QString m_wantedFile; ///< To be shown as soon as it is listed; empty afterwards.
    bool m_bWantedListed = false;
};
