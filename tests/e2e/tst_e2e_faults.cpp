#include "GatedServices.h"
#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "Watches.h"
#include "app/HostSession.h"
#include "app/MainWindow.h"
#include "app/PluginManager.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "library/LibraryDataSource.h"

#include <QDir>
#include <QFile>
#include <QGraphicsView>
#include <QStackedWidget>
#include <QWindow>

#include <sys/stat.h>

using namespace OpenPreview;

namespace {

const QColor k_red(220, 30, 30); // the left top quarter of wide_gamut.jpg

QString sample(const QString &name)
{
    return QStringLiteral(SAMPLES_DIR "/pictures/") + name;
}

QImage shown()
{
    return view()->viewport()->grab().toImage();
}

/** Whether what is shown changes by itself. */
bool isPlaying()
{
    const QImage before = shown();
    return QTest::qWaitFor([&before] { return shown() != before; }, 3000);
}

} // namespace

/** What goes wrong around a preview that is used all the same: hostile files, slow files, hurried users. */
class FaultsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void getsThroughNastyFiles();
    void meetsAFileThatChangedAfterListing_data();
    void meetsAFileThatChangedAfterListing();
    void holdsNoFileOpen_data();
    void holdsNoFileOpen();
    void waitsForASlowFile();
    void staysResponsive();
    void opensAndLeavesWhileLoading();
    void takesAStormOfKeys();
    void endsWithAnOpenPreview();

protected Q_SLOTS:
    void init() override;
    void cleanup() override;

private:
    /** A fresh folder with these samples, shown in the grid. */
    bool showCopies(const QStringList &names);
    QString path(const QString &name) const { return m_pFolder->filePath(name); }

    PluginManager m_manager;
    std::unique_ptr<GatedServices> m_pServices;
    std::unique_ptr<HostUser> m_pHost;
    std::unique_ptr<QTemporaryDir> m_pFolder;
};

void FaultsTest::initTestCase()
{
    m_pHost = std::make_unique<HostUser>(QStringLiteral(SAMPLES_DIR "/nasty"));
    // The host's own modules, with a gate before the decoder.
    m_manager.loadFolder(QStringLiteral(PLUGINS_DIR));
    m_pServices = std::make_unique<GatedServices>(&m_manager);
    QObject *pRoot = m_manager.objectByIid(QStringLiteral("Tessaro.Plugin.IBigImgPreviewPlugin/1.0"));
    QVERIFY(pRoot != nullptr);
    QVERIFY(qobject_cast<IPlugin *>(pRoot)->setPluginManager(m_pServices.get()));
    qobject_cast<IBigImgPreviewPlugin *>(pRoot)->setDataSource(
        QSharedPointer<LibraryDataSource>::create(m_pHost->session().library()));
}

void FaultsTest::init()
{
    LoggedTest::init();
    // Readers of damaged files have much to say.
    for (const char *pBeginning : {"libpng", "qt.gui", "QImage", "Corrupt JPEG", "foreign", "QMovie", "QWindow"})
        log().expect(QLatin1String(pBeginning));
}

void FaultsTest::cleanup()
{
    m_pServices->gate().open();
    LoggedTest::cleanup();
}

bool FaultsTest::showCopies(const QStringList &names)
{
    m_pFolder = std::make_unique<QTemporaryDir>();
    for (const QString &name : names) {
        if (!QFile::copy(sample(name), path(name)))
            return false;
    }
    return m_pHost->showFolder(m_pFolder->path()) && m_pHost->fileCount() == names.size();
}

void FaultsTest::getsThroughNastyFiles()
{
    QVERIFY(m_pHost->showFolder(QStringLiteral(SAMPLES_DIR "/nasty")));
    const int nFiles = m_pHost->fileCount();
    QVERIFY2(nFiles > 80, qPrintable(QString::number(nFiles)));
    QVERIFY(m_pHost->open(m_pHost->nameAt(0)));
    QElapsedTimer time;
    QPair<qint64, QString> slowest;
    for (int i = 1; i < nFiles; ++i) {
        time.start();
        key(Qt::Key_Right);
        QVERIFY2(waitForPicture(), qPrintable(m_pHost->currentName()));
        QCOMPARE(m_pHost->row(), i);
        slowest = qMax(slowest, qMakePair(time.elapsed(), m_pHost->currentName()));
        if (i % 10 != 0)
            continue;
        QVERIFY2(m_pHost->returnToGrid(), qPrintable(m_pHost->currentName()));
        key(Qt::Key_Space);
        QVERIFY2(waitForPicture(), qPrintable(m_pHost->currentName()));
    }
    qInfo("%d files, the slowest: %s, %lld ms", nFiles, qPrintable(slowest.second), slowest.first);
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::meetsAFileThatChangedAfterListing_data()
{
    QTest::addColumn<QString>("change");
    for (const char *pChange : {"replaced", "removed", "emptied", "unreadable", "folder", "pipe", "dangling link"})
        QTest::newRow(pChange) << QString::fromLatin1(pChange);
}

void FaultsTest::meetsAFileThatChangedAfterListing()
{
    QFETCH(QString, change);
    const QString name = QStringLiteral("landscape.jpg");
    QVERIFY(showCopies({QStringLiteral("anim.gif"), name}));
    QVERIFY(m_pHost->select(name));
    const FileRecordPtr pRecord = m_pHost->session().model().recordAt(m_pHost->row());
    const QByteArray nativePath = QFile::encodeName(path(name));
    if (change == QLatin1String("unreadable"))
        QVERIFY(QFile::setPermissions(path(name), QFile::Permissions()));
    else
        QVERIFY(QFile::remove(path(name)));
    if (change == QLatin1String("replaced"))
        QVERIFY(QFile::copy(sample(QStringLiteral("wide_gamut.jpg")), path(name)));
    else if (change == QLatin1String("emptied"))
        QVERIFY(QFile(path(name)).open(QIODevice::WriteOnly));
    else if (change == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(path(name)));
    else if (change == QLatin1String("pipe"))
        QCOMPARE(::mkfifo(nativePath.constData(), 0600), 0);
    else if (change == QLatin1String("dangling link"))
        QVERIFY(QFile::link(path(QStringLiteral("nothing")), path(name)));
    key(Qt::Key_Space);
    // The preview of a file that is gone closes as soon as the folder's watch tells of it.
    QVERIFY(QTest::qWaitFor([] { return dialog() == nullptr || isPictureShown(); }, PatienceMsec));
    if (change == QLatin1String("replaced"))
        QTRY_VERIFY(isAbout(colorAt(0.25, 0.25), k_red));
    else if (!QFileInfo(path(name)).isFile())
        QTRY_VERIFY_WITH_TIMEOUT(m_pHost->session().library()->record(pRecord->fileId())->isUnavailable(),
                                 PatienceMsec);
    // The other file is none the worse for it.
    QVERIFY(m_pHost->returnToGrid());
    QVERIFY(m_pHost->open(QStringLiteral("anim.gif")));
    QVERIFY(!isPlaceholder());
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::holdsNoFileOpen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("bPlays");
    QTest::newRow("still") << QStringLiteral("landscape.jpg") << false;
    QTest::newRow("large") << QStringLiteral("large_24mp.jpg") << false;
    QTest::newRow("page") << QStringLiteral("page.pdf") << false;
    QTest::newRow("gif") << QStringLiteral("anim.gif") << true;
    QTest::newRow("webp") << QStringLiteral("anim.webp") << true;
}

void FaultsTest::holdsNoFileOpen()
{
    QFETCH(QString, name);
    QFETCH(bool, bPlays);
    QVERIFY(showCopies({name}));
    QVERIFY(m_pHost->open(name));
    QVERIFY(!isPlaceholder());
    if (bPlays)
        QVERIFY(isPlaying());
    // The grid may still be making the thumbnail.
    QTRY_COMPARE(openFilesIn(m_pFolder->path()), QStringList());
    if (bPlays) {
        for (int i = 0; i < 20; ++i) // further than the animation is long
            QVERIFY(isPlaying());
    }
    QCOMPARE(openFilesIn(m_pFolder->path()), QStringList());
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::waitsForASlowFile()
{
    QVERIFY(showCopies({QStringLiteral("wide_gamut.jpg"), QStringLiteral("landscape.jpg")}));
    QVERIFY(m_pHost->select(QStringLiteral("wide_gamut.jpg")));
    m_pServices->gate().close();
    key(Qt::Key_Space);
    QTRY_COMPARE(m_pServices->gate().waiting(), 1);
    QVERIFY(dialog() != nullptr);
    QVERIFY(makeActive(dialog()));
    const Heartbeat heartbeat;
    for (const Qt::Key nKey : {Qt::Key_Escape, Qt::Key_Space, Qt::Key_Left, Qt::Key_Plus}) {
        key(nKey);
        QVERIFY(dialog() != nullptr && !isPictureShown());
        QCOMPARE(m_pHost->currentName(), QStringLiteral("wide_gamut.jpg"));
    }
    QTRY_VERIFY(notice() != nullptr);
    watchIdle(300); // the ring turns
    QVERIFY2(heartbeat.worstDelayMsec() < 250, qPrintable(QString::number(heartbeat.worstDelayMsec())));
    m_pServices->gate().open();
    QVERIFY(waitForPicture());
    QTRY_VERIFY(isAbout(colorAt(0.25, 0.25), k_red));
    key(Qt::Key_Escape);
    QVERIFY(waitUntilClosed());
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::staysResponsive()
{
    QVERIFY(showCopies({QStringLiteral("landscape.jpg"), QStringLiteral("large_24mp.jpg"), QStringLiteral("anim.gif"),
                        QStringLiteral("tiled.tif")}));
    QVERIFY(m_pHost->open(m_pHost->nameAt(0)));
    const Heartbeat heartbeat;
    for (int i = 0; i < 12; ++i) {
        key(i / 3 % 2 == 0 ? Qt::Key_Right : Qt::Key_Left);
        QVERIFY(waitForPicture());
    }
    qInfo("the latest beat came %lld ms late", heartbeat.worstDelayMsec());
    QVERIFY2(heartbeat.worstDelayMsec() < 250, qPrintable(QString::number(heartbeat.worstDelayMsec())));
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::opensAndLeavesWhileLoading()
{
    QVERIFY(showCopies({QStringLiteral("landscape.jpg"), QStringLiteral("large_24mp.jpg")}));
    QVERIFY(m_pHost->select(QStringLiteral("large_24mp.jpg")));
    for (int i = 0; i < 30; ++i) {
        key(Qt::Key_Space);
        QVERIFY(dialog() != nullptr);
        // At once, by the window's own close button every other time: asked to wait, it stays.
        if (i % 2 == 0)
            sendKey(dialog()->windowHandle(), Qt::Key_Escape);
        else
            dialog()->close();
        QVERIFY(dialog() != nullptr);
        QVERIFY(m_pHost->returnToGrid());
    }
    QCOMPARE(m_pHost->currentName(), QStringLiteral("large_24mp.jpg"));
}

void FaultsTest::takesAStormOfKeys()
{
    QVERIFY(showCopies({QStringLiteral("anim.gif"), QStringLiteral("landscape.jpg"), QStringLiteral("page.pdf"),
                        QStringLiteral("large_24mp.jpg"), QStringLiteral("wide_gamut.jpg")}));
    QVERIFY(m_pHost->select(QStringLiteral("landscape.jpg")));
    constexpr int k_nKeys = 400;
    const Qt::Key keys[] = {Qt::Key_Space, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left,  Qt::Key_Plus,
                            Qt::Key_Right, Qt::Key_Space, Qt::Key_Left,  Qt::Key_Escape};
    int nSent = 0;
    for (int i = 0; i < k_nKeys; ++i) {
        const auto send = [this, &nSent, nKey = keys[i % std::size(keys)]] {
            ++nSent;
            QWindow *pFocus = QGuiApplication::focusWindow();
            sendKey(pFocus != nullptr ? pFocus : m_pHost->session().window()->windowHandle(), nKey);
        };
        // The first half in one go, the second between whatever else happens.
        if (i < k_nKeys / 2)
            send();
        else
            QMetaObject::invokeMethod(this, send, Qt::QueuedConnection);
    }
    QTRY_COMPARE_WITH_TIMEOUT(nSent, k_nKeys, PatienceMsec);
    QVERIFY(m_pHost->returnToGrid());
    QVERIFY(m_pHost->open(QStringLiteral("wide_gamut.jpg")));
    QTRY_VERIFY(isAbout(colorAt(0.25, 0.25), k_red));
    QVERIFY(m_pHost->returnToGrid());
}

void FaultsTest::endsWithAnOpenPreview()
{
    QVERIFY(showCopies({QStringLiteral("large_24mp.jpg")}));
    QVERIFY(m_pHost->select(QStringLiteral("large_24mp.jpg")));
    QElapsedTimer time;
    time.start();
    key(Qt::Key_Space);
    QVERIFY(dialog() != nullptr);
    // That ends the program, although a preview was open that asks to wait.
    QApplication::setQuitOnLastWindowClosed(true);
    QTimer::singleShot(0, m_pHost->session().window(), &QWidget::close);
    QTimer::singleShot(PatienceMsec, this, [] { QCoreApplication::exit(EXIT_FAILURE); });
    QCOMPARE(QApplication::exec(), EXIT_SUCCESS);
    m_pHost->end();
    QVERIFY(dialog() == nullptr);
    QVERIFY(QThreadPool::globalInstance()->waitForDone(PatienceMsec));
    QVERIFY2(time.elapsed() < PatienceMsec, qPrintable(QString::number(time.elapsed())));
}

BIGIMGPREVIEW_TEST_MAIN(FaultsTest)
#include "tst_e2e_faults.moc"
