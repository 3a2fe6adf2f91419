#include "PreviewStage.h"

#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPlugin.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"

#include <QGraphicsItem>
#include <QGraphicsView>
#include <QStackedWidget>
#include <QThread>
#include <QtTest>

#include <ctime>
#include <utility>

namespace {

constexpr qint64 JpegType = 20;
const QSize WindowSize(1920, 1080);

QString pluginFile(const char *pName)
{
    return QStringLiteral(PLUGIN_DIR "/lib%1.so").arg(QLatin1String(pName));
}

} // namespace

bool TimedApplication::notify(QObject *pReceiver, QEvent *pEvent)
{
    if (thread() != QThread::currentThread())
        return QApplication::notify(pReceiver, pEvent);
    QElapsedTimer timer;
    timer.start();
    ++m_nDepth;
    const bool bResult = QApplication::notify(pReceiver, pEvent);
    if (--m_nDepth == 0)
        m_fLongest = qMax(m_fLongest, double(timer.nsecsElapsed()) / 1e6);
    return bResult;
}

double TimedApplication::takeLongestBusy()
{
    return std::exchange(m_fLongest, 0.0);
}

PreviewStage::PreviewStage(const QStringList &paths, const QVector<NoteRecord> &notes)
    : m_previewLoader(pluginFile("bigimgpreview"))
    , m_baseLoader(pluginFile("hostbasemodule"))
{
    auto *pBase = qobject_cast<IPlugin *>(m_baseLoader.instance());
    m_pPlugin = qobject_cast<IBigImgPreviewPlugin *>(m_previewLoader.instance());
    auto *pRoot = qobject_cast<IPlugin *>(m_previewLoader.instance());
    if (pBase == nullptr || m_pPlugin == nullptr || pRoot == nullptr)
        return;
    pBase->setPluginManager(&m_host);
    pBase->initialize();
    m_pAnalysis = qobject_cast<IHostAnalysis *>(m_baseLoader.instance());
    m_host.registry.insert(QStringLiteral("IBaseModulePlugin"), {pBase});
    QVector<qint64> ids;
    for (const QString &path : paths) {
        ids.append(ids.size() + 1);
        m_host.addFile(ids.last(), JpegType, path)->noteList = notes;
    }
    m_window.resize(WindowSize);
    m_window.show();
    pRoot->setPluginManager(&m_host);
    m_pPlugin->setDataSource(m_host.source);
    m_pDialog = m_pPlugin->createPreviewSpaceDialog(&m_window, ids, 0, ids.first(), 0);
    view()->viewport()->installEventFilter(this);
}

PreviewStage::~PreviewStage()
{
    delete m_pDialog;
    if (m_pPlugin != nullptr)
        m_pPlugin->clearPreviewData();
    if (m_pAnalysis != nullptr)
        m_pAnalysis->shutdown();
}

QGraphicsView *PreviewStage::view() const
{
    for (auto *pView : m_pDialog->findChildren<QGraphicsView *>()) {
        if (pView->parentWidget()->inherits("ImgPreviewWidget"))
            return pView;
    }
    return nullptr;
}

QGraphicsItem *PreviewStage::picture() const
{
    const QList<QGraphicsItem *> items = view()->scene()->items();
    return items.isEmpty() ? nullptr : items.first();
}

double PreviewStage::threadMsec()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

bool PreviewStage::isShowing() const
{
    return view()->isVisible() && picture() != nullptr && picture()->isVisible();
}

bool PreviewStage::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pEvent->type() != QEvent::Paint || !isShowing())
        return false;
    // The filter sees the event before the view; passing it on first makes the paint part of the time.
    view()->viewport()->removeEventFilter(this);
    QCoreApplication::sendEvent(pWatched, pEvent);
    view()->viewport()->installEventFilter(this);
    m_bPainted = true;
    return true;
}

void PreviewStage::waitForPaint()
{
    QElapsedTimer patience;
    patience.start();
    while (!m_bPainted && patience.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 1000);
}

double PreviewStage::waitForPicture(const QElapsedTimer &timer)
{
    waitForPaint();
    return double(timer.nsecsElapsed()) / 1e6;
}

double PreviewStage::open()
{
    m_bPainted = false;
    QElapsedTimer timer;
    timer.start();
    m_pDialog->showPreview();
    return waitForPicture(timer);
}

double PreviewStage::step(Qt::Key key)
{
    QElapsedTimer timer;
    timer.start();
    QTest::keyClick(m_pDialog->window()->windowHandle(), key);
    m_bPainted = false;
    return waitForPicture(timer);
}
