// Peak memory while one large picture is loaded and shown, in bitmaps of that picture.
#include "PreviewStage.h"
#include "Ratio.h"
#include "ReferenceJpeg.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

double statusBytes(const char *pKey)
{
    QFile file(QStringLiteral("/proc/self/status"));
    file.open(QIODevice::ReadOnly);
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(pKey))
            return line.mid(int(qstrlen(pKey))).simplified().split(' ').first().toDouble() * 1024.0;
    }
    return 0.0;
}

void resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QTemporaryDir folder;
    const QString small = folder.filePath(QStringLiteral("small.jpg"));
    const QString large = folder.filePath(QStringLiteral("large.jpg"));
    if (!writePhoto(small, 800, 600, 1) || !writePhoto(large, 12000, 8400, 2))
        return 2;
    PreviewStage stage({small, large});
    if (!stage.isReady())
        return 2;
    stage.analysis()->setAheadBudget(0);
    stage.open();
    QTest::qWait(300);
    const double fIdle = statusBytes("VmRSS:");
    resetPeak();
    stage.step(Qt::Key_Right);
    QTest::qWait(300);
    const double fBitmap = 12000.0 * 8400.0 * 4.0;
    Ratio::report("peak while a 100 MP JPEG is loaded / 2 bitmaps", (statusBytes("VmHWM:") - fIdle) / (2.0 * fBitmap),
                  1.0);
    Ratio::report("kept while it is shown / 2 bitmaps", (statusBytes("VmRSS:") - fIdle) / (2.0 * fBitmap), 1.0);
    return Ratio::allPassed() ? 0 : 1;
}
