#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/PluginInfo.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"

using namespace OpenPreview;

/** The built module as a host's code meets it: its identity, its lifetime, and a host without some. */
class ModuleTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void isOneObjectWithFiveNames()
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

    void unloadsAndLoadsAgain()
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

    void startsHostWithoutModules_data()
    {
        const auto row = columns<QStringList, bool>("modules", "bOpens");
        const QString preview = QStringLiteral("libbigimgpreview.so");
        const QString settings = QStringLiteral("libhostsettings.so");
        row("none", QStringList(), false);
        row("settings alone", QStringList(settings), false);
        row("preview alone", QStringList(preview), true);
        row("no base module", QStringList({preview, settings}), true);
    }

    void startsHostWithoutModules()
    {
        const auto [modules, bOpens] = currentRow<QStringList, bool>();
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

private:
    static QString modulePath() { return QStringLiteral(PLUGINS_DIR "/libbigimgpreview.so"); }
};

BIGIMGPREVIEW_TEST_MAIN(ModuleTest)
#include "tst_e2e_module.moc"
