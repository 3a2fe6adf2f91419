#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "Watches.h"
#include "app/FileGridView.h"
#include "app/FullPreviewPlace.h"
#include "app/HostSession.h"
#include "app/MainWindow.h"
#include "app/PreviewController.h"
#include "app/panel/InfoPanel.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QLineEdit>
#include <QScrollBar>

using namespace OpenPreview;

namespace {

// The quarters of wide_gamut.jpg as they look in sRGB.
const QColor k_red(220, 30, 30);
const QColor k_green(30, 200, 30);
const QColor k_blue(30, 30, 220);
const QColor k_white(245, 245, 245);

} // namespace

/**
 * The main way through the program, with the whole of it: from the command line or the grid into the preview, around in
 * it and back. One host for all functions, which therefore each begin in the grid and leave it as they found it.
 */
class JourneyTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    // opens the file of the command line
    void initTestCase()
    {
        m_pHost = std::make_unique<HostUser>(QStringLiteral(SAMPLES_DIR "/pictures/wide_gamut.jpg"));
        QTRY_VERIFY_WITH_TIMEOUT(dialog() != nullptr, PatienceMsec);
        QVERIFY(waitForPicture());
        QCOMPARE(m_pHost->currentName(), QStringLiteral("wide_gamut.jpg"));
        QTRY_VERIFY(isAbout(colorAt(0.25, 0.25), k_red));
        QVERIFY(isAbout(colorAt(0.75, 0.25), k_green));
        QVERIFY(isAbout(colorAt(0.25, 0.75), k_blue));
        QVERIFY(isAbout(colorAt(0.75, 0.75), k_white));
        QVERIFY(m_pHost->returnToGrid());
        QCOMPARE(m_pHost->currentName(), QStringLiteral("wide_gamut.jpg"));
    }

    void opensFromTheGridAndReturns()
    {
        for (const char *pWay : {"escape", "space", "double click"}) {
            QVERIFY(m_pHost->select(QStringLiteral("landscape.png")));
            key(Qt::Key_Space);
            QVERIFY(waitForPicture());
            QVERIFY(!isPlaceholder());
            QCOMPARE(dialog()->geometry(), m_pHost->session().window()->geometry());
            if (*pWay == 'd')
                doubleClick(view()->viewport(), view()->viewport()->rect().center());
            else
                key(*pWay == 'e' ? Qt::Key_Escape : Qt::Key_Space);
            QVERIFY2(waitUntilClosed(), pWay);
            QVERIFY(m_pHost->returnToGrid());
            QCOMPARE(m_pHost->currentName(), QStringLiteral("landscape.png"));
        }
    }

    void opensTheFullPreviewAndReturns()
    {
        MainWindow *pWindow = m_pHost->session().window();
        FileGridView *pGrid = m_pHost->grid();
        QVERIFY(m_pHost->select(QStringLiteral("landscape.png")));
        const int nScrolled = pGrid->verticalScrollBar()->value();
        for (const bool bByMouse : {false, true}) {
            QVERIFY(makeActive(pWindow));
            if (!bByMouse)
                pGrid->selectionModel()->select(m_pHost->session().model().index(0), QItemSelectionModel::Select);
            if (bByMouse)
                doubleClick(pGrid->viewport(), pGrid->visualRect(pGrid->currentIndex()).center());
            else
                key(Qt::Key_Return);
            QTRY_VERIFY(pWindow->fullPreviewPlace()->isOpen());
            const QVector<qint64> selected = pGrid->selectedFileIds();
            QCOMPARE(selected.size(), bByMouse ? 1 : 2);
            QWidget *pPreview = m_pHost->session().previews()->dialog();
            // It takes the files' place; the panel beside it tells of the file that it shows.
            QVERIFY(pPreview->window() == pWindow && pPreview->isVisible() && !pGrid->isVisible());
            QTRY_VERIFY(pWindow->infoPanel()->isVisible());
            QCOMPARE(pWindow->infoPanel()->fileId(), pGrid->currentFileId());
            // A label is for the file on show, not for all that are selected in the files behind it.
            auto *pInput = pWindow->infoPanel()->findChild<QLineEdit *>(QStringLiteral("hostLabelInput"));
            QTest::keyClicks(pInput, QStringLiteral("seen"));
            QTest::keyClick(pInput, Qt::Key_Return);
            QTRY_COMPARE(labelledFiles(), QVector<qint64>{pGrid->currentFileId()});
            QTRY_VERIFY_WITH_TIMEOUT(
                [&] {
                    if (m_pHost->session().previews()->isOpen())
                        key(Qt::Key_Escape);
                    return !m_pHost->session().previews()->isOpen();
                }(),
                PatienceMsec);
            QTRY_VERIFY(pGrid->isVisible() && pGrid->hasFocus());
            QCOMPARE(m_pHost->currentName(), QStringLiteral("landscape.png"));
            QCOMPARE(pGrid->selectedFileIds(), selected);
            QTRY_COMPARE(pGrid->verticalScrollBar()->value(), nScrolled);
        }
    }

    void followsTheWindow()
    {
        QVERIFY(m_pHost->open(QStringLiteral("wide_gamut.jpg")));
        MainWindow *pWindow = m_pHost->session().window();
        const QRect before = pWindow->geometry();
        for (const QRect &place : {QRect(40, 30, 1400, 900), QRect(300, 200, 700, 500), before}) {
            pWindow->setGeometry(place);
            QTRY_COMPARE(dialog()->geometry(), place);
            QTRY_VERIFY(isAbout(colorAt(0.45, 0.45), k_red) && isAbout(colorAt(0.55, 0.55), k_white));
            const QPoint middle = view()->mapFromScene(picture()->sceneBoundingRect().center());
            QVERIFY((middle - view()->viewport()->rect().center()).manhattanLength() <= 2);
        }
        QVERIFY(m_pHost->returnToGrid());
    }

    void stepsWithTheSelection()
    {
        const QString first = m_pHost->nameAt(0);
        QVERIFY(m_pHost->open(first));
        key(Qt::Key_Left);
        QVERIFY(waitForPicture());
        QCOMPARE(m_pHost->currentName(), first);
        const QVector<QPair<Qt::Key, int>> steps = {
            {Qt::Key_Right, 1}, {Qt::Key_Down, 2}, {Qt::Key_Right, 3}, {Qt::Key_Left, 2}, {Qt::Key_Up, 1}};
        for (const auto &step : steps) {
            key(step.first);
            QCOMPARE(m_pHost->row(), step.second);
            QVERIFY(waitForPicture());
        }
        QVERIFY(m_pHost->returnToGrid());
        QCOMPARE(m_pHost->row(), 1);
        QCOMPARE(m_pHost->grid()->selectionModel()->selectedIndexes().size(), 1);
    }

    void showsEverySample()
    {
        const int nFiles = m_pHost->fileCount();
        QVERIFY2(nFiles > 40, qPrintable(QString::number(nFiles)));
        // One of them is damaged, and whoever first reads its size has that to say.
        for (const char *pBeginning : {"Bogus", "Corrupt JPEG", "JPEG datastream"})
            log().expect(QLatin1String(pBeginning));
        QVERIFY(m_pHost->open(m_pHost->nameAt(0)));
        QStringList wrong;
        for (int i = 0; i < nFiles; ++i) {
            if (i > 0)
                key(Qt::Key_Right);
            QVERIFY2(waitForPicture(), qPrintable(m_pHost->currentName()));
            QCOMPARE(m_pHost->row(), i);
            if (isPlaceholder() != (m_pHost->currentName() == QLatin1String("damaged.jpg")))
                wrong.append(m_pHost->currentName());
        }
        QVERIFY(m_pHost->returnToGrid());
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char(' '))));
    }

    void isIdle()
    {
        // Half a second after a picture was opened the host decodes its neighbours, and a second later spare memory is
        // given back; then there is nothing left to do. The window is longer than the longest of these waits.
        Idleness idleness;
        const auto isQuiet = [&idleness] {
            idleness = watchIdle(2500);
            return idleness.timers.isEmpty() && idleness.fCpuMsec < 30.0;
        };
        QVERIFY(m_pHost->open(QStringLiteral("landscape.jpg")));
        QTRY_VERIFY2_WITH_TIMEOUT(isQuiet(), qPrintable(idleness.text()), 3 * PatienceMsec);
        QVERIFY(m_pHost->returnToGrid());
        QTRY_VERIFY2_WITH_TIMEOUT(isQuiet(), qPrintable(idleness.text()), 3 * PatienceMsec);
        qInfo("idle: %s", qPrintable(idleness.text()));
    }

    void actsFromTheGrid()
    {
        QTemporaryDir folder;
        const QDir files(folder.filePath(QStringLiteral("files")));
        QVERIFY(files.mkpath(QStringLiteral(".")));
        for (const char *pName : {"a.png", "b.png"})
            QVERIFY(QFile::copy(QStringLiteral(SAMPLES_DIR "/pictures/landscape.png"),
                                files.filePath(QLatin1String(pName))));
        // A preview of what was in view goes with it: its files' numbers mean others from now on.
        QVERIFY(m_pHost->open(QStringLiteral("landscape.png")));
        QVERIFY(m_pHost->showFolder(files.path()));
        QVERIFY(waitUntilClosed());
        QVERIFY(m_pHost->select(QStringLiteral("a.png")));
        QTest::keyClick(m_pHost->session().window()->windowHandle(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls(),
                 QList<QUrl>{QUrl::fromLocalFile(files.filePath(QStringLiteral("a.png")))});
        key(Qt::Key_Delete);
        QTRY_VERIFY(!files.exists(QStringLiteral("a.png")));
        QTRY_COMPARE(m_pHost->fileCount(), 1);
        QCOMPARE(m_pHost->nameAt(0), QStringLiteral("b.png"));
    }

    void cleanupTestCase()
    {
        m_pHost->end();
        QVERIFY(dialog() == nullptr);
    }

private:
    QVector<qint64> labelledFiles() const
    {
        QVector<qint64> ids;
        for (const FileRecordPtr &pRecord : m_pHost->session().library()->records()) {
            if (!pRecord->tags().isEmpty())
                ids.append(pRecord->fileId());
        }
        return ids;
    }

    std::unique_ptr<HostUser> m_pHost;
};

BIGIMGPREVIEW_TEST_MAIN(JourneyTest)
#include "tst_e2e_journey.moc"
