#include "GatedServices.h"
#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "app/FileGridModel.h"
#include "app/PluginManager.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/PluginInfo.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"
#include "library/Library.h"
#include "library/LibraryDataSource.h"

#include <QPluginLoader>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace OpenPreview;

/** The built module as a host's code meets it: its identity, its lifetime, and what it does without services. */
class ModuleTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void isOneObjectWithFiveNames();
    void unloadsAndLoadsAgain();
    void startsHostWithoutModules_data();
    void startsHostWithoutModules();
    void connectsHost();
    void doesWithoutServices_data();
    void doesWithoutServices();
    void survivesItsEndDuringADecode_data();
    void survivesItsEndDuringADecode();
    void letsTheHostGoDuringADecode();
    void opensASecondSurface();
    void cleanupTestCase();

protected Q_SLOTS:
    void cleanup() override;

private:
    static QString modulePath() { return QStringLiteral(PLUGINS_DIR "/libbigimgpreview.so"); }
    qint64 idOf(const QString &name) const;
    IPreviewSpaceDialog *open(const QString &name);

    QTemporaryDir m_folder;
    PluginManager m_manager;
    Library m_library;
    FileGridModel m_model;
    std::unique_ptr<GatedServices> m_pServices;
    QSharedPointer<LibraryDataSource> m_pSource;
    IPlugin *m_pPlugin = nullptr;
    IBigImgPreviewPlugin *m_pPreview = nullptr;
    std::unique_ptr<QWidget> m_pWindow;
};

void ModuleTest::isOneObjectWithFiveNames()
{
    QPluginLoader first(modulePath());
    QPluginLoader second(modulePath());
    QObject *pRoot = first.instance();
    QVERIFY2(pRoot != nullptr, qPrintable(first.errorString()));
    QCOMPARE(second.instance(), pRoot);
    QCOMPARE(first.metaData().value(QStringLiteral("IID")).toString(),
             QStringLiteral("Tessaro.Plugin.IBigImgPreviewPlugin/1.0"));
    void *pPlugin = pRoot->qt_metacast("IPlugin");
    void *pPreview = pRoot->qt_metacast("IBigImgPreviewPlugin");
    QVERIFY(pPlugin != nullptr && pPreview != nullptr && pPlugin != pPreview);
    QCOMPARE(pRoot->qt_metacast("BigImgPreviewPlugin"), static_cast<void *>(pRoot));
    QCOMPARE(pRoot->qt_metacast("KOR.Core.IPlugin/1.0"), pPlugin);
    QCOMPARE(pRoot->qt_metacast("Tessaro.Plugin.IBigImgPreviewPlugin/1.0"), pPreview);
    QVERIFY(pRoot->qt_metacast("Tessaro.Plugin.IBigImgPreviewPlugin/2.0") == nullptr);

    auto *pInterface = qobject_cast<IPlugin *>(pRoot);
    QVERIFY(pInterface != nullptr);
    QCOMPARE(pInterface->getObject(), pRoot);
    QCOMPARE(pInterface->getPluginId(), QUuid(QStringLiteral("{9D47E94E-361D-40D8-151E-B7507AB42B78}")));
    PluginInfo info;
    pInterface->getPluginInfo(info);
    QCOMPARE(info.name, QStringLiteral("Big Image Preview"));
    QCOMPARE(info.version, QStringLiteral("1.0"));
    QVERIFY(!pInterface->setPluginManager(nullptr));
    second.unload();
    first.unload();
}

void ModuleTest::unloadsAndLoadsAgain()
{
    for (int i = 0; i < 3; ++i) {
        QPluginLoader loader(modulePath());
        auto *pPreview = qobject_cast<IBigImgPreviewPlugin *>(loader.instance());
        QVERIFY2(pPreview != nullptr, qPrintable(loader.errorString()));
        // Before anything was handed in: an empty preview that comes and goes.
        {
            const std::unique_ptr<IPreviewSpaceDialog> pDialog(
                pPreview->createPreviewSpaceDialog(nullptr, {}, -1, 0, 0));
            pDialog->showPreview();
            QVERIFY(waitForPicture());
            QVERIFY(isPlaceholder());
        }
        pPreview->clearPreviewData();
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY2(loader.unload(), qPrintable(loader.errorString()));
    }
}

void ModuleTest::startsHostWithoutModules_data()
{
    QTest::addColumn<QStringList>("modules");
    QTest::addColumn<bool>("bOpens");
    const QString preview = QStringLiteral("libbigimgpreview.so");
    const QString settings = QStringLiteral("libhostsettings.so");
    QTest::newRow("none") << QStringList() << false;
    QTest::newRow("settings alone") << QStringList(settings) << false;
    QTest::newRow("preview alone") << QStringList(preview) << true;
    QTest::newRow("no base module") << QStringList({preview, settings}) << true;
}

void ModuleTest::startsHostWithoutModules()
{
    QFETCH(QStringList, modules);
    QFETCH(bool, bOpens);
    log().expect(QStringLiteral("Big Img Preview Set Plugin Manager"));
    const QTemporaryDir folder;
    for (const QString &module : qAsConst(modules))
        QVERIFY(QFile::link(QStringLiteral(PLUGINS_DIR "/") + module, folder.filePath(module)));
    HostUser host(QStringLiteral(SAMPLES_DIR "/pictures"), folder.path());
    QTRY_VERIFY_WITH_TIMEOUT(host.fileCount() > 40, PatienceMsec);
    QVERIFY(host.select(QStringLiteral("landscape.jpg")));
    key(Qt::Key_Space);
    QCOMPARE(dialog() != nullptr, bOpens);
    if (bOpens) {
        QVERIFY(waitForPicture());
        QVERIFY(isPlaceholder());
        key(Qt::Key_Right);
        QVERIFY(waitForPicture());
    }
    QVERIFY(host.returnToGrid());
}

void ModuleTest::connectsHost()
{
    m_manager.loadFolder(QStringLiteral(PLUGINS_DIR));
    QVERIFY2(m_manager.problems().isEmpty(), qPrintable(m_manager.problems().join(QLatin1Char('\n'))));
    QObject *pRoot = m_manager.objectByIid(QStringLiteral("Tessaro.Plugin.IBigImgPreviewPlugin/1.0"));
    m_pPlugin = qobject_cast<IPlugin *>(pRoot);
    m_pPreview = qobject_cast<IBigImgPreviewPlugin *>(pRoot);
    QVERIFY(m_pPreview != nullptr);
    m_pServices = std::make_unique<GatedServices>(&m_manager);
    connect(&m_library, &Library::signalRecords, &m_model, &FileGridModel::addRecords);
    QSignalSpy scanned(&m_library, &Library::signalScanEnded);
    m_library.open(m_folder.filePath(QStringLiteral("library.db")));
    m_library.showFolderNow(QStringLiteral(SAMPLES_DIR "/pictures"));
    QTRY_COMPARE_WITH_TIMEOUT(scanned.size(), 1, PatienceMsec);
    QTRY_VERIFY(m_model.rowCount() > 40);
    m_pSource = QSharedPointer<LibraryDataSource>::create(&m_library);
    m_pWindow = std::make_unique<QWidget>();
    m_pWindow->resize(900, 600);
    m_pWindow->show();
    QVERIFY(makeActive(m_pWindow.get()));
    QVERIFY(m_pPlugin->setPluginManager(m_pServices.get()));
    m_pPreview->setDataSource(m_pSource);
}

qint64 ModuleTest::idOf(const QString &name) const
{
    for (int i = 0; i < m_model.rowCount(); ++i) {
        if (m_model.recordAt(i)->fileName() == name)
            return m_model.recordAt(i)->fileId();
    }
    return 0;
}

IPreviewSpaceDialog *ModuleTest::open(const QString &name)
{
    const qint64 nId = idOf(name);
    IPreviewSpaceDialog *pDialog =
        m_pPreview->createPreviewSpaceDialog(m_pWindow.get(), m_model.fileIds(), m_model.rowOf(nId), nId, 0);
    pDialog->showPreview();
    return pDialog;
}

void ModuleTest::cleanup()
{
    if (m_pServices != nullptr) {
        m_pServices->gate().open();
        m_pServices->missing.clear();
    }
    LoggedTest::cleanup();
}

void ModuleTest::doesWithoutServices_data()
{
    QTest::addColumn<QStringList>("missing");
    QTest::addColumn<bool>("bHasSource");
    QTest::addColumn<bool>("bPlaceholder");
    const QString base = QStringLiteral("IBaseModulePlugin");
    const QString settings = QStringLiteral("ISettingPlugin");
    QTest::newRow("nothing missing") << QStringList() << true << false;
    QTest::newRow("no settings") << QStringList(settings) << true << false;
    QTest::newRow("no base module") << QStringList(base) << true << true;
    QTest::newRow("no data source") << QStringList() << false << true;
    QTest::newRow("no plug-ins") << QStringList({base, settings}) << true << true;
    QTest::newRow("nothing at all") << QStringList({base, settings}) << false << true;
}

void ModuleTest::doesWithoutServices()
{
    QFETCH(QStringList, missing);
    QFETCH(bool, bHasSource);
    QFETCH(bool, bPlaceholder);
    log().expect(QStringLiteral("Big Img Preview Set Plugin Manager"));
    log().expect(QStringLiteral("PreviewSpaceDialog::slot_show_left_source"));
    log().expect(QStringLiteral("load ")); // … file failed
    m_pServices->missing = QSet<QString>(missing.begin(), missing.end());
    m_pPreview->setDataSource(bHasSource ? m_pSource : QSharedPointer<LibraryDataSource>());
    const std::unique_ptr<IPreviewSpaceDialog> pDialog(open(QStringLiteral("landscape.jpg")));
    QVERIFY(waitForPicture());
    QCOMPARE(isPlaceholder(), bPlaceholder);
    for (const Qt::Key nKey : {Qt::Key_Plus, Qt::Key_W, Qt::Key_Right, Qt::Key_Left, Qt::Key_Tab}) {
        key(nKey);
        QVERIFY(waitForPicture());
    }
    QCOMPARE(isPlaceholder(), bPlaceholder);
    QVERIFY(leave());
    m_pPreview->clearPreviewData();
    m_pServices->missing.clear();
    m_pPreview->setDataSource(m_pSource);
}

void ModuleTest::survivesItsEndDuringADecode_data()
{
    QTest::addColumn<bool>("bParentDies");
    QTest::newRow("surface deleted") << false;
    QTest::newRow("parent deleted") << true;
}

void ModuleTest::survivesItsEndDuringADecode()
{
    QFETCH(bool, bParentDies);
    m_pServices->gate().close();
    auto pParent = std::make_unique<QWidget>();
    const qint64 nId = idOf(QStringLiteral("large_24mp.jpg"));
    const QPointer<IPreviewSpaceDialog> pDialog(
        m_pPreview->createPreviewSpaceDialog(pParent.get(), m_model.fileIds(), m_model.rowOf(nId), nId, 0));
    pDialog->showPreview();
    QTRY_COMPARE(m_pServices->gate().waiting(), 1);
    if (bParentDies)
        pParent.reset();
    else
        delete pDialog.data();
    QVERIFY(pDialog == nullptr);
    m_pServices->gate().open();
    QThreadPool::globalInstance()->waitForDone();
    // The load that nobody waits for any more does not keep the next preview from ending.
    const std::unique_ptr<IPreviewSpaceDialog> pNext(open(QStringLiteral("landscape.jpg")));
    QVERIFY(waitForPicture());
    QVERIFY(!isPlaceholder());
    key(Qt::Key_Escape);
    QVERIFY(waitUntilClosed());
}

void ModuleTest::letsTheHostGoDuringADecode()
{
    m_pServices->gate().close();
    const std::unique_ptr<IPreviewSpaceDialog> pDialog(open(QStringLiteral("large_24mp.jpg")));
    QTRY_COMPARE(m_pServices->gate().waiting(), 1);
    m_pServices->gate().open();
    // It waits for the decode, which now runs; afterwards nothing of the host is held.
    const QWeakPointer<LibraryDataSource> pHeld = m_pSource;
    m_pSource.clear();
    m_pPreview->clearPreviewData();
    QVERIFY(pHeld.isNull());
    QVERIFY(leave());
    m_pSource = QSharedPointer<LibraryDataSource>::create(&m_library);
    m_pPreview->setDataSource(m_pSource);
}

void ModuleTest::opensASecondSurface()
{
    log().expect(QStringLiteral("PreviewSpaceDialog::slot_show_left_source"));
    std::unique_ptr<IPreviewSpaceDialog> pFirst(open(QStringLiteral("landscape.jpg")));
    QVERIFY(waitForPicture());
    const qint64 nId = idOf(QStringLiteral("wide_gamut.jpg"));
    std::unique_ptr<IPreviewSpaceDialog> pSecond(
        m_pPreview->createPreviewSpaceDialog(m_pWindow.get(), {nId}, 0, nId, 0));
    // The first one steps in the second one's list now, which has no other file.
    key(Qt::Key_Right);
    QVERIFY(waitForPicture());
    QSignalSpy closed(pFirst.get(), &IPreviewSpaceDialog::signalSpacePreviewClosed);
    QVERIFY(leave());
    QCOMPARE(closed.size(), 1);
    pFirst.reset();
    pSecond->showPreview();
    QVERIFY(waitForPicture());
    QTRY_VERIFY(isAbout(colorAt(0.25, 0.25), QColor(220, 30, 30)));
    QVERIFY(leave());
}

void ModuleTest::cleanupTestCase()
{
    if (m_pPreview != nullptr)
        m_pPreview->clearPreviewData();
    m_manager.shutdown();
}

BIGIMGPREVIEW_TEST_MAIN(ModuleTest)
#include "tst_e2e_module.moc"
