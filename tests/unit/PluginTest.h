#pragma once

#include "FakeHost.h"
#include "TestMain.h"
#include "plugin/PluginInnerData.h"

/**
 * Base of the tests of the plug-in's core (link bigimgpreview_core): every test function begins with a fresh host that
 * the shared state knows, and must leave no load, open file or document behind.
 */
class PluginTest : public LoggedTest {
protected:
    FakeHost &host() { return *m_pHost; }
    static PluginInnerData *data() { return PluginInnerData::instance(); }

    /** Hands the host in, as the plug-in's root object does; again after a change of what the host offers. */
    void attachHost()
    {
        data()->setPluginManager(m_pHost.get());
        data()->setDataSource(m_pHost->source);
        data()->setMainWindowHandle(&m_pHost->window);
    }

    static void openFiles(const QVector<qint64> &fileIds, qint64 nCurrentId)
    {
        data()->setFileList(fileIds, fileIds.indexOf(nCurrentId), 0);
        data()->setCurrentFile(nCurrentId);
    }

    /** Runs the workers to their end and delivers what they sent. */
    static void finishWorkers()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::sendPostedEvents();
    }

    void init() override
    {
        LoggedTest::init();
        m_pHost = std::make_unique<FakeHost>();
        attachHost();
    }

    void cleanup() override
    {
        m_pHost->decoder.openGates();
        m_pHost->renderer.openGate.open();
        m_pHost->renderer.renderGate.open();
        finishWorkers();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        const bool bLeftBehind =
            data()->isLoading() || data()->hasPendingPresentations() || !m_pHost->decoder.counts().isBalanced();
        data()->clearRenderCache();
        data()->clearPreviewData();
        data()->setMainWindowHandle(nullptr);
        data()->setPluginManager(nullptr);
        data()->setFileList({}, 0, -1);
        data()->setCurrentFile(-1);
        m_pHost.reset();
        LoggedTest::cleanup();
        QVERIFY2(!bLeftBehind, "a load, an open file or a decoded document was left behind");
    }

private:
    std::unique_ptr<FakeHost> m_pHost;
};

using HostChange = std::function<void(FakeHost &)>;
Q_DECLARE_METATYPE(HostChange)
