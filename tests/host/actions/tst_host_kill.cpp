#include "ActionStage.h"
#include "TestMain.h"

#include <QImage>

#include <algorithm>
#include <signal.h>

namespace {

constexpr int k_nFiles = 60;
constexpr int k_nFileSize = 300000;
constexpr int k_nRounds = 12;

QString nameOf(int nFile)
{
    return QStringLiteral("%1.txt").arg(nFile);
}

QByteArray contentOf(int nFile)
{
    return QByteArray(k_nFileSize, char('A' + nFile % 26));
}

/** What the process that gets killed does: one kind of action over and over. */
int runVictim(const QString &folder, const QString &kind)
{
    ActionStage stage(folder);
    if (!stage.open())
        return EXIT_FAILURE;
    ::puts("ready");
    ::fflush(stdout);
    QString error;
    for (int nRound = 0;; ++nRound) {
        if (kind == QLatin1String("folder"))
            stage.exportTo(stage.target(), stage.allIds(), false);
        else if (kind == QLatin1String("pack"))
            stage.exportTo(stage.target() + QStringLiteral("/x.MORAYPack"), stage.allIds(), true);
        else if (kind == QLatin1String("import"))
            stage.import(stage.path(QStringLiteral("given.MORAYPack")), stage.target(), &error);
        else if (kind == QLatin1String("cover"))
            stage.setCover(stage.allIds().value(nRound % k_nFiles), stage.path(QStringLiteral("cover.png")));
        else if (kind == QLatin1String("recycle"))
            stage.recycle(stage.allIds().mid(2 * nRound, 2));
        else
            stage.remove(stage.allIds().mid(2 * nRound, 2));
        if (kind == QLatin1String("folder"))
            QDir(stage.target()).removeRecursively(), QDir().mkpath(stage.target());
    }
}

} // namespace

/** The program is killed at any moment of any action and started again: nothing of the user's is lost or half. */
class HostKillTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void losesNothing_data() { namedRows({"folder", "pack", "import", "cover", "recycle", "remove"}); }

    void losesNothing()
    {
        const QString kind = rowName();
        QTemporaryDir folder;
        for (int nRound = 0; nRound < k_nRounds; ++nRound) {
            ActionStage stage(folder.path());
            const bool bRemoves = kind == QLatin1String("remove") || kind == QLatin1String("recycle");
            for (int i = 0; i < k_nFiles; ++i)
                stage.write(nameOf(i), contentOf(i));
            QVERIFY(plainImage(QSize(300, 300), Qt::green).save(stage.path(QStringLiteral("cover.png"))));
            if (nRound == 0) {
                QVERIFY(stage.open());
                stage.library->addLabels(stage.allIds(), {TagRecordPtr(new TagRecord{0, QStringLiteral("kept")})});
                QCOMPARE(
                    stage.exportTo(stage.path(QStringLiteral("given.MORAYPack")), stage.allIds(), true)->returnCode(),
                    0);
                stage.source.reset();
                stage.library.reset();
            }
            QProcess victim;
            victim.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--victim"), folder.path(), kind});
            QVERIFY(victim.waitForReadyRead(20000));
            QTest::qWait(int(QRandomGenerator::global()->bounded(120)));
            QCOMPARE(::kill(pid_t(victim.processId()), SIGKILL), 0);
            QVERIFY(victim.waitForFinished());

            QVERIFY(stage.open());
            checkTarget(stage, stage.target());
            QCOMPARE(ActionStage::namesIn(stage.library->unfinishedFolder()), QStringList());
            // A file that was gone before the library could be told is dimmed, as any that vanished.
            const FileRecordList records = stage.library->records();
            const auto nAvailable = std::count_if(records.cbegin(), records.cend(), [](const FileRecordPtr &pRecord) {
                return !pRecord->isUnavailable();
            });
            QCOMPARE(int(nAvailable), ActionStage::namesIn(stage.filesFolder()).size());
            QVERIFY(bRemoves || nAvailable == k_nFiles);
            for (int i = 0; i < k_nFiles; ++i) {
                const FileRecordPtr pRecord = stage.record(nameOf(i));
                if (pRecord == nullptr || pRecord->isUnavailable())
                    continue;
                QCOMPARE(readFile(pRecord->filePath()), contentOf(i));
                QVERIFY(kind == QLatin1String("remove") || pRecord->tags().size() == 1);
                const QString cover = pRecord->coverPath();
                QVERIFY(cover.isEmpty() || !QImage(cover).isNull());
            }
            // No picture that nobody uses either.
            for (const QString &name : ActionStage::namesIn(stage.library->coverFolder()))
                QVERIFY2(!name.startsWith(QLatin1Char('.')), qPrintable(name));
        }
    }

private:
    /** Every file in the target is whole; a pack can be imported in full. */
    static void checkTarget(ActionStage &stage, const QString &folder)
    {
        for (const QString &name : ActionStage::namesIn(folder)) {
            const QString path = folder + QLatin1Char('/') + name;
            QVERIFY2(!name.startsWith(QLatin1Char('.')), qPrintable(name));
            if (QFileInfo(path).isDir()) {
                QCOMPARE(ActionStage::namesIn(path).size(), k_nFiles);
                checkTarget(stage, path);
            } else if (name.endsWith(QStringLiteral(".MORAYPack"))) {
                QString error;
                const QString imported = stage.import(path, stage.path(QStringLiteral("imported")), &error);
                QCOMPARE(error, QString());
                QCOMPARE(ActionStage::namesIn(imported).size(), k_nFiles);
            } else {
                // What an export of a round before had finished is numbered beside it: "3.txt", "3 (1).txt".
                const QString number = name.section(QRegularExpression(QStringLiteral("[ .]")), 0, 0);
                QCOMPARE(readFile(path), contentOf(number.toInt()));
            }
        }
    }
};

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--victim") == 0) {
        QApplication application(argc, argv);
        QStandardPaths::setTestModeEnabled(true);
        return runVictim(QFile::decodeName(argv[2]), QString::fromLatin1(argv[3]));
    }
    return runTest<HostKillTest>(argc, argv);
}

#include "tst_host_kill.moc"
