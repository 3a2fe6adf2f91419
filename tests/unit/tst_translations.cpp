#include "TestMain.h"
#include "actions/FileActionType.h"
#include "plugin/PluginTranslation.h"

#include <QDomDocument>

namespace {

/** What a translation must keep: the places of numbers and names, line ends, and the bracket that a key's text follows.
 */
QStringList marksOf(const QString &text)
{
    static const QRegularExpression mark(QStringLiteral("%L?\\d+%?|%n|\n|\\($"));
    QStringList marks;
    for (auto match = mark.globalMatch(text); match.hasNext();)
        marks.append(match.next().captured());
    marks.sort();
    return marks;
}

} // namespace

/** The translations against the sources as they are, and the plug-in's choice of one. */
class tst_translations : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() override
    {
        QLocale::setDefault(QLocale::c());
        LoggedTest::cleanup();
    }

    void complete_data()
    {
        const auto row = columns<QString, QString>("folder", "file");
        row("plug-in", "src", "bigimgpreview_zh_CN.ts");
        row("host", "host", "host_zh_CN.ts");
    }

    void complete()
    {
        const auto [folder, file] = currentRow<QString, QString>();
        const QString source = QStringLiteral(BIGIMGPREVIEW_SOURCE_DIR "/") + folder;
        const QTemporaryDir work;
        const QString copy = work.filePath(file);
        QVERIFY(QFile::copy(source + QStringLiteral("/translations/") + file, copy));
        QProcess lupdate;
        lupdate.start(QStringLiteral(LUPDATE),
                      {QStringLiteral("-locations"), QStringLiteral("none"), source, QStringLiteral("-ts"), copy});
        QVERIFY(lupdate.waitForFinished(60000));
        QCOMPARE(lupdate.exitCode(), 0);
        // Texts that it cannot place are never translated, and would not be missed below.
        const QString said = QString::fromUtf8(lupdate.readAllStandardError());
        for (const char *pComplaint : {"without context", "lacks Q_OBJECT"})
            QVERIFY2(!said.contains(QLatin1String(pComplaint)), qPrintable(said));

        QDomDocument document;
        QVERIFY(document.setContent(readFile(copy)));
        const QDomNodeList messages = document.elementsByTagName(QStringLiteral("message"));
        QVERIFY(messages.size() > 50);
        QStringList faults;
        for (int i = 0; i < messages.size(); ++i) {
            const QString text = messages.at(i).firstChildElement(QStringLiteral("source")).text();
            const QDomElement translation = messages.at(i).firstChildElement(QStringLiteral("translation"));
            // "unfinished" where it is new or open, "vanished" where the sources have no such text any more.
            if (translation.hasAttribute(QStringLiteral("type")) || translation.text().isEmpty())
                faults.append(QStringLiteral("%1: \"%2\"").arg(translation.attribute(QStringLiteral("type")), text));
            else if (marksOf(text) != marksOf(translation.text()))
                faults.append(QStringLiteral("other marks: \"%1\"").arg(text));
        }
        QVERIFY2(faults.isEmpty(), qPrintable(QStringLiteral("Run target update_translations and translate\n") +
                                              faults.join(QLatin1Char('\n'))));
    }

    void followsTheLocale()
    {
        const auto close = [] {
            return QCoreApplication::translate("HubTitleBar", "Close");
        };
        for (const auto &[pLocale, bTranslated] :
             {std::pair("zh_CN", true), {"zh_SG", true}, {"zh_TW", false}, {"en_GB", false}, {"C", false}}) {
            QLocale::setDefault(QLocale(QLatin1String(pLocale)));
            {
                QObject owner;
                installPluginTranslation(&owner);
                QVERIFY2((close() != QLatin1String("Close")) == bTranslated, pLocale);
            }
            // An unloaded plug-in leaves nothing behind that texts are looked up in.
            QCOMPARE(close(), QStringLiteral("Close"));
        }
    }

    void everyTypeHasItsMenu()
    {
        QLocale::setDefault(QLocale(QStringLiteral("zh_CN")));
        for (const auto typeOf :
             {&FileActionType::image, &FileActionType::presentation, &FileActionType::video, &FileActionType::audio}) {
            const FileActionType &type = typeOf();
            QObject owner;
            QCOMPARE(type.text("Export File"), QStringLiteral("Export File"));
            installPluginTranslation(&owner);
            for (const char *pText : {"Export File", "Operation exception", type.pCoverItem, type.pCoverDone})
                QVERIFY2(type.text(pText) != QString::fromUtf8(pText), pText);
        }
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_translations)
#include "tst_translations.moc"
