// The full preview on a list of 100,000 files against one of 100: opening, stepping, scrolling, repainting; and what it
// does while nothing moves.
#include "FakeHost.h"
#include "Ratio.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPlugin.h"
#include "interfaces/surfaces/IPreviewDbClickWidget.h"

#include <QApplication>
#include <QListView>
#include <QPluginLoader>
#include <QScrollBar>
#include <QStackedWidget>
#include <QThreadPool>
#include <QtTest>

#include <ctime>
#include <memory>
#include <numeric>

namespace {

constexpr int ManyFiles = 100000;
constexpr int FewFiles = 100;
constexpr double FrameBudgetMsec = 4.0;
constexpr int IdleMsec = 5000;
constexpr int SettleMsec = 6000; // the memory kept for the next picture is given back once, before that
constexpr int ImagePage = 0;

/** A cache in which every thumbnail is warm. */
class WarmCache final : public ITSCacheManager {
public:
    QString cacheKey(const FileInfoPtr &pInfo, const QSize &size) const override
    {
        return QString::number(pInfo->fileId()) + QLatin1Char('@') + QString::number(size.width());
    }
    int lookup(const QString &cacheKey, QPixmap *pPixmap) override
    {
        const int nSide = cacheKey.section(QLatin1Char('@'), 1).toInt();
        QPixmap &pixmap = m_pixmaps[nSide];
        if (pixmap.isNull()) {
            pixmap = QPixmap(nSide, nSide);
            pixmap.fill(Qt::darkCyan);
        }
        *pPixmap = pixmap;
        return Found;
    }
    ThumbnailRequest createRequest(const FileInfoPtr &, const QSize &, double) const override { return {}; }
    void submitRequest(const ThumbnailRequest &) override {}
    QImage largePicture(const FileInfoPtr &) const override { return {}; }

private:
    QHash<int, QPixmap> m_pixmaps;
};

QVector<qint64> idsTo(int nFiles)
{
    QVector<qint64> ids(nFiles);
    std::iota(ids.begin(), ids.end(), qint64(1));
    return ids;
}

double threadMsec()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/** One open full preview in a window of its own. */
class OpenPreview {
public:
    OpenPreview(IBigImgPreviewPlugin *pPlugin, const QVector<qint64> &ids)
    {
        m_window.resize(1920, 1080);
        const int nIndex = ids.size() / 2;
        auto *pSurface = pPlugin->createPreviewDbClickWidget(&m_window, ids, nIndex, ids.at(nIndex), 0);
        pSurface->setGeometry(m_window.rect());
        m_pList = pSurface->findChild<QListView *>();
        m_pPages = pSurface->findChild<QStackedWidget *>();
        m_window.show();
        settle();
    }

    /** Until the file is shown and painted. */
    void settle() const
    {
        while (m_pPages->currentIndex() != ImagePage)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 1000);
        QCoreApplication::processEvents();
    }
    void step()
    {
        QTest::keyClick(m_pList, m_bForward ? Qt::Key_Down : Qt::Key_Up);
        m_bForward = !m_bForward;
        settle();
    }
    void scroll()
    {
        QScrollBar *pBar = m_pList->verticalScrollBar();
        pBar->setValue(pBar->value() + (m_bForward ? 3 : -3));
        m_bForward = !m_bForward;
        QCoreApplication::processEvents();
    }
    void repaint(int nTimes) const
    {
        for (int i = 0; i < nTimes; ++i)
            m_pList->viewport()->repaint();
    }

private:
    QWidget m_window;
    QListView *m_pList = nullptr;
    QStackedWidget *m_pPages = nullptr;
    bool m_bForward = true;
};

/** Timer events of the whole program. */
class TimerCounter : public QObject {
public:
    bool eventFilter(QObject *, QEvent *pEvent) override
    {
        m_nCount += pEvent->type() == QEvent::Timer ? 1 : 0;
        return false;
    }
    int m_nCount = 0;
};

void compareOpen(IBigImgPreviewPlugin *pPlugin)
{
    const QVector<qint64> many = idsTo(ManyFiles);
    const QVector<qint64> few = idsTo(FewFiles);
    Ratio("opening 100,000 files / 100 files", 1.5)
        .measure([&] { OpenPreview(pPlugin, many); }, [&] { OpenPreview(pPlugin, few); });
    OpenPreview large(pPlugin, many);
    OpenPreview small(pPlugin, few);
    Ratio("a step among 100,000 files / 100 files", 1.5).measure([&] { large.step(); }, [&] { small.step(); });
    Ratio("a scroll tick among 100,000 / 100 files", 1.5).measure([&] { large.scroll(); }, [&] { small.scroll(); });
    Ratio("a repaint among 100,000 / 100 files", 1.5).measure([&] { large.repaint(20); }, [&] { small.repaint(20); });
}

void timeFrames(IBigImgPreviewPlugin *pPlugin)
{
    const OpenPreview preview(pPlugin, idsTo(ManyFiles));
    std::vector<double> frames;
    for (int i = 0; i < 60; ++i) {
        const double fBegin = threadMsec();
        preview.repaint(1);
        frames.push_back(threadMsec() - fBegin);
    }
    std::sort(frames.begin(), frames.end());
    Ratio::report("a strip frame, warm thumbnails / 4 ms", frames.at(frames.size() * 9 / 10) / FrameBudgetMsec, 1.0);
}

/** A list of files, and none. */
void countIdleTimers(IBigImgPreviewPlugin *pPlugin)
{
    for (const bool bEmpty : {false, true}) {
        std::unique_ptr<OpenPreview> pFull;
        std::unique_ptr<IPreviewDbClickWidget> pEmpty;
        if (bEmpty) {
            pEmpty.reset(pPlugin->createPreviewDbClickWidget(nullptr, {}, 0, -1, 0));
            pEmpty->show();
        } else {
            pFull = std::make_unique<OpenPreview>(pPlugin, idsTo(FewFiles));
        }
        QTest::qWait(SettleMsec);
        TimerCounter counter;
        QCoreApplication::instance()->installEventFilter(&counter);
        QEventLoop loop;
        QTimer end;
        end.setSingleShot(true);
        QObject::connect(&end, &QTimer::timeout, &loop, &QEventLoop::quit);
        end.start(IdleMsec);
        const double fBegin = threadMsec();
        loop.exec();
        const double fUsed = threadMsec() - fBegin;
        // The one timer is the measurement's own.
        Ratio::report(bEmpty ? "idle without files: timer events in 5 s" : "idle: timer events in 5 s",
                      counter.m_nCount - 1, 0.0);
        Ratio::report(bEmpty ? "idle without files: CPU / 5 s" : "idle: CPU / 5 s", fUsed / IdleMsec, 0.01);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    FakeHost host;
    host.base.cache = QSharedPointer<WarmCache>::create();
    host.decoder.setPicture(QStringLiteral("/x.png"), {});
    for (qint64 nId = 1; nId <= ManyFiles; ++nId)
        host.addFile(nId, 10, QStringLiteral("/x.png"))->cachePicture = true;

    QPluginLoader loader(QStringLiteral(PLUGIN_DIR "/libbigimgpreview.so"));
    auto *pRoot = qobject_cast<IPlugin *>(loader.instance());
    auto *pPlugin = qobject_cast<IBigImgPreviewPlugin *>(loader.instance());
    if (pRoot == nullptr || pPlugin == nullptr)
        return 2;
    pRoot->setPluginManager(&host);
    pPlugin->setDataSource(host.source);
    compareOpen(pPlugin);
    timeFrames(pPlugin);
    countIdleTimers(pPlugin);
    QThreadPool::globalInstance()->waitForDone();
    pPlugin->clearPreviewData();
    return Ratio::allPassed() ? 0 : 1;
}
