// From the start of the host's process to the first picture on a real screen, with a library of 10,000 indexed files.
#include "Ratio.h"
#include "ReferenceJpeg.h"

#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>

namespace {

constexpr int Files = 10000;
constexpr double StartBudgetMsec = 300.0;
constexpr qint64 PatienceMsec = 120000;
constexpr int Rounds = 7;
// No theme has this colour.
const QColor PictureColor(255, 120, 0);

bool isIndexed(const QString &library)
{
    bool bIndexed = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        database.setDatabaseName(library);
        if (QFile::exists(library) && database.open()) {
            QSqlQuery query(database);
            bIndexed = query.exec(QStringLiteral("SELECT COUNT(*) FROM files")) && query.next() &&
                       query.value(0).toInt() >= Files;
        }
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    return bIndexed;
}

bool isPictureOnScreen()
{
    QScreen *pScreen = QGuiApplication::primaryScreen();
    const QPoint middle = pScreen->geometry().center();
    const QColor color = pScreen->grabWindow(0, middle.x(), middle.y(), 1, 1).toImage().pixelColor(0, 0);
    return qAbs(color.red() - PictureColor.red()) < 12 && qAbs(color.green() - PictureColor.green()) < 12 &&
           qAbs(color.blue() - PictureColor.blue()) < 12;
}

void stop(QProcess *pHost)
{
    pHost->terminate();
    if (!pHost->waitForFinished(5000)) {
        pHost->kill();
        pHost->waitForFinished();
    }
}

/** Starts the host with a file to preview; milliseconds until it can be seen, negative when it never is. */
double start(const QStringList &arguments)
{
    QProcess host;
    host.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer timer;
    timer.start();
    host.start(QStringLiteral(HOST_PROGRAM), arguments);
    bool bSeen = false;
    while (!bSeen && timer.elapsed() < PatienceMsec) {
        QThread::msleep(2);
        bSeen = isPictureOnScreen();
    }
    const double fMsec = double(timer.nsecsElapsed()) / 1e6;
    stop(&host);
    return bSeen ? fMsec : -1.0;
}

bool makeFiles(const QString &folder, const QString &photo)
{
    QImage picture(6000, 4000, QImage::Format_RGB32);
    picture.fill(PictureColor);
    // A little of everything, so that the decoder works as for a photograph around the coloured middle.
    QImage noise;
    if (!writePhoto(photo, 6000, 4000, 1) || !noise.load(photo))
        return false;
    noise = noise.convertToFormat(QImage::Format_RGB32);
    for (int y = 1000; y < 3000; ++y)
        std::copy_n(reinterpret_cast<const QRgb *>(picture.constScanLine(y)), 3000,
                    reinterpret_cast<QRgb *>(noise.scanLine(y)) + 1500);
    if (!noise.save(photo, "JPEG", 90))
        return false;
    QImage small(16, 16, QImage::Format_RGB32);
    small.fill(Qt::gray);
    const QString first = folder + QStringLiteral("/small00000.png");
    small.save(first);
    for (int i = 1; i < Files; ++i)
        QFile::copy(first, folder + QStringLiteral("/small%1.png").arg(i, 5, 10, QLatin1Char('0')));
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        std::puts("a screen is needed: xvfb-run bench_start");
        return 2;
    }
    QTemporaryDir folder;
    const QString photo = folder.filePath(QStringLiteral("photo.jpg"));
    if (!makeFiles(folder.path(), photo))
        return 2;
    QTemporaryDir state;
    const QString library = state.filePath(QStringLiteral("library.sqlite"));
    const QStringList arguments = {QStringLiteral("--library"), library, photo};
    for (const char *pVariable : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(pVariable, QFile::encodeName(state.path()));

    QProcess indexer;
    indexer.start(QStringLiteral(HOST_PROGRAM), {QStringLiteral("--library"), library, folder.path()});
    QElapsedTimer patience;
    patience.start();
    while (!isIndexed(library)) {
        if (patience.elapsed() > PatienceMsec)
            return 2;
        QThread::msleep(100);
    }
    stop(&indexer);

    std::vector<double> ratios;
    for (int i = 0; i < Rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        if (!decodeWithLibjpeg(photo))
            return 2;
        const double fDecode = double(timer.nsecsElapsed()) / 1e6;
        const double fStart = start(arguments);
        if (fStart < 0.0) {
            std::puts("the picture never came");
            return 1;
        }
        ratios.push_back((fStart - fDecode) / StartBudgetMsec);
    }
    std::sort(ratios.begin(), ratios.end());
    Ratio::report("start to first picture beyond its decode / 300 ms", ratios[ratios.size() / 2], 1.0);
    return Ratio::allPassed() ? 0 : 1;
}
