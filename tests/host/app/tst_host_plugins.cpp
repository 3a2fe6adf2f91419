#include "TestMain.h"
#include "app/PluginManager.h"

/** Modules that are broken, foreign or unwilling beside one that works. */
class HostPluginsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void leavesOutWhatFails()
    {
        QTemporaryDir folder;
        const QDir modules(QStringLiteral(FAULTY_PLUGINS_DIR));
        for (const QString &name : modules.entryList(QDir::Files))
            QVERIFY(QFile::copy(modules.filePath(name), folder.filePath(name)));
        QVERIFY(writeFile(folder.filePath(QStringLiteral("text.so")), "not a library"));
        QVERIFY(
            QFile::copy(modules.filePath(QStringLiteral("faulty_none.so")), folder.filePath(QStringLiteral("cut.so"))));
        QVERIFY(QFile::resize(folder.filePath(QStringLiteral("cut.so")), 3000));
        QVERIFY(QFile::copy(modules.filePath(QStringLiteral("faulty_none.so")),
                            folder.filePath(QStringLiteral("readme.txt"))));

        PluginManager manager;
        manager.loadFolder(folder.path());
        QCOMPARE(errorOf(manager, QStringLiteral("faulty_none")), QString());
        for (const char *name :
             {"faulty_refuses", "faulty_fails_init", "faulty_fails_ext", "faulty_no_plugin", "text", "cut"})
            QVERIFY2(!errorOf(manager, QLatin1String(name)).isEmpty(), name);
        QCOMPARE(int(manager.states().size()), 7);
        QCOMPARE(manager.problems().size(), 6);

        QCOMPARE(manager.getPlugins(QStringLiteral("IFaulty")).size(), 1);
        QCOMPARE(manager.getPlugins(QStringLiteral("ISecondName")), manager.getPlugins(QStringLiteral("IFaulty")));
        QVERIFY(manager.getPlugins(QStringLiteral("IUnknown")).isEmpty());
        QVERIFY(manager.objectByIid(QStringLiteral("BigImgPreview.Test.Faulty/1.0")) != nullptr);
        QVERIFY(manager.objectByIid(QStringLiteral("unknown")) == nullptr);
    }

    void doesWithoutFolder()
    {
        PluginManager manager;
        manager.loadFolder(QStringLiteral("/nowhere/plugins"));
        QCOMPARE(manager.problems().size(), 1);
        QVERIFY(manager.problems().first().contains(QStringLiteral("/nowhere/plugins")));
    }

    /** In the build folder, and below lib, lib64 and a multi-arch folder. */
    void findsInstalledFolder()
    {
        for (const char *pPlace : {"plugins", "lib/bigimgpreview/plugins", "lib64/bigimgpreview/plugins",
                                   "lib/x86_64-linux-gnu/bigimgpreview/plugins"}) {
            QTemporaryDir prefix;
            const QString place = QString::fromLatin1(pPlace);
            QVERIFY(QDir(prefix.path()).mkpath(QStringLiteral("bin")));
            QVERIFY(QDir(prefix.path()).mkpath(place));
            QCOMPARE(PluginManager::findPluginFolder(prefix.filePath(QStringLiteral("bin"))), prefix.filePath(place));
        }
    }

private:
    QString errorOf(const PluginManager &manager, const QString &beginning)
    {
        for (const PluginState &state : manager.states()) {
            if (QFileInfo(state.filePath).fileName().startsWith(beginning))
                return state.error;
        }
        return QStringLiteral("no such module");
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostPluginsTest)
#include "tst_host_plugins.moc"
