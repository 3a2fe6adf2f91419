#include "LibraryFixture.h"
#include "app/FullPreviewPlace.h"
#include "app/LabelList.h"
#include "app/NotesList.h"
#include "app/ThumbnailSource.h"
#include "app/panel/InfoPanel.h"
#include "app/panel/LabelChip.h"
#include "app/panel/LabelEditor.h"

#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

namespace {

class FakePreview : public IPreviewDbClickWidget {
public:
    bool canClosePreview() override { return true; }
    void stopPreview() override {}
    void setRightPanelHidden(bool) override {}
    QWidget *previewWidget() override { return this; }
};

QStringList texts(const QWidget &parent)
{
    QStringList all;
    const QList<QLabel *> labels = parent.findChildren<QLabel *>();
    for (const QLabel *pLabel : labels) {
        if (pLabel->isVisibleTo(&parent))
            all.append(pLabel->text());
    }
    return all;
}

NoteRecord makeNote(const QString &text, quint32 nValue = 0x0064FA)
{
    return {QRect(1, 2, 30, 40), nValue, text};
}

} // namespace

/** The information panel on real files, and how it makes room for and follows the full preview. */
class HostPanelTest : public LibraryTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        LibraryTest::init();
        write("b.png");
        QVERIFY(QImage(120, 80, QImage::Format_RGB32).save(files("a.jpg")));
        m_place->open();
        m_pThumbnails = std::make_unique<ThumbnailSource>();
        m_pPanel = std::make_unique<InfoPanel>(library(), m_pThumbnails.get(), nullptr);
        m_pPanel->setMetadataReader(readFileMetadata);
        m_pPanel->resize(280, 900);
        m_pPanel->show();
    }

    void cleanup() override
    {
        m_pPanel.reset();
        m_pThumbnails.reset();
        LibraryTest::cleanup();
    }

    void tellsWhatIsKnown()
    {
        QVERIFY(!part<QLineEdit>("hostFileName")->isVisible());
        m_pPanel->showFile(id("a.jpg"));
        QCOMPARE(part<QLineEdit>("hostFileName")->text(), QStringLiteral("a.jpg"));
        QTRY_VERIFY(texts(*m_pPanel).contains(QString::fromUtf8("120 × 80")));
        // The next file's lines never mix with the last one's.
        m_pPanel->showFile(id("b.png"));
        QVERIFY(!texts(*m_pPanel).contains(QString::fromUtf8("120 × 80")));
        QVERIFY(texts(*m_pPanel).contains(QStringLiteral("No notes")));
        library()->setNotes(m_pPanel->fileId(), {{QRect(0, 0, 1, 1), 1, QStringLiteral("n")}});
        QTRY_VERIFY(texts(*m_pPanel).contains(QStringLiteral("1 note")));
    }

    void renamesInPlace()
    {
        const qint64 nId = id("a.jpg");
        m_pPanel->showFile(nId);
        m_pPanel->activateWindow();
        auto *pName = part<QLineEdit>("hostFileName");
        m_pPanel->editName();
        QTRY_COMPARE(pName->selectedText(), QStringLiteral("a"));
        QTest::keyClicks(pName, QStringLiteral("other"));
        QTest::keyClick(pName, Qt::Key_Escape);
        QCOMPARE(pName->text(), QStringLiteral("a.jpg"));

        pName->setText(QStringLiteral("b.png"));
        QTest::keyClick(pName, Qt::Key_Return);
        // Refused: the old name is back, and the reason stands below it.
        QTRY_VERIFY(texts(*m_pPanel).join(QLatin1Char('|')).contains(QStringLiteral("another file")));
        QCOMPARE(library()->record(nId)->fileName(), QStringLiteral("a.jpg"));
        pName->clearFocus();
        pName->setText(QStringLiteral("c.jpg"));
        QTest::keyClick(pName, Qt::Key_Return);
        QTRY_COMPARE(library()->record(nId)->fileName(), QStringLiteral("c.jpg"));
        QVERIFY(QFile::exists(files("c.jpg")));
    }

    void addsAndTakesAwayLabels()
    {
        const qint64 nId = id("a.jpg");
        const qint64 nOther = id("b.png");
        m_pPanel->setSelection({nId, nOther});
        m_pPanel->showFile(nId);
        auto *pInput = part<QLineEdit>("hostLabelInput");
        QTest::keyClicks(pInput, QStringLiteral("  sea   side "));
        QTest::keyClick(pInput, Qt::Key_Return);
        QTRY_COMPARE(chips().size(), 1);
        QVERIFY(pInput->text().isEmpty());
        // All selected files have it, and it is the same label however it is spelt.
        QTRY_COMPARE(library()->record(nOther)->tags().size(), 1);
        QTest::keyClicks(pInput, QStringLiteral("SEA SIDE"));
        QTest::keyClick(pInput, Qt::Key_Return);
        QTest::keyClicks(pInput, QStringLiteral("Alps"));
        QTest::keyClick(pInput, Qt::Key_Return);
        QTRY_COMPARE(chips().size(), 2);
        QCOMPARE(library()->labels().size(), 2);
        QTest::keyClick(chips().first(), Qt::Key_Delete);
        QTRY_COMPARE(chips().size(), 1);
        QCOMPARE(chips().first()->label().name, QStringLiteral("sea side"));
        // The cross at its end.
        QTest::mouseClick(chips().first(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(chips().first()->width() - 12, chips().first()->height() / 2));
        QTRY_COMPARE(chips().size(), 0);
        QTRY_VERIFY(library()->record(nOther)->tags().isEmpty());
    }

    void forgetsMissingFiles()
    {
        const qint64 nId = id("b.png");
        m_pPanel->showFile(nId);
        auto *pForget = part<QPushButton>("hostForgetButton");
        QVERIFY(!pForget->isVisible());
        QVERIFY(QFile::remove(files("b.png")));
        QTRY_VERIFY(pForget->isVisible());
        QVERIFY(part<QLineEdit>("hostFileName")->isReadOnly());
        pForget->click();
        QTRY_VERIFY(library()->record(nId) == nullptr);
        QTRY_COMPARE(m_pPanel->fileId(), 0);
    }

    void listsLabels()
    {
        LabelList list(nullptr);
        QSignalSpy chosen(&list, &LabelList::signalChosen);
        list.setLabels({{1, QStringLiteral("a"), 0}, {2, QStringLiteral("b"), 0x112233}});
        list.setUses({{2, 7}});
        list.resize(200, 200);
        list.show();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 42));
        QCOMPARE(list.chosen(), 2u);
        list.setLabels({{2, QStringLiteral("b"), 0}, {3, QStringLiteral("c"), 0}});
        QCOMPARE(list.currentIndex().row(), 0);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 14));
        QCOMPARE(list.chosen(), 0u);
        list.choose(3);
        // A label that is deleted narrows nothing any more.
        list.setLabels({{2, QStringLiteral("b"), 0}});
        QCOMPARE(list.chosen(), 0u);
        QCOMPARE(chosen.last().first().toULongLong(), 0u);
    }

    void followsTheFullPreview()
    {
        QWidget window;
        auto *pCenter = new QStackedWidget(&window);
        pCenter->addWidget(new QWidget);
        auto *pPanel = new QWidget(&window);
        auto *pTitle = new QWidget(&window);
        auto *pFolded = new QWidget(&window);
        pFolded->hide();
        window.resize(400, 300);
        pCenter->resize(400, 300);
        window.show();
        FullPreviewPlace place(pCenter, pPanel, {pTitle, pFolded}, nullptr);
        place.setPanelWanted(false);
        QVERIFY(pPanel->isHidden());
        FakePreview preview;
        QSignalSpy hidden(&place, &FullPreviewPlace::signalPanelHidden);
        QSignalSpy nearEdge(&preview, &IPreviewDbClickWidget::signalStartSideTimer);
        place.enter(&preview, false);
        QVERIFY(pCenter->currentWidget() == &preview && pTitle->isHidden() && !pPanel->isHidden());
        // A step forbids it for a moment: too short to go and come back for.
        Q_EMIT preview.signalRightViewIsForbidden(true);
        QVERIFY(!pPanel->isHidden());
        QTRY_VERIFY(pPanel->isHidden());
        // A toggle while it is forbidden counts when it is allowed again.
        Q_EMIT preview.signalHideRightView();
        Q_EMIT preview.signalRightViewIsForbidden(false);
        QVERIFY(pPanel->isHidden());
        Q_EMIT preview.signalHideRightView();
        QVERIFY(!pPanel->isHidden());
        QCOMPARE(hidden.size(), 2);
        QCOMPARE(hidden.first().first().toBool(), true);
        // Once for each approach of the mouse to the right edge.
        for (const int nX : {100, 395, 397, 200, 396})
            QTest::mouseMove(&preview, QPoint(nX, 100));
        QTRY_COMPARE(nearEdge.size(), 2);

        place.leave();
        QVERIFY(pCenter->currentIndex() == 0 && !pTitle->isHidden() && pFolded->isHidden() && pPanel->isHidden());
        preview.setParent(nullptr);
        Q_EMIT preview.signalHideRightView();
        QCOMPARE(hidden.size(), 2);
    }

    void listsNotesAndFollows()
    {
        QWidget panel;
        NotesList list(library(), &panel);
        panel.show();
        list.setFile(id("a.jpg"));
        QVERIFY(list.isHidden());
        storeNotes(id("b.png"), {makeNote(QStringLiteral("of another file"))});
        QCOMPARE(list.count(), 0);
        storeNotes(id("a.jpg"), {makeNote(QStringLiteral("one")), makeNote(QStringLiteral("two"))});
        QCOMPARE(list.count(), 2);
        QVERIFY(list.isVisible());
        QSignalSpy activated(&list, &NotesList::signalNoteActivated);
        list.resize(200, 100);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(1)).center());
        QCOMPARE(activated.size(), 1);
        QCOMPARE(activated.first(), (QVariantList{id("a.jpg"), 1}));
        storeNotes(id("a.jpg"), {makeNote(QStringLiteral("two"))});
        QCOMPARE(list.count(), 1);
        QCOMPARE(list.item(0)->text(), QStringLiteral("two"));
        list.setFile(id("b.png"));
        QCOMPARE(list.item(0)->text(), QStringLiteral("of another file"));
        list.setFile(0);
        QVERIFY(list.isHidden());
        // As high as its notes, but not for all of them.
        storeNotes(id("a.jpg"), QVector<NoteRecord>(500, makeNote(QStringLiteral("x"))));
        list.setFile(id("a.jpg"));
        QCOMPARE(list.count(), 500);
        QVERIFY(list.sizeHint().height() < 300);
    }

    void showsNotesAsTheyStand()
    {
        const std::pair<QString, QString> rows[] = {
            {QStringLiteral("<b>a</b>"), QStringLiteral("<b>a</b>")},
            {QStringLiteral("a\n\n  b\tc"), QStringLiteral("a b c")},
            {QString(100 * 1024, QLatin1Char('x')), QString(200, QLatin1Char('x'))},
            {QString(), QString()}};
        for (const auto &row : rows) {
            storeNotes(id("a.jpg"), {makeNote(row.first)});
            NotesList list(library());
            list.setFile(id("a.jpg"));
            QCOMPARE(list.item(0)->text(), row.second);
            QVERIFY(!list.item(0)->toolTip().contains(QLatin1String("<b>")));
            QVERIFY(list.item(0)->toolTip().size() < 8000);
        }
    }

private:
    void storeNotes(qint64 nFileId, const QVector<NoteRecord> &notes)
    {
        QSignalSpy stored(library(), &Library::signalNotesStored);
        library()->setNotes(nFileId, notes);
        QTRY_COMPARE(stored.size(), 1);
    }
    template <typename Widget>
    Widget *part(const char *pName) const
    {
        return m_pPanel->findChild<Widget *>(QLatin1String(pName));
    }

    QVector<LabelChip *> chips() const
    {
        QVector<LabelChip *> shown;
        const QList<LabelChip *> all = m_pPanel->findChildren<LabelChip *>();
        for (LabelChip *pChip : all) {
            if (!pChip->isHidden())
                shown.append(pChip);
        }
        return shown;
    }

    std::unique_ptr<ThumbnailSource> m_pThumbnails;
    std::unique_ptr<InfoPanel> m_pPanel;
};

BIGIMGPREVIEW_TEST_MAIN(HostPanelTest)
#include "tst_host_panel.moc"
