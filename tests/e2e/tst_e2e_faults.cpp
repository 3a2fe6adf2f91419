#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "Watches.h"
#include "app/HostSession.h"
#include "app/MainWindow.h"
#include "library/LibraryDataSource.h"

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

/** What goes wrong around a preview that is used all the same: hostile files, files that change, hurried users. */
class FaultsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_pHost = std::make_unique<HostUser>(QStringLiteral(SAMPLES_DIR "/nasty")); }

    void getsThroughNastyFiles()
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

    void meetsAFileThatChangedAfterListing_data()
    {
        namedRows({"replaced", "removed", "emptied", "unreadable", "folder", "pipe", "dangling link"});
    }

    void meetsAFileThatChangedAfterListing()
    {
        const QString change = rowName();
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

    void holdsNoFileOpen_data()
    {
        const auto row = columns<QString, bool>("name", "bPlays");
        row("still", "landscape.jpg", false);
        row("large", "large_24mp.jpg", false);
        row("page", "page.pdf", false);
        row("gif", "anim.gif", true);
        row("webp", "anim.webp", true);
    }

    void holdsNoFileOpen()
    {
        const auto [name, bPlays] = currentRow<QString, bool>();
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

    void staysResponsive()
    {
        QVERIFY(showCopies({QStringLiteral("landscape.jpg"), QStringLiteral("large_24mp.jpg"),
                            QStringLiteral("anim.gif"), QStringLiteral("tiled.tif")}));
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

    void takesAStormOfKeys()
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

    void endsWithAnOpenPreview()
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

protected Q_SLOTS:
    void init() override
    {
        LoggedTest::init();
        // Readers of damaged files have much to say.
        for (const char *pBeginning :
             {"libpng", "qt.gui", "QImage", "Bogus", "Corrupt JPEG", "JPEG datastream", "foreign", "QMovie", "QWindow"})
            log().expect(QLatin1String(pBeginning));
    }

private:
    /** A fresh folder with these samples, shown in the grid. */

    bool showCopies(const QStringList &names)
    {
        m_pFolder = std::make_unique<QTemporaryDir>();
        for (const QString &name : names) {
            if (!QFile::copy(sample(name), path(name)))
                return false;
        }
        return m_pHost->showFolder(m_pFolder->path()) && m_pHost->fileCount() == names.size();
    }

    QString path(const QString &name) const { return m_pFolder->filePath(name); }

    std::unique_ptr<HostUser> m_pHost;
    std::unique_ptr<QTemporaryDir> m_pFolder;
};

BIGIMGPREVIEW_TEST_MAIN(FaultsTest)
#include "tst_e2e_faults.moc"
