#include "TestMain.h"
#include "app/HostLanguage.h"
#include "app/HostSession.h"
#include "app/LanguageMenu.h"
#include "app/MainWindow.h"
#include "app/TitleBar.h"
#include "settings/HostSettings.h"

#include <QAction>

/** The choice of a language: kept from start to start, and what the program shows then. */
class HostLanguageTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void isRemembered()
    {
        QFile::remove(HostSettings::defaultPath());
        const QString chinese = QStringLiteral("\u7b80\u4f53\u4e2d\u6587");
        QCOMPARE(session(chinese), QStringLiteral("System"));
        QCOMPARE(session(QStringLiteral("English")), chinese);
        QCOMPARE(session(QStringLiteral("System")), QStringLiteral("English"));
        QCOMPARE(session(), QStringLiteral("System"));
    }

    void unknownIsSystem()
    {
        const QTemporaryDir folder;
        QSettings ini(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
        for (const char *pCode : {"", "en", "zh_CN", "xx", "../zh_CN"}) {
            const QString code = QString::fromLatin1(pCode);
            HostLanguage::remember(&ini, code);
            QCOMPARE(HostLanguage::remembered(ini), HostLanguage::isKnown(code) ? code : QString());
        }
        QVERIFY(!HostLanguage::isKnown(QStringLiteral("xx")));
    }

    void install()
    {
        const std::tuple<QString, QLocale::Language, QString> rows[] = {
            {QString(), QLocale::C, QStringLiteral("Light or dark")}, // the system's, which has none here
            {QStringLiteral("en"), QLocale::English, QStringLiteral("Light or dark")},
            {QStringLiteral("zh_CN"), QLocale::Chinese, QStringLiteral("\u6d45\u8272\u6216\u6df1\u8272")}};
        for (const auto &[code, language, text] : rows) {
            HostLanguage::install(code);
            const QLocale::Language nSet = QLocale().language();
            const QString seen = TitleBar::tr("Light or dark");
            // Before anything is compared: the next row begins without it.
            qDeleteAll(qApp->findChildren<QTranslator *>());
            QLocale::setDefault(QLocale::system());
            QCOMPARE(nSet, language);
            QCOMPARE(seen, text);
        }
    }

private:
    /** What a new session finds chosen; chooses an entry when one is named. */
    QString session(const QString &choose = {})
    {
        const QTemporaryDir folder;
        CommandLine commandLine;
        commandLine.libraryPath = folder.filePath(QStringLiteral("library.db"));
        commandLine.pluginFolder = folder.path();
        commandLine.folders = QStringList(folder.path());
        log().expect(QStringLiteral("plug-in"));
        HostSession host(commandLine, folder.path());
        host.start();
        QString checked;
        QAction *pWanted = nullptr;
        for (QAction *pAction : host.window()->titleBar()->languageMenu()->actions()) {
            if (pAction->isChecked())
                checked += pAction->text();
            if (pAction->text() == choose)
                pWanted = pAction;
        }
        if (pWanted != nullptr)
            pWanted->trigger();
        return checked;
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostLanguageTest)
#include "tst_host_language.moc"
