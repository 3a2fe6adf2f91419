// 500 notes on one picture in a window of 1920 x 1080: time for a frame against a 60th of a second, for drawing a note,
// zooming and moving the picture under them. Every change is to be painted once.
#include "PreviewStage.h"
#include "Ratio.h"
#include "ReferenceJpeg.h"
#include "interfaces/data/NoteRecord.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QtTest>

namespace {

constexpr double FrameMsec = 1000.0 / 60.0;
constexpr int Frames = 40;
constexpr int NoteCount = 500;
constexpr int PhotoWidth = 6000;
constexpr int PhotoHeight = 4000;

QVector<NoteRecord> manyNotes()
{
    QVector<NoteRecord> notes;
    for (int i = 0; i < NoteCount; ++i) {
        const QRect rect((i % 25) * PhotoWidth / 25, (i / 25) * PhotoHeight / 20, 200 + 7 * (i % 13), 150);
        notes.append({rect, i % 2 == 0 ? 0x0064FAU : 0xFF0000U, QStringLiteral("note %1").arg(i)});
    }
    return notes;
}

double slowFrame(std::vector<double> frames)
{
    std::sort(frames.begin(), frames.end());
    return frames.at(frames.size() * 9 / 10);
}

QWidget *overlay(const PreviewStage &stage)
{
    for (QWidget *pWidget : stage.view()->parentWidget()->findChildren<QWidget *>()) {
        if (pWidget->inherits("CNoteWidget"))
            return pWidget;
    }
    return nullptr;
}

void sendMouse(QWidget *pTarget, QEvent::Type type, const QPoint &pos, Qt::MouseButton button)
{
    const bool bMove = type == QEvent::MouseMove;
    QMouseEvent event(type, pos, pTarget->mapToGlobal(pos), bMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
    QCoreApplication::sendEvent(pTarget, &event);
}

/** Counts how often the overlay is painted. */
class PaintCounter : public QObject {
public:
    int nPaints = 0;

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override
    {
        nPaints += pEvent->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(pWatched, pEvent);
    }
};

class NoteBench {
public:
    explicit NoteBench(PreviewStage &stage)
        : m_stage(stage)
        , m_pOverlay(overlay(stage))
    {
        m_pOverlay->installEventFilter(&m_counter);
    }

    template <class Change>
    void measure(const char *pName, Change change)
    {
        std::vector<double> frames;
        m_counter.nPaints = 0;
        for (int i = 0; i < Frames; ++i)
            frames.push_back(m_stage.timePaint([&] { change(i); }));
        const QByteArray name = QByteArray(pName) + " / a 60th of a second";
        Ratio::report(name.constData(), slowFrame(frames) / FrameMsec, 1.0);
        Ratio::report("  repaints of the notes for each change", double(m_counter.nPaints) / Frames, 1.0);
        QTest::qWait(200);
    }

    void zoom(int nFrame)
    {
        const QPoint pos = m_pOverlay->rect().center();
        QWheelEvent event(pos, m_pOverlay->mapToGlobal(pos), QPoint(), QPoint(0, nFrame % 2 == 0 ? 120 : -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_pOverlay, &event);
    }

    void drag(Qt::MouseButton button)
    {
        const QPoint from = m_pOverlay->rect().center() + QPoint(31, 33);
        const char *pName =
            button == Qt::MiddleButton ? "moving the picture under 500 notes" : "drawing over 500 notes";
        sendMouse(m_pOverlay, QEvent::MouseButtonPress, from, button);
        measure(pName, [&](int i) {
            sendMouse(m_pOverlay, QEvent::MouseMove, from + QPoint(17 + 5 * i, 12 + 3 * i), button);
        });
        sendMouse(m_pOverlay, QEvent::MouseButtonRelease, from, button);
    }

private:
    PreviewStage &m_stage;
    QWidget *m_pOverlay;
    PaintCounter m_counter;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("noted.jpg"));
    if (!writePhoto(path, PhotoWidth, PhotoHeight, 7))
        return 2;
    PreviewStage stage({path}, manyNotes());
    if (!stage.isReady())
        return 2;
    stage.open();
    QTest::qWait(200);
    for (auto *pButton : stage.dialog()->findChildren<QAbstractButton *>()) {
        if (pButton->accessibleName() == QLatin1String("Comment"))
            pButton->click();
    }
    QTest::qWait(300);
    if (overlay(stage) == nullptr || !overlay(stage)->isVisible())
        return 2;
    NoteBench bench(stage);
    bench.measure("zooming 500 notes", [&](int i) { bench.zoom(i); });
    bench.drag(Qt::MiddleButton);
    bench.drag(Qt::LeftButton);
    return Ratio::allPassed() ? 0 : 1;
}
