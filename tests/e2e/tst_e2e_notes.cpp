#include "HostUser.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "WidgetEvents.h"
#include "app/FileGridModel.h"
#include "app/HostSession.h"
#include "app/PreviewController.h"
#include "library/Library.h"

#include <QAbstractButton>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QTextEdit>

using namespace OpenPreview;

namespace {

const QString Sample = QStringLiteral("wide_gamut.jpg");

QWidget *overlay()
{
    for (QWidget *pWidget : dialog()->findChildren<QWidget *>()) {
        if (pWidget->inherits("CNoteWidget"))
            return pWidget;
    }
    return nullptr;
}

} // namespace

/** A note's whole way: drawn and written in the real preview, stored by the real host, there again on the next day. */
class NotesTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void noteComesBackOnTheSamePixels()
    {
        QTemporaryDir folder;
        const QString library = folder.filePath(QStringLiteral("library.db"));
        QRect pixels;
        {
            HostUser host(QStringLiteral(SAMPLES_DIR "/pictures/") + Sample, QStringLiteral(PLUGINS_DIR), library);
            QTRY_VERIFY_WITH_TIMEOUT(dialog() != nullptr, PatienceMsec);
            QVERIFY(waitForPicture());
            click(button("Comment"));
            QTRY_VERIFY(overlay()->isVisible());
            QVERIFY(makeActive(dialog()));
            const QRect shown = view()->mapFromScene(picture()->sceneBoundingRect()).boundingRect();
            const QRect drawn(shown.topLeft() + QPoint(shown.width() / 8, shown.height() / 8), QSize(120, 80));
            drag(overlay(), drawn.topLeft(), drawn.topLeft() + QPoint(120, 80));
            auto *pBox = overlay()->findChild<QTextEdit *>();
            QTRY_VERIFY(pBox->isVisible() && pBox->hasFocus());
            QTest::keyClicks(dialog()->windowHandle()->focusObject() == pBox ? pBox : nullptr, QStringLiteral("seen"));
            click(button("Cyan"));
            QTest::keyClick(pBox, Qt::Key_Return, Qt::ControlModifier);
            QTRY_COMPARE(record(host)->notes().size(), 1);
            pixels = record(host)->notes().first().rect;
            QCOMPARE(record(host)->notes().first().text, QStringLiteral("seen"));
            QCOMPARE(record(host)->notes().first().value, 0xFFFF00U);
            key(Qt::Key_Escape); // the notes, then the preview
            QTRY_VERIFY(!overlay()->isVisible());
            QVERIFY(host.returnToGrid());
        }
        Library again;
        FileRecordPtr pRecord;
        connect(&again, &Library::signalRecords, this, [&pRecord](const FileRecordList &records) {
            for (const FileRecordPtr &pCandidate : records)
                pRecord = pCandidate->fileName() == Sample ? pCandidate : pRecord;
        });
        again.open(library);
        again.showFolderNow(QStringLiteral(SAMPLES_DIR "/pictures"), Sample);
        QTRY_VERIFY(pRecord != nullptr);
        QCOMPARE(pRecord->notes().size(), 1);
        QCOMPARE(pRecord->notes().first().rect, pixels);
    }

private:
    FileRecordPtr record(HostUser &host) const { return host.session().model().recordAt(host.row()); }
};

BIGIMGPREVIEW_TEST_MAIN(NotesTest)
#include "tst_e2e_notes.moc"
