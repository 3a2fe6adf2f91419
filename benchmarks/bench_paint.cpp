// Zooming and dragging a 100-megapixel picture in a window of 1920 x 1080: time for a frame against a 60th of a second.
#include "PreviewStage.h"
#include "Ratio.h"
#include "ReferenceJpeg.h"

#include <QApplication>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr double FrameMsec = 1000.0 / 60.0;
constexpr int Frames = 30;

/** The slower frames count: nine in ten are at least as quick as the answer. */
double slowFrame(std::vector<double> frames)
{
    std::sort(frames.begin(), frames.end());
    return frames.at(frames.size() * 9 / 10);
}

double dragFrames(PreviewStage &stage)
{
    std::vector<double> frames;
    for (int i = 0; i < Frames; ++i)
        frames.push_back(stage.timePaint([&] { stage.picture()->moveBy(i % 2 == 0 ? 13.0 : -11.0, 7.0); }));
    return slowFrame(frames);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("large.jpg"));
    if (!writePhoto(path, 12000, 8400, 7))
        return 2;
    PreviewStage stage({path});
    if (!stage.isReady())
        return 2;
    stage.open();
    QTest::qWait(200);

    QGraphicsView *pView = stage.view();
    for (const double fTurn : {0.0, -90.0}) {
        stage.picture()->setRotation(fTurn);
        for (const double fScale : {0.05, 0.13, 0.25, 0.4, 0.5, 0.75, 1.0, 1.5, 3.0, 8.0}) {
            pView->setTransform(QTransform::fromScale(fScale, fScale));
            stage.picture()->setPos(0.0, 0.0);
            QTest::qWait(30);
            const QByteArray name = QStringLiteral("dragging 100 MP at %1 %%2 / a 60th of a second")
                                        .arg(fScale * 100)
                                        .arg(fTurn != 0.0 ? QStringLiteral(", turned") : QString())
                                        .toUtf8();
            Ratio::report(name.constData(), dragFrames(stage) / FrameMsec, 1.0);
        }
    }
    return Ratio::allPassed() ? 0 : 1;
}
