// The host's library: how fast files are taken in, thumbnails made, and a list of 100,000 arranged, and that nothing
// is done while nothing moves.
#include "Ratio.h"
#include "ReferenceJpeg.h"
#include "app/FileGridModel.h"
#include "app/FileGridView.h"
#include "app/ThumbnailSource.h"
#include "library/Library.h"
#include "services/basemodule/BaseModule.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include <ctime>

namespace {

constexpr int ManyFiles = 20000;
constexpr double FilesPerSecond = 5000.0;
constexpr int Photos = 24;
constexpr int LongList = 100000;
constexpr double FrameMsec = 16.0;

double clockMsec(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1000.0 + double(time.tv_nsec) / 1e6;
}

/** Takes a folder of many files into a new library; the second look is the measured one. */
double indexingSeconds(const QString &folder, const QString &libraryPath)
{
    Library library;
    library.open(libraryPath);
    QSignalSpy ended(&library, &Library::signalScanEnded);
    QElapsedTimer timer;
    timer.start();
    library.showFolders({folder});
    while (ended.isEmpty() && timer.elapsed() < 60000)
        ended.wait(100);
    return library.count() == ManyFiles ? double(timer.nsecsElapsed()) / 1e9 : 1e9;
}

void measureIndexing(const QTemporaryDir &folder)
{
    const QString many = folder.filePath(QStringLiteral("many"));
    for (int i = 0; i < ManyFiles; ++i) {
        if (i % 1000 == 0)
            QDir().mkpath(many + QStringLiteral("/%1").arg(i / 1000));
        QFile file(many + QStringLiteral("/%1/picture %2.jpg").arg(i / 1000).arg(i));
        file.open(QIODevice::WriteOnly);
        file.write("x");
    }
    indexingSeconds(many, folder.filePath(QStringLiteral("first.sqlite")));
    const double fSeconds = indexingSeconds(many, folder.filePath(QStringLiteral("second.sqlite")));
    Ratio::report("taking files in / 5,000 a second", fSeconds * FilesPerSecond / ManyFiles, 1.0);
}

void measureThumbnails(const QTemporaryDir &folder)
{
    QStringList paths;
    for (unsigned i = 0; i < Photos; ++i) {
        paths.append(folder.filePath(QStringLiteral("photo%1.jpg").arg(i)));
        if (!writePhoto(paths.last(), 4000, 3000, i))
            return;
    }
    QThreadPool pool;
    pool.setMaxThreadCount(qMax(1, QThread::idealThreadCount()));
    int nRound = 0;
    const auto ours = [&] {
        const QString caches = folder.filePath(QStringLiteral("cache%1/").arg(nRound++));
        basemodule::BaseModule module({caches + QStringLiteral("renditions"), caches + QStringLiteral("thumbnails")},
                                      nullptr);
        const std::atomic_bool cancelled{false};
        for (const QString &path : qAsConst(paths))
            pool.start([&module, &cancelled, path] { module.analyse(path, cancelled); });
        pool.waitForDone();
        module.shutdown();
    };
    // The tool does one file after the other: as many of them at once as we have threads.
    const auto theirs = [&] {
        const int nThreads = pool.maxThreadCount();
        std::vector<std::unique_ptr<QProcess>> tools;
        for (int i = 0; i < nThreads; ++i) {
            QStringList arguments{QStringLiteral("-s"), QStringLiteral("512"), QStringLiteral("-o"),
                                  folder.filePath(QStringLiteral("tn_%s.png"))};
            for (int n = i; n < paths.size(); n += nThreads)
                arguments.append(paths.at(n));
            tools.push_back(std::make_unique<QProcess>());
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("VIPS_CONCURRENCY"), QStringLiteral("1"));
            tools.back()->setProcessEnvironment(environment);
            tools.back()->start(QStringLiteral("vipsthumbnail"), arguments);
        }
        for (const auto &tool : tools)
            tool->waitForFinished(-1);
    };
    Ratio ratio("thumbnails / vipsthumbnail, as many at once", 1.25, 5);
    ratio.measure(ours, theirs);
}

FileRecordPtr record(int i)
{
    FileRow row;
    row.id = i + 1;
    row.folder = QStringLiteral("/pictures/%1").arg(i / 1000);
    row.name = QStringLiteral("picture %1.jpg").arg((i * 7919) % LongList);
    row.nType = 20;
    row.nModifiedMsec = (i * 31) % LongList;
    static const QCollator collator = fileNameCollator();
    return FileRecordPtr(new FileRecord(row, {}, collator.sortKey(row.name), {}));
}

/** Longest stretch, in its own time, in which the GUI thread did one thing, until the list is arranged. */
double longestStretch(FileGridModel *pModel, const std::function<void()> &ask)
{
    double fLongest = 0.0;
    // The thread's own time: a busy machine does not count.
    double fBegin = clockMsec(CLOCK_THREAD_CPUTIME_ID);
    const auto end = [&] {
        const double fNow = clockMsec(CLOCK_THREAD_CPUTIME_ID);
        fLongest = qMax(fLongest, fNow - fBegin);
        fBegin = fNow;
    };
    ask();
    end();
    do {
        QThread::usleep(200);
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        end();
    } while (!pModel->isArranged());
    return fLongest;
}

void measureLongList()
{
    FileRecordList records;
    for (int i = 0; i < LongList; ++i)
        records.append(record(i));
    FileGridModel model;
    ThumbnailSource thumbnails;
    FileGridView view(&model, &thumbnails, nullptr);
    view.resize(1200, 800);
    view.show();
    model.addRecords(records);
    if (!QTest::qWaitFor([&model] { return model.isArranged(); }, 60000))
        return;
    QTest::qWait(50);
    const auto filterBy = [&model](const char *pText) {
        FileFilter filter = model.filter();
        filter.text = QLatin1String(pText);
        model.setFilter(filter);
    };
    // The view lays a list of this length out in one go, which is most of the time.
    Ratio::report("100,000 files, filtered: longest stretch / 16 ms",
                  longestStretch(&model, [&] { filterBy("12"); }) / FrameMsec, 1.0);
    Ratio::report("100,000 files, all again: longest stretch / 2 frames",
                  longestStretch(&model, [&] { filterBy(""); }) / (2 * FrameMsec), 1.0);
    Ratio::report("100,000 files, sorted: longest stretch / 2 frames",
                  longestStretch(&model, [&] { model.setOrder(FileOrder::NewestFirst); }) / (2 * FrameMsec), 1.0);
    Ratio::report("100,000 files, one changed: longest stretch / 16 ms",
                  longestStretch(&model, [&] { model.addRecords({record(500)}); }) / FrameMsec, 1.0);
    Ratio::report("100,000 files, all selected: longest stretch / 16 ms",
                  longestStretch(&model, [&] { view.selectAll(); }) / FrameMsec, 1.0);
}

void measureIdle(const QTemporaryDir &folder)
{
    Library library;
    library.open(folder.filePath(QStringLiteral("second.sqlite")));
    QSignalSpy ended(&library, &Library::signalScanEnded);
    library.showFolders({folder.filePath(QStringLiteral("many"))});
    ended.wait(60000);
    QTest::qWait(1500);
    const double fBefore = clockMsec(CLOCK_PROCESS_CPUTIME_ID);
    constexpr int k_nIdleMsec = 5000;
    QEventLoop loop;
    QTimer::singleShot(k_nIdleMsec, &loop, &QEventLoop::quit);
    loop.exec();
    // 5 ms in 5 s: what the clock and this loop themselves take.
    Ratio::report("20,000 watched files, idle: processor time / 5 ms in 5 s",
                  (clockMsec(CLOCK_PROCESS_CPUTIME_ID) - fBefore) / 5.0, 1.0);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QTemporaryDir folder;
    measureIndexing(folder);
    measureLongList();
    measureIdle(folder);
    measureThumbnails(folder);
    return Ratio::allPassed() ? 0 : 1;
}
