// From a key press to the next 24-megapixel photograph on the screen, decoded ahead and not.
#include "PreviewStage.h"
#include "Ratio.h"
#include "ReferenceJpeg.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int Files = 8;
[[maybe_unused]] constexpr double AheadBudgetMsec = 40.0;
constexpr double BusyBudgetMsec = 50.0;
constexpr int LookMsec = 1500;

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double timeReference(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    decodeWithLibjpeg(path);
    return double(timer.nsecsElapsed()) / 1e6;
}

struct Result {
    double fRatio = 0.0;
    double fMsec = 0.0;
    double fBusy = 0.0;
};

/** Steps through all files and compares each step with a bare decode of the same file, in turn. */
Result measure(TimedApplication *pApplication, const QStringList &paths, bool bAhead)
{
    PreviewStage stage(paths);
    if (!stage.isReady())
        return {};
    stage.analysis()->setAheadBudget(bAhead ? 512LL * 1024 * 1024 : 0);
    stage.open();
    std::vector<double> ratios;
    std::vector<double> times;
    double fBusy = 0.0;
    for (int i = 1; i < paths.size(); ++i) {
        if (bAhead) {
            stage.analysis()->setFilesAhead({paths.at(i)});
            QTest::qWait(LookMsec);
        }
        const double fReference = timeReference(paths.at(i));
        pApplication->takeLongestBusy();
        const double fStep = stage.step(Qt::Key_Right);
        fBusy = qMax(fBusy, pApplication->takeLongestBusy());
        ratios.push_back(fStep / fReference);
        times.push_back(fStep);
    }
    return {median(ratios), median(times), fBusy};
}

} // namespace

int main(int argc, char *argv[])
{
    TimedApplication application(argc, argv);
    QTemporaryDir folder;
    QStringList paths;
    for (unsigned i = 0; i < Files; ++i) {
        paths.append(folder.filePath(QStringLiteral("photo%1.jpg").arg(i)));
        if (!writePhoto(paths.last(), 6000, 4000, i))
            return 2;
    }
    // One mode a process: what one keeps in memory would help or hinder the other.
#if defined(BENCH_AHEAD)
    const Result ahead = measure(&application, paths, true);
    Ratio::report("step decoded ahead / 40 ms", ahead.fMsec / AheadBudgetMsec, 1.0);
    Ratio::report("step decoded ahead / bare libjpeg decode", ahead.fRatio, 0.5);
    Ratio::report("longest GUI-thread stretch, ahead / 50 ms", ahead.fBusy / BusyBudgetMsec, 1.0);
#else
    const Result plain = measure(&application, paths, false);
    Ratio::report("step to a 24 MP JPEG / bare libjpeg decode", plain.fRatio, 1.4);
    Ratio::report("longest GUI-thread stretch of a step / 50 ms", plain.fBusy / BusyBudgetMsec, 1.0);
#endif
    return Ratio::allPassed() ? 0 : 1;
}
