#include "../IdleAnalysis.h"
#include "ActionStage.h"
#include "TestMain.h"
#include "actions/FileCopy.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** A small file system of its own, seen by this process alone; unmounted at its end. */
class SmallDisk {
public:
    SmallDisk(const QString &folder, const char *pOptions)
        : m_path(QFile::encodeName(folder))
    {
        QDir().mkpath(folder);
        m_bMounted = ::mount("none", m_path.constData(), "tmpfs", 0, pOptions) == 0;
    }
    ~SmallDisk() { unplug(); }
    bool isMounted() const { return m_bMounted; }
    bool protect() const { return ::mount("none", m_path.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "") == 0; }
    void unplug()
    {
        if (m_bMounted)
            ::umount2(m_path.constData(), MNT_DETACH);
        m_bMounted = false;
    }

private:
    const QByteArray m_path;
    bool m_bMounted = false;
};

/** Reads red for pictures called slow, once the gate has been opened, and blue for all others. */
class GatedAnalysis final : public IdleAnalysis {
public:
    QImage readPicture(const QString &path, int nLongestSide, const std::atomic_bool & /*cancelled*/) override
    {
        const bool bSlow = path.contains(QStringLiteral("slow"));
        if (bSlow)
            gate.acquire();
        return plainImage(QSize(nLongestSide, nLongestSide), bSlow ? Qt::red : Qt::blue);
    }
    QSemaphore gate;
};

/** A file of this apparent size that takes no room. */
bool makeHollow(const QString &path, qint64 nSize)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.resize(nSize);
}

} // namespace

/** The actions on real files: names, faults of disks and files, cancelling, and what the library makes of it. */
class HostActionsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void exportsWhatItIs()
    {
        for (const QString &name :
             {QStringLiteral("photo.jpg"), QStringLiteral("a \"b\" 'c' `d`.jpg"), QStringLiteral("100%1 %2.png"),
              QStringLiteral("<b>bold<b> &amp;.png"), QStringLiteral("one\ntwo.jpg"), QStringLiteral("--rf -x.jpg"),
              QStringLiteral("a\\b.jpg"), QString(QString(83, QChar(0x5B57)) + QStringLiteral("ab.jpg"))}) {
            ActionStage stage;
            const QString source = stage.write(name, QByteArray(200000, 'x'));
            QVERIFY(!source.isEmpty());
            QFile(source).setPermissions(QFileDevice::ReadOwner | QFileDevice::ReadGroup);
            const struct timespec times[] = {{1000000000, 5}, {1100000000, 123456789}};
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(source).constData(), times, 0), 0);
            QVERIFY(stage.open());

            const ResponseInfoPtr pAnswer = stage.exportTo(stage.target(), {stage.id(name)}, false);
            QVERIFY(pAnswer != nullptr);
            QCOMPARE(pAnswer->errorList(), QStringList());
            QCOMPARE(ActionStage::namesIn(stage.target()), QStringList(name));
            struct stat state = {};
            QCOMPARE(::stat(QFile::encodeName(stage.target() + QLatin1Char('/') + name).constData(), &state), 0);
            QCOMPARE(state.st_mode & 0777, mode_t(0440));
            QCOMPARE(state.st_mtim.tv_sec, times[1].tv_sec);
            QCOMPARE(state.st_mtim.tv_nsec, times[1].tv_nsec);
            QCOMPARE(readFile(stage.target() + QLatin1Char('/') + name), QByteArray(200000, 'x'));
            QCOMPARE(ActionStage::namesIn(stage.library->unfinishedFolder()), QStringList());
        }
    }

    void reportsHonestlyAndSeldom()
    {
        constexpr int k_nMostInASecond = 20;
        ActionStage stage;
        for (int i = 0; i < 3000; ++i)
            stage.write(QStringLiteral("%1.jpg").arg(i));
        QVERIFY(stage.open());
        const auto pAction = stage.source->exportAction();
        QVector<qint64> times;
        QVector<double> percents;
        QElapsedTimer clock;
        clock.start();
        connect(pAction.data(), &IExportAction::signalExportProgress, this, [&](qint64, double fPercent, int, int) {
            times.append(clock.elapsed());
            percents.append(fPercent);
        });
        QSignalSpy results(pAction.data(), &IExportAction::signalExportResult);
        QVERIFY(pAction->requestExport(stage.target(), stage.allIds(), false) > 0);
        QTRY_COMPARE_WITH_TIMEOUT(results.count(), 1, 60000);
        QVERIFY(!times.isEmpty());
        for (int i = k_nMostInASecond; i < times.size(); ++i)
            QVERIFY(times.at(i) - times.at(i - k_nMostInASecond) >= 1000);
        QVERIFY(std::is_sorted(percents.cbegin(), percents.cend()));
        QVERIFY(percents.last() <= 100.0);
    }

    void countsUpTakenNames()
    {
        ActionStage stage;
        const QString longName = QString(83, QChar(0x5B57)) + QStringLiteral("ab.jpg");
        for (const QString &name :
             {QStringLiteral("a.jpg"), QStringLiteral("b (7).jpg"), QStringLiteral("none"), longName})
            stage.write(name);
        QVERIFY(stage.open());
        // Into the folder that they come from: their own names are taken.
        for (int i = 0; i < 2; ++i)
            QCOMPARE(stage.exportTo(stage.filesFolder(), stage.allIds(), false)->returnCode(), 0);
        const QStringList names = ActionStage::namesIn(stage.filesFolder());
        QCOMPARE(names.size(), 12);
        for (const char *pName : {"a (1).jpg", "a (2).jpg", "b (8).jpg", "b (9).jpg", "none (1)", "none (2)"})
            QVERIFY2(names.contains(QLatin1String(pName)), pName);
        const QString shortened = QString(82, QChar(0x5B57)) + QStringLiteral(" (1).jpg");
        QVERIFY2(names.contains(shortened), qPrintable(names.join(QLatin1Char('|'))));
    }

    void answersForFaultyTargets_data()
    {
        const auto row = columns<QString, bool, int>("fault", "pack", "code");
        for (const bool bPack : {false, true}) {
            for (const char *pFault : {"full", "protected", "gone", "unplugged"})
                row(QStringLiteral("%1 %2").arg(QLatin1String(pFault), QLatin1String(bPack ? "pack" : "folder")),
                    pFault, bPack, qstrcmp(pFault, "full") == 0 ? 32305 : 1);
        }
    }

    void answersForFaultyTargets()
    {
        const auto [fault, pack, code] = currentRow<QString, bool, int>();
        ActionStage stage;
        const bool bUnplugged = fault == QLatin1String("unplugged");
        const int nFiles = bUnplugged ? 400 : 5;
        for (int i = 0; i < nFiles; ++i)
            stage.write(QStringLiteral("%1.jpg").arg(i), QByteArray(500000, char('a' + i % 20)));
        QVERIFY(stage.open());
        SmallDisk disk(stage.path(QStringLiteral("disk")), bUnplugged ? "size=1g" : "size=1m");
        QVERIFY2(disk.isMounted(), "this test mounts small disks in a name space of its own");
        QVERIFY(fault != QLatin1String("protected") || disk.protect());
        QString place = stage.path(fault == QLatin1String("gone") ? QStringLiteral("nowhere") : QStringLiteral("disk"));
        if (pack)
            place += QStringLiteral("/x.MORAYPack");

        const auto pAction = stage.source->exportAction();
        QSignalSpy results(pAction.data(), &IExportAction::signalExportResult);
        QSignalSpy reports(pAction.data(), &IExportAction::signalExportProgress);
        QVERIFY(pAction->requestExport(place, stage.allIds(), pack) > 0);
        if (bUnplugged) {
            QVERIFY(reports.wait());
            disk.unplug();
        }
        QTRY_COMPARE_WITH_TIMEOUT(results.count(), 1, 20000);
        const auto pAnswer = results.first().at(1).value<ResponseInfoPtr>();
        QCOMPARE(pAnswer->returnCode(), code);
        QVERIFY(!pAnswer->errorList().isEmpty());
        // What stands there is whole; nothing of a pack that did not become one.
        const QString folder = stage.path(QStringLiteral("disk"));
        const QStringList left = ActionStage::namesIn(folder);
        for (const QString &name : left)
            QCOMPARE(readFile(folder + QLatin1Char('/') + name).size(), 500000);
        QVERIFY(!pack || left.isEmpty());
    }

    void tellsOfFaultySources()
    {
        ActionStage stage;
        for (const char *pName : {"good.jpg", "gone.jpg", "pipe.jpg", "folder.jpg"})
            stage.write(QLatin1String(pName));
        QVERIFY(stage.open());
        for (const char *pName : {"gone.jpg", "pipe.jpg", "folder.jpg"})
            QVERIFY(QFile::remove(stage.file(pName)));
        QCOMPARE(::mkfifo(QFile::encodeName(stage.file("pipe.jpg")).constData(), 0600), 0);
        QVERIFY(QDir(stage.filesFolder()).mkdir(QStringLiteral("folder.jpg")));

        for (const bool bPack : {false, true}) {
            const QString place = bPack ? stage.path(QStringLiteral("x.MORAYPack")) : stage.target();
            const ResponseInfoPtr pAnswer = stage.exportTo(place, stage.allIds(), bPack);
            QVERIFY(pAnswer != nullptr);
            QCOMPARE(pAnswer->returnCode(), 1);
            QCOMPARE(pAnswer->failedFiles().size(), 3);
            QCOMPARE(pAnswer->missingFiles(), QVector<qint64>{stage.id("gone.jpg")});
        }
        QCOMPARE(ActionStage::namesIn(stage.target()), QStringList(QStringLiteral("good.jpg")));
        QVERIFY(QFile::exists(stage.path(QStringLiteral("x.MORAYPack"))));
        // Nothing to do, nothing known, nowhere to: refused.
        const auto pAction = stage.source->exportAction();
        QCOMPARE(pAction->requestExport(stage.target(), {}, false), 0);
        QCOMPARE(pAction->requestExport(stage.target(), {4711, -1}, false), 0);
        QCOMPARE(pAction->requestExport(QString(), stage.allIds(), false), 0);
    }

    /** Copied anew when it changes meanwhile, and given up when it does so time and again. */
    void copiesChangingSources()
    {
        for (int nChanges : {1, 1000}) {
            const bool bEnds = nChanges == 1;
            ActionStage stage;
            const QString source = stage.write(QStringLiteral("a.jpg"), QByteArray(300000, 'x'));
            const UniqueFd target(::open(QFile::encodeName(stage.target()).constData(), O_RDONLY | O_DIRECTORY));
            qint64 nTold = 0;
            const IoStatus status =
                copyFile(QFile::encodeName(source), target.get(), "copy", false, [&](qint64 nBytes) {
                    nTold += nBytes;
                    QFile file(source);
                    if (nBytes > 0 && nChanges-- > 0 && file.open(QIODevice::Append))
                        file.write("more");
                    return true;
                });
            QCOMPARE(status.kind, bEnds ? IoStatus::Done : IoStatus::Failed);
            // Nothing of the first try is left in the copy, nor in the progress.
            if (bEnds)
                QCOMPARE(readFile(stage.target() + QStringLiteral("/copy")), readFile(source));
            if (bEnds)
                QCOMPARE(nTold, QFile(source).size());
        }
    }

    void keepsHoles()
    {
        ActionStage stage;
        const QString name = QStringLiteral("hollow.mp4");
        QVERIFY(makeHollow(stage.filesFolder() + QLatin1Char('/') + name, qint64(3) << 30));
        QFile file(stage.filesFolder() + QLatin1Char('/') + name);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(qint64(2) << 30) && file.write("island") == 6);
        file.close();
        QVERIFY(stage.open());
        QCOMPARE(stage.exportTo(stage.target(), stage.allIds(), false)->returnCode(), 0);
        QFile copy(stage.target() + QLatin1Char('/') + name);
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.size(), qint64(3) << 30);
        QVERIFY(copy.seek(qint64(2) << 30));
        QCOMPARE(copy.read(6), QByteArray("island"));
        struct stat state = {};
        QCOMPARE(::fstat(copy.handle(), &state), 0);
        QVERIFY(state.st_blocks < 10000);
    }

    void cancelsSoonAndLeavesNothing()
    {
        ActionStage stage;
        QVERIFY(makeHollow(stage.file("large.jpg"), qint64(20) << 30));
        QVERIFY(stage.open());
        // Packing reads through the holes: far longer than this test.
        const auto pAction = stage.source->exportAction();
        QSignalSpy results(pAction.data(), &IExportAction::signalExportResult);
        QSignalSpy reports(pAction.data(), &IExportAction::signalExportProgress);
        const qint64 nId =
            pAction->requestExport(stage.target() + QStringLiteral("/large.MORAYPack"), stage.allIds(), true);
        QVERIFY(reports.wait());
        QElapsedTimer timer;
        timer.start();
        pAction->requestCancel(nId + 1);
        pAction->requestCancel(nId);
        QTRY_COMPARE(results.count(), 1);
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
        qInfo("cancelled after %lld ms", timer.elapsed());
        QCOMPARE(results.first().at(1).value<ResponseInfoPtr>()->returnCode(), 2);
        QCOMPARE(ActionStage::namesIn(stage.target()), QStringList());
        QCOMPARE(ActionStage::namesIn(stage.library->unfinishedFolder()), QStringList());
    }

    void removes()
    {
        ActionStage stage;
        for (const char *pName : {"a.jpg", "protected.jpg", "gone.jpg", "folder.jpg", "stays.jpg"})
            stage.write(QLatin1String(pName));
        QVERIFY(stage.open());
        const QString base = stage.filesFolder() + QLatin1Char('/');
        QFile(base + QStringLiteral("protected.jpg")).setPermissions(QFileDevice::ReadOwner);
        QVERIFY(QFile::remove(base + QStringLiteral("gone.jpg")));
        QVERIFY(QFile::remove(base + QStringLiteral("folder.jpg")));
        QVERIFY(QDir(base).mkpath(QStringLiteral("folder.jpg/inside")));
        QSignalSpy removed(stage.library.get(), &Library::signalRemoved);

        const qint64 nGone = stage.id("gone.jpg");
        const ResponseInfoPtr pAnswer = stage.remove({stage.id("a.jpg"), stage.id("protected.jpg"), nGone});
        QVERIFY(pAnswer != nullptr);
        QCOMPARE(pAnswer->returnCode(), 0);
        QCOMPARE(pAnswer->missingFiles(), QVector<qint64>{nGone});
        QTRY_COMPARE(removed.count(), 2);
        const ResponseInfoPtr pRefused = stage.remove({stage.id("folder.jpg")});
        QCOMPARE(pRefused->returnCode(), 1);
        QCOMPARE(ActionStage::namesIn(stage.filesFolder()),
                 (QStringList{QStringLiteral("folder.jpg"), QStringLiteral("stays.jpg")}));
        QVERIFY(QDir(base + QStringLiteral("folder.jpg/inside")).exists());
    }

    /** On the home's file system, and on another one. */
    void recyclesWithWayBack()
    {
        for (const bool bOtherDisk : {false, true}) {
            QTemporaryDir place;
            const SmallDisk disk(place.filePath(QStringLiteral("disk")), "size=8m");
            QVERIFY(disk.isMounted());
            ActionStage stage(place.filePath(bOtherDisk ? QStringLiteral("disk/stage") : QStringLiteral("stage")));
            const QString name = QStringLiteral("a %1 \u5B57\n.jpg");
            const QString source = stage.write(name);
            QVERIFY(stage.open());
            const qint64 nId = stage.id(name);
            stage.library->addLabels({nId}, {TagRecordPtr(new TagRecord{0, QStringLiteral("kept")})});
            const ResponseInfoPtr pAnswer = stage.recycle({nId});
            QVERIFY(pAnswer != nullptr);
            QVERIFY2(pAnswer->returnCode() == 0, qPrintable(pAnswer->errorMessage()));
            QVERIFY(!QFile::exists(source));
            QVERIFY(stage.library->record(nId) == nullptr);

            // What a desktop does to restore it: it looks for the note beside the file that tells where it came from,
            // as a whole path in the home's bin and from the top of the disk in another one.
            const QString home = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
            const QString bin = bOtherDisk ? place.filePath(QStringLiteral("disk/.Trash-%1").arg(::getuid()))
                                           : QString(home + QStringLiteral("/Trash"));
            const QString from = bOtherDisk ? source.mid(place.filePath(QStringLiteral("disk/")).size()) : source;
            const QByteArray line = "Path=" + QUrl::toPercentEncoding(from, "/") + '\n';
            QString found;
            const QStringList notes = QDir(bin + QStringLiteral("/info")).entryList(QDir::Files | QDir::Hidden);
            for (const QString &note : notes) {
                const QByteArray text = readFile(bin + QStringLiteral("/info/") + note);
                if (text.startsWith("[Trash Info]\n") && text.contains(line) && text.contains("\nDeletionDate="))
                    found = bin + QStringLiteral("/files/") + note.chopped(10);
            }
            QVERIFY2(QFile::exists(found), qPrintable(bin));
            QVERIFY(QFile::rename(found, source));
            // The library knows it as before.
            QVERIFY(stage.open());
            QCOMPARE(stage.id(name), nId);
            QCOMPARE(stage.record(name)->tags().size(), 1);
        }
    }

    void failsWithoutRecycleBin()
    {
        QTemporaryDir place;
        const SmallDisk disk(place.filePath(QStringLiteral("disk")), "size=8m");
        QVERIFY(disk.isMounted());
        // A file where the bin should be: there can be none on this disk.
        QVERIFY(writeFile(place.filePath(QStringLiteral("disk/.Trash-%1").arg(::getuid()))));
        ActionStage stage(place.filePath(QStringLiteral("disk/stage")));
        const QString source = stage.write(QStringLiteral("a.jpg"));
        QVERIFY(stage.open());
        const ResponseInfoPtr pAnswer = stage.recycle(stage.allIds());
        QVERIFY(pAnswer != nullptr);
        QCOMPARE(pAnswer->returnCode(), 1);
        QCOMPARE(pAnswer->errorList().size(), 1);
        QVERIFY(QFile::exists(source));
        QVERIFY(stage.record(QStringLiteral("a.jpg")) != nullptr);
    }

    void refusesInProtectedFolders()
    {
        ActionStage stage;
        stage.write(QStringLiteral("a.jpg"));
        QDir(stage.filesFolder()).mkdir(QStringLiteral("below"));
        stage.write(QStringLiteral("below/b.jpg"));
        QVERIFY(stage.open());
        stage.source->setCurrentFile(stage.id("b.jpg"));
        QVERIFY(!stage.source->isDeletingBlocked());
        stage.library->protectFolder(stage.filesFolder(), true);
        QVERIFY(stage.source->isDeletingBlocked());
        // Kept over a restart, and no way round it.
        QVERIFY(stage.open());
        stage.source->setCurrentFile(stage.id("b.jpg"));
        QVERIFY(stage.source->isDeletingBlocked());
        for (const ResponseInfoPtr &pAnswer : {stage.remove(stage.allIds()), stage.recycle(stage.allIds())}) {
            QVERIFY(pAnswer != nullptr);
            QCOMPARE(pAnswer->returnCode(), 1);
            QCOMPARE(pAnswer->skippedFiles().size(), 2);
        }
        QVERIFY(QFile::exists(stage.file("below/b.jpg")));
        stage.library->protectFolder(stage.filesFolder(), false);
        QVERIFY(!stage.source->isDeletingBlocked());
    }

    /** Scaled where they are large; what is no picture, empty or not there is refused. */
    void keepsPreviewPictures()
    {
        for (const QSize &size : {QSize(40, 30), QSize(3000, 2000), QSize(1, 0), QSize(0, 0), QSize()}) {
            ActionStage stage;
            stage.write(QStringLiteral("a.mp3"));
            QVERIFY(stage.open());
            const QString picture = stage.path(QStringLiteral("cover.png"));
            const bool bAccepted = !size.isEmpty();
            if (bAccepted)
                QVERIFY(plainImage(size, Qt::red).save(picture));
            else if (size.isValid())
                QVERIFY(writeFile(picture, size.width() == 1 ? "I am no picture" : ""));
            QSignalSpy records(stage.library.get(), &Library::signalRecords);
            const ResponseInfoPtr pAnswer = stage.setCover(stage.id("a.mp3"), picture);
            QVERIFY(pAnswer != nullptr);
            QCOMPARE(pAnswer->returnCode() == 0, bAccepted);
            QCOMPARE(ActionStage::namesIn(stage.library->coverFolder()).size(), bAccepted ? 1 : 0);
            QTRY_COMPARE(records.count(), bAccepted ? 1 : 0);
            if (!bAccepted)
                continue;
            // Shown from now on and after a restart, whatever becomes of the picture that was chosen.
            QVERIFY(QFile::remove(picture));
            QVERIFY(stage.open());
            const QImage kept(stage.record(QStringLiteral("a.mp3"))->thumbnailPath());
            QVERIFY(!kept.isNull() && qMax(kept.width(), kept.height()) <= 1024);
            QVERIFY(qRed(kept.pixel(5, 5)) > 240 && qBlue(kept.pixel(5, 5)) < 15);
        }
    }

    void takesPreviewPictureAway()
    {
        ActionStage stage;
        stage.write(QStringLiteral("a.jpg"));
        QVERIFY(stage.open());
        const qint64 nId = stage.id("a.jpg");
        const QString picture = stage.path(QStringLiteral("cover.png"));
        QVERIFY(plainImage(QSize(20, 20), Qt::blue).save(picture));
        QCOMPARE(stage.setCover(nId, picture)->returnCode(), 0);
        const QString first = stage.library->record(nId)->coverPath();
        QCOMPARE(stage.setCover(nId, picture)->returnCode(), 0);
        QVERIFY(stage.library->record(nId)->coverPath() != first);
        QVERIFY(!QFile::exists(first));
        QCOMPARE(stage.setCover(nId, QString())->returnCode(), 0);
        QCOMPARE(stage.library->record(nId)->coverPath(), QString());
        QCOMPARE(ActionStage::namesIn(stage.library->coverFolder()), QStringList());
        QVERIFY(stage.setCover(4711, picture) == nullptr);
    }

    void keepsThePreviewPictureChosenLast()
    {
        ActionStage stage;
        stage.write(QStringLiteral("a.mp3"));
        QVERIFY(stage.open());
        const qint64 nId = stage.id("a.mp3");
        GatedAnalysis analysis;
        stage.source->setAnalysis(&analysis);
        const auto pFirst = stage.source->fileAction();
        QSignalSpy answers(pFirst.data(), &IFileAction::signalFileResult);
        QVERIFY(pFirst->setFileCover(nId, QStringLiteral("/slow red.png")) > 0);
        QCOMPARE(stage.setCover(nId, QStringLiteral("/blue.png"))->returnCode(), 0);
        analysis.gate.release();
        QTRY_COMPARE(answers.count(), 1);
        QVERIFY(QTest::qWaitFor([&] { return !stage.source->runner()->isRunning(); }));
        QVERIFY(stage.open());
        QVERIFY(qBlue(QImage(stage.record(QStringLiteral("a.mp3"))->coverPath()).pixel(5, 5)) > 240);
        QCOMPARE(ActionStage::namesIn(stage.library->coverFolder()).size(), 1);
    }

    void outlivesWhoAsked()
    {
        ActionStage stage;
        for (int i = 0; i < 200; ++i)
            stage.write(QStringLiteral("%1.jpg").arg(i), QByteArray(100000, 'x'));
        QVERIFY(stage.open());
        // The preview closes: its export goes on.
        QVERIFY(stage.source->exportAction()->requestExport(stage.target(), stage.allIds(), false) > 0);
        QTRY_VERIFY(!stage.source->runner()->isRunning());
        QCOMPARE(ActionStage::namesIn(stage.target()).size(), 200);
        // The program closes: it waits for nothing, and an action that is kept refuses.
        const auto pAction = stage.source->exportAction();
        QVERIFY(pAction->requestExport(stage.path(QStringLiteral("x.MORAYPack")), stage.allIds(), true) > 0);
        stage.source->shutdown();
        QCOMPARE(pAction->requestExport(stage.target(), stage.allIds(), false), 0);
        stage.library.reset();
        QCOMPARE(stage.source->removeAction()->requestRemove({1}), 0);
        stage.source.reset();
    }
};

int main(int argc, char **argv)
{
    // Small disks are mounted where nobody else sees them; before there is a second thread.
    const QByteArray user = "0 " + QByteArray::number(::getuid()) + " 1";
    if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
        QFile map(QStringLiteral("/proc/self/uid_map"));
        if (map.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            map.write(user);
    }
    ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    return runTest<HostActionsTest>(argc, argv);
}

#include "tst_host_actions.moc"
