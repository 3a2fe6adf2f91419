#include "Ratio.h"
#include "actions/FolderExport.h"
#include "actions/PackWriter.h"
#include "library/FolderScanner.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <functional>
#include <sys/resource.h>

namespace {

constexpr int k_nRounds = 5;
constexpr double k_fPackMemoryMegabytes = 50.0;
constexpr int k_nFrameMsec = 16;
// Two frames: a later one is seen as a jerk.
constexpr double k_fLateFrameMsec = 33.3;

/** Files to export, and a place for their copies: one round's are gone before the next. */
class Stage {
public:
    Stage(const QString &folder, int nFiles, qint64 nBytesEach)
        : m_folder(folder + QStringLiteral("/bench-XXXXXX"))
        , m_leftovers(path("unfinished"))
    {
        QDir().mkpath(path("files"));
        QByteArray noise(1 << 20, '\0');
        quint32 nSeed = 1;
        for (char &byte : noise)
            byte = char((nSeed = nSeed * 1664525U + 1013904223U) >> 24);
        for (int i = 0; i < nFiles; ++i) {
            const QString name = QStringLiteral("%1.jpg").arg(i);
            QFile file(path("files/") + name);
            bool bGood = file.open(QIODevice::WriteOnly);
            for (qint64 nLeft = nBytesEach; bGood && nLeft > 0; nLeft -= noise.size())
                bGood = file.write(noise.constData(), qMin<qint64>(nLeft, noise.size())) > 0;
            file.close();
            if (!bGood)
                qFatal("the files cannot be written: is there enough space?");
            const FileRow row = readFileRow(path("files"), name);
            m_records.append(FileRecordPtr(new FileRecord(row, {}, QCollator().sortKey(name), {})));
        }
    }

    QString path(const char *pName) const { return m_folder.filePath(QLatin1String(pName)); }

    void exportOurs() { run(FolderExport(path("target"), m_records, m_leftovers)); }
    void packOurs()
    {
        PackWriter writer(path("target/x.MORAYPack"), m_records, m_leftovers);
        run(writer);
    }
    void exportTheirs() { shell(QStringLiteral("cp -a files target/ && sync -f target")); }
    void packTheirs()
    {
        shell(QStringLiteral("bsdtar --format zip --options zip:compression=store -cf target/x.zip files"
                             " && sync target/x.zip"));
    }

    /** Prints the median of the rounds' ratios. */
    void compare(const char *pName, double fTarget, const std::function<void()> &ours,
                 const std::function<void()> &theirs)
    {
        std::vector<double> ratios;
        for (int nRound = 0; nRound <= k_nRounds; ++nRound) {
            const bool bOursFirst = nRound % 2 == 0;
            const double fFirst = seconds(bOursFirst ? ours : theirs);
            const double fSecond = seconds(bOursFirst ? theirs : ours);
            if (nRound > 0) // the first fills the caches
                ratios.push_back(bOursFirst ? fFirst / fSecond : fSecond / fFirst);
        }
        std::sort(ratios.begin(), ratios.end());
        Ratio::report(pName, ratios[ratios.size() / 2], fTarget);
    }

    /** How late the frames of the GUI thread come while files are exported; the 99th of 100, in milliseconds. */
    double frameGapMsec()
    {
        QDir(path("target")).removeRecursively();
        QDir().mkpath(path("target"));
        std::vector<double> gaps;
        QTimer frames;
        frames.setTimerType(Qt::PreciseTimer);
        QElapsedTimer sinceFrame;
        sinceFrame.start();
        QObject::connect(&frames, &QTimer::timeout, &frames, [&] {
            gaps.push_back(double(sinceFrame.nsecsElapsed()) / 1e6);
            sinceFrame.start();
        });
        frames.start(k_nFrameMsec);
        QThreadPool::globalInstance()->start([this] {
            exportOurs();
            QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        });
        QCoreApplication::exec();
        QThreadPool::globalInstance()->waitForDone();
        std::sort(gaps.begin(), gaps.end());
        return gaps.empty() ? 1e9 : gaps[gaps.size() * 99 / 100];
    }

private:
    template <class Export>
    void run(Export &&work)
    {
        const auto pTask = std::make_shared<ActionTask>(&m_receiver, ActionTask::ProgressHandler());
        const ActionOutcome outcome = work.run(*pTask);
        if (outcome.nCode != ActionOutcome::Done)
            qFatal("%s", qPrintable(outcome.errors.value(0)));
    }

    void shell(const QString &command) const
    {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
        if (!process.waitForFinished(-1) || process.exitCode() != 0)
            qFatal("failed: %s", qPrintable(command));
    }

    double seconds(const std::function<void()> &work) const
    {
        QDir(path("target")).removeRecursively();
        QDir().mkpath(path("target"));
        const auto begin = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }

    const QTemporaryDir m_folder;
    const Leftovers m_leftovers;
    FileRecordList m_records;
    QObject m_receiver;
};

double peakMegabytes()
{
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

} // namespace

/** Export to a folder and into a pack, against cp and bsdtar that put their copies on the disk as well. */
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption full(QStringLiteral("full"), QStringLiteral("10,000 files and one of 5 GB."));
    const QCommandLineOption place(QStringLiteral("folder"), QStringLiteral("Work in this folder."),
                                   QStringLiteral("folder"));
    parser.addOptions({full, place});
    parser.addHelpOption();
    parser.process(application);
    // In memory where there is room: what is compared is the work, not the disk.
    const bool bMemory = QFileInfo(QStringLiteral("/dev/shm")).isWritable();
    QString folder = bMemory ? QStringLiteral("/dev/shm") : QDir::tempPath();
    if (parser.isSet(place))
        folder = parser.value(place);
    {
        Stage large(folder, 1, qint64(parser.isSet(full) ? 5120 : 512) << 20);
        const double fBefore = peakMegabytes();
        large.compare(
            "pack one large file, against bsdtar and sync", 1.1, [&] { large.packOurs(); },
            [&] { large.packTheirs(); });
        Ratio::report("memory to pack it, of 50 MB", (peakMegabytes() - fBefore) / k_fPackMemoryMegabytes, 1.0);
        large.compare(
            "export one large file, against cp -a and sync", 1.3, [&] { large.exportOurs(); },
            [&] { large.exportTheirs(); });
    }
    Stage small(folder, parser.isSet(full) ? 10000 : 3000, 20000);
    small.compare(
        "export many small files, against cp -a and sync", 1.3, [&] { small.exportOurs(); },
        [&] { small.exportTheirs(); });
    small.compare(
        "pack many small files, against bsdtar and sync", 1.1, [&] { small.packOurs(); }, [&] { small.packTheirs(); });
    Ratio::report("the GUI thread's frames meanwhile, 99th of 100, of 33 ms", small.frameGapMsec() / k_fLateFrameMsec,
                  1.0);
    return Ratio::allPassed() ? 0 : 1;
}
