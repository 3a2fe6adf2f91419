#include "ImageWidgetTest.h"
#include "image/CColorPntBtn.h"
#include "image/CNoteInputWidget.h"
#include "image/CNoteWidget.h"
#include "image/NoteUndoNotice.h"

#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>

#include <functional>

namespace {

constexpr quint32 Orange = 0x0064FA;

NoteRecord makeNote(const QRect &rect, const char *pText = "note", quint32 nValue = Orange)
{
    return {rect, nValue, QString::fromUtf8(pText)};
}

QStringList textsOf(const QVector<NoteRecord> &notes)
{
    QStringList texts;
    for (const NoteRecord &note : notes)
        texts.append(note.text);
    return texts;
}

} // namespace

/** The comment mode of the picture widget against a host that stores notes. */
class tst_notes : public ImageWidgetTest {
    Q_OBJECT

private Q_SLOTS:
    void drawing_data();
    void drawing();
    void storesPicturePixels_data();
    void storesPicturePixels();
    void staysOnItsPixels_data();
    void staysOnItsPixels();
    void moveIsSavedAtOnce();
    void handles_data();
    void handles();
    void rewritingMovesNothing();
    void deletesAndTakesBack();
    void keys();
    void handlesAtThePicturesEdge();
    void keysChooseANote();
    void clickBesideTheCardSaves();
    void oddNotes_data();
    void oddNotes();
    void oddTexts_data();
    void oddTexts();
    void textSurvivesTheStep_data();
    void textSurvivesTheStep();
    void hostsAnswers_data();
    void hostsAnswers();
    void hostsOwnListCounts();
    void fallbackPictures_data();
    void fallbackPictures();
    void placeholderTakesNoNotes();
    void showsTheNoteAskedFor();
    void paintsOnce();

protected:
    void init() override
    {
        ImageWidgetTest::init();
        host().desk.storeNotes = [this](qint64 nId, const QVector<NoteRecord> &notes) {
            m_stored[nId] = notes;
        };
    }
    void cleanup() override
    {
        m_pWidget.reset(); // may store what is being written
        host().desk.storeNotes = {};
        m_stored.clear();
        ImageWidgetTest::cleanup();
    }

private:
    /** What the host gives out now: its records are pictures of the moment. */
    void refreshRecord(qint64 nId)
    {
        const auto pFile = host().addFile(nId, Png, QStringLiteral("/%1.png").arg(nId));
        pFile->noteList = m_stored.value(nId);
    }
    void load(qint64 nId, const QSize &size = QSize(1600, 1000))
    {
        FakePicture picture;
        picture.size = size;
        host().decoder.setPicture(QStringLiteral("/%1.png").arg(nId), picture);
        for (const qint64 nFile : {1, 2})
            refreshRecord(nFile);
        openFiles({1, 2}, nId);
        m_pWidget->clearPreview();
        m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
        finishWorkers();
        m_pWidget->showLoaded();
    }
    void comment(qint64 nId = 1)
    {
        load(nId);
        m_pWidget->slot_EditBtnClicked();
    }
    /** Those of the widget, and o: wheel, d: drag, s: another size, c: comment mode. */
    void command(char c)
    {
        const QPoint overNotes(230, 310);
        if (c == 'o')
            turnWheel(overlay()->isVisible() ? static_cast<QWidget *>(overlay()) : view()->viewport(), overNotes);
        else if (c == 'd')
            drag(QPoint(400, 300), QPoint(430, 280), Qt::MiddleButton);
        else if (c == 's')
            m_pWidget->resize(m_pWidget->size() == ViewSize ? QSize(701, 533) : ViewSize);
        else if (c == 'c')
            m_pWidget->slot_EditBtnClicked();
        else
            ImageWidgetTest::command(c);
        settle();
    }
    void drag(const QPoint &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton)
    {
        ::drag(overlay(), from, to, button);
    }
    void write(const QString &text) { textBox()->insertPlainText(text); }
    void pressSave() { QTest::keyClick(textBox(), Qt::Key_Return, Qt::ControlModifier); }

    CNoteWidget *overlay() const { return m_pWidget->findChild<CNoteWidget *>(); }
    CNoteInputWidget *card() const { return overlay()->card(); }
    QTextEdit *textBox() const { return card()->findChild<QTextEdit *>(); }
    QRect regionRect(int n = 0) const { return overlay()->region(n)->rect; }
    int requests() { return host().desk.of(ActionKind::Comment).size(); }
    /** Where a point of the picture lies on the screen, by way of the scene alone. */
    QPoint onScreen(double fX, double fY) const
    {
        const double fRatio = m_pWidget->devicePixelRatioF();
        return view()->mapFromScene(item()->mapToScene(item()->boundingRect().topLeft() + QPointF(fX, fY) / fRatio));
    }
    QRect onScreen(const QRect &rect) const
    {
        return NoteGeometry::normalised(onScreen(rect.left(), rect.top()),
                                        onScreen(rect.left() + rect.width(), rect.top() + rect.height()));
    }

    QMap<qint64, QVector<NoteRecord>> m_stored;
};

void tst_notes::drawing_data()
{
    QTest::addColumn<QPoint>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QRect>("expected"); // invalid: no note
    const QRect none(0, 0, -1, -1);
    const QPoint at(300, 250);
    QTest::newRow("click") << at << at << none;
    QTest::newRow("one wide") << at << at + QPoint(1, 40) << none;
    QTest::newRow("one high") << at << at + QPoint(40, -1) << none;
    QTest::newRow("two by two") << at << at + QPoint(2, 2) << QRect(at, QSize(2, 2));
    QTest::newRow("backwards") << at << at - QPoint(60, 40) << QRect(240, 210, 60, 40);
    QTest::newRow("beside the picture") << QPoint(400, 20) << QPoint(500, 40) << none; // 800 x 500 in the middle
    QTest::newRow("out of the picture") << QPoint(700, 500) << QPoint(760, 590) << QRect(700, 500, 60, 50);
}

void tst_notes::drawing()
{
    QFETCH(QPoint, from);
    QFETCH(QPoint, to);
    QFETCH(QRect, expected);
    comment();
    QSignalSpy saves(overlay(), &CNoteWidget::signal_saveNoteInfo);
    drag(from, to);
    QCOMPARE(overlay()->regionCount(), expected.isValid() ? 1 : 0);
    QCOMPARE(card()->isVisible(), expected.isValid());
    QCOMPARE(requests(), 0);
    if (!expected.isValid())
        return;
    QCOMPARE(regionRect(), expected);
    QCOMPARE(overlay()->region(0)->nState, int(NoteIdle));
    QCOMPARE(overlay()->region(0)->color, QColor(QStringLiteral("#FA6400")));
    QVERIFY(card()->isEditing());
    QVERIFY(!card()->geometry().intersects(regionRect()));
    pressSave(); // nothing written
    QCOMPARE(saves.count(), 0);
    write(QStringLiteral("words"));
    pressSave();
    QCOMPARE(saves.count(), 1);
    QCOMPARE(textsOf(m_stored[1]), QStringList(QStringLiteral("words")));
    QCOMPARE(m_stored[1].first().value, Orange);
    QVERIFY(!card()->isVisible());
}

void tst_notes::storesPicturePixels_data()
{
    QTest::addColumn<QString>("commands");
    for (const char *pCommands : {"", "1", "r", "m", "rm", "rrr", "+", "1++", "oooo", "d", "rd+s", "mrr1"})
        QTest::newRow(*pCommands == '\0' ? "upright" : pCommands) << QString::fromLatin1(pCommands);
}

/** The note lies where it was drawn, is stored by the pixels beneath, and is there again on the untouched picture. */
void tst_notes::storesPicturePixels()
{
    QFETCH(QString, commands);
    load(1);
    for (const QChar c : commands) {
        if (c != QLatin1Char('d'))
            command(c.toLatin1());
    }
    m_pWidget->slot_EditBtnClicked();
    if (commands.contains(QLatin1Char('d')))
        command('d');
    const QPoint from(310, 240), to(390, 300);
    drag(from, to);
    write(QStringLiteral("a"));
    pressSave();
    QCOMPARE(m_stored[1].size(), 1);
    const QRect rect = m_stored[1].first().rect;
    const auto pixel = [this](const QPoint &viewPoint) {
        const QPointF point = item()->toPicturePixels(item()->mapFromScene(view()->mapToScene(viewPoint)));
        return QPoint(int(point.x() + 1e-6), int(point.y() + 1e-6));
    };
    QCOMPARE(rect.topLeft(), pixel(from));
    QCOMPARE(QPoint(rect.left() + rect.width(), rect.top() + rect.height()), pixel(to));
    QVERIFY((regionRect().topLeft() - from).manhattanLength() <= 8); // a pixel at 800 % is large
    load(1);
    m_pWidget->slot_EditBtnClicked();
    QCOMPARE(regionRect(), onScreen(rect));
}

void tst_notes::staysOnItsPixels_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *pName, const char *pBefore, const char *pAfter) {
        QTest::newRow(pName) << QString::fromLatin1(pBefore) << QString::fromLatin1(pAfter);
    };
    row("zooms and drags", "", "1+-wfooo1dd");
    row("resizes", "", "ss");
    row("turns and flips", "", "rrrrmrmmr");
    row("turned before", "r", "+os");
    row("flipped before", "mr", "1do");
    row("mode off and on", "+", "crcmc");
    row("to nothing", "-----", "---++");
}

void tst_notes::staysOnItsPixels()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QRect rect(200, 100, 300, 150);
    m_stored[1] = {makeNote(rect), makeNote(QRect(0, 0, 1600, 1000))};
    load(1);
    for (const QChar c : before)
        command(c.toLatin1());
    m_pWidget->slot_EditBtnClicked();
    QCOMPARE(regionRect(), onScreen(rect));
    for (const QChar c : after) {
        command(c.toLatin1());
        if (overlay()->isVisible()) {
            QCOMPARE(regionRect(0), onScreen(rect));
            QCOMPARE(regionRect(1), onScreen(QRect(0, 0, 1600, 1000)));
        }
        QCOMPARE(overlay()->size(), view()->size());
    }
    QCOMPARE(requests(), 0);
}

void tst_notes::moveIsSavedAtOnce()
{
    m_stored[1] = {makeNote(QRect(200, 200, 400, 200), "a"), makeNote(QRect(800, 600, 100, 100), "b", 0xFF0000)};
    comment();
    const QRect place = regionRect();
    drag(place.center(), place.center() + QPoint(1, -1)); // a click: to be read
    QCOMPARE(requests(), 0);
    QVERIFY(card()->isVisible() && !card()->isEditing());
    QSignalSpy saves(overlay(), &CNoteWidget::signal_saveNoteInfo);
    drag(place.center(), place.center() + QPoint(30, 20));
    QVERIFY(!card()->isVisible());
    QCOMPARE(saves.count(), 1);
    QCOMPARE(requests(), 1);
    QCOMPARE(regionRect(), place.translated(30, 20));
    QCOMPARE(m_stored[1].size(), 2);
    QCOMPARE(onScreen(m_stored[1].first().rect), place.translated(30, 20));
    QCOMPARE(m_stored[1].at(1).value, 0xFF0000U);
    QCOMPARE(overlay()->region(1)->color, QColor(0, 0, 255));
    // Nor can it be pushed out of the picture.
    drag(regionRect().center(), QPoint(-500, -500));
    QCOMPARE(m_stored[1].first().rect.topLeft(), QPoint());
}

void tst_notes::handles_data()
{
    QTest::addColumn<int>("handle");
    QTest::addColumn<QRect>("expected");
    QTest::addColumn<int>("cursor");
    const QRect at(200, 200, 100, 80);
    const auto row = [&at](const char *pName, int nHandle, const QMargins &margins, int nCursor) {
        QTest::newRow(pName) << nHandle << at.marginsAdded(margins) << nCursor;
    };
    row("top left", NoteGeometry::TopLeft, QMargins(-10, -6, 0, 0), Qt::SizeFDiagCursor);
    row("bottom right", NoteGeometry::BottomRight, QMargins(0, 0, 10, 6), Qt::SizeFDiagCursor);
    row("top", NoteGeometry::Top, QMargins(0, -6, 0, 0), Qt::SizeVerCursor);
    row("bottom", NoteGeometry::Bottom, QMargins(0, 0, 0, 6), Qt::SizeVerCursor);
}

void tst_notes::handles()
{
    QFETCH(int, handle);
    QFETCH(QRect, expected);
    m_stored[1] = {makeNote(QRect(0, 0, 10, 10))};
    comment();
    drag(QPoint(200, 200), QPoint(300, 280));
    write(QStringLiteral("x"));
    pressSave();
    const QRect before = m_stored[1].last().rect;
    const QPoint grip = overlay()->region(1)->handles[size_t(handle)].center();
    QMouseEvent hover(QEvent::MouseMove, grip, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(overlay(), &hover);
    QTEST(int(overlay()->cursor().shape()), "cursor");
    drag(grip, grip + QPoint(10, 6));
    QCOMPARE(overlay()->region(1)->nState, int(NoteResized));
    QCOMPARE(regionRect(1), expected);
    QVERIFY(card()->isEditing());
    QCOMPARE(m_stored[1].last().rect, before); // not before it is saved
    QTest::keyClick(textBox(), Qt::Key_Escape);
    QCOMPARE(regionRect(1), QRect(200, 200, 100, 80));
    drag(grip, grip + QPoint(10, 6));
    pressSave();
    QCOMPARE(regionRect(1), expected);
    QCOMPARE(m_stored[1].size(), 2);
}

/** At 5 % a pixel of the screen is twenty of the picture: what is not moved keeps each of them. */
void tst_notes::rewritingMovesNothing()
{
    const QVector<QRect> rects = {QRect(203, 107, 311, 153), QRect(511, 402, -37, 91)};
    m_stored[1] = {makeNote(rects.at(0)), makeNote(rects.at(1))};
    comment();
    for (const char *pCommands : {"", "r", "----"}) {
        for (const char *pCommand = pCommands; *pCommand != '\0'; ++pCommand)
            command(*pCommand);
        for (int i = 0; i < 2; ++i) {
            QTest::mouseDClick(overlay(), Qt::LeftButton, {}, overlay()->badgeRect(i).center());
            QVERIFY(card()->isEditing());
            card()->findChildren<CColorPntBtn *>().at(2)->click();
            write(QStringLiteral("!"));
            pressSave();
            QCOMPARE(m_stored[1].at(i).rect, rects.at(i));
            QCOMPARE(m_stored[1].at(i).value, 0xFFFF00U);
        }
    }
}

void tst_notes::deletesAndTakesBack()
{
    m_stored[1] = {makeNote(QRect(100, 100, 99, 99), "a"), makeNote(QRect(500, 100, 99, 99), "b"),
                   makeNote(QRect(900, 100, 99, 99), "c")};
    const QVector<NoteRecord> all = m_stored[1];
    comment();
    QSignalSpy deletes(overlay(), &CNoteWidget::signal_deleteNoteInfo);
    drag(regionRect(1).center(), regionRect(1).center()); // its card is open
    QTest::keyClick(card(), Qt::Key_Delete);
    QCOMPARE(deletes.count(), 1);
    QCOMPARE(deletes.first().first().toInt(), 1);
    QVERIFY(!card()->isVisible());
    QCOMPARE(textsOf(m_stored[1]), (QStringList{QStringLiteral("a"), QStringLiteral("c")}));
    QCOMPARE(overlay()->regionCount(), 2);
    QCOMPARE(overlay()->region(1)->nId, 1); // numbered anew
    QCOMPARE(overlay()->region(1)->strText, QStringLiteral("c"));
    QVERIFY(m_pWidget->findChild<NoteUndoNotice *>()->isVisible());
    QTest::keyClick(overlay(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(textsOf(m_stored[1]), textsOf(all));
    QCOMPARE(m_stored[1].at(1).rect, all.at(1).rect);
    QTest::keyClick(overlay(), Qt::Key_Z, Qt::ControlModifier); // once
    QCOMPARE(requests(), 2);
    // Escape closes the card and leaves the note chosen.
    drag(regionRect(2).center(), regionRect(2).center());
    QTest::keyClick(card(), Qt::Key_Escape);
    QTest::keyClick(overlay(), Qt::Key_Delete);
    QCOMPARE(m_stored[1].size(), 2);
    QTest::mouseClick(m_pWidget->findChild<NoteUndoNotice *>()->findChild<QPushButton *>(), Qt::LeftButton);
    QCOMPARE(textsOf(m_stored[1]), textsOf(all));
    // The last note, then a new one under the same number.
    for (int i = 0; i < 3; ++i)
        m_pWidget->slot_deleteNoteInfo(0);
    m_pWidget->slot_deleteNoteInfo(0);
    QVERIFY(m_stored[1].isEmpty());
    drag(QPoint(200, 200), QPoint(300, 280));
    write(QStringLiteral("new"));
    pressSave();
    QCOMPARE(textsOf(m_stored[1]), QStringList(QStringLiteral("new")));
}

void tst_notes::keys()
{
    comment();
    const QPushButton *pComment = m_pWidget->findChild<ImgPreviewToolBar *>()->button(ImgPreviewToolBar::CommentButton);
    QVERIFY(pComment->isChecked());
    drag(QPoint(200, 200), QPoint(300, 280));
    QStringList order;
    for (int i = 0; i < 6; ++i) {
        QWidget *pFocus = card()->focusWidget();
        order.append(pFocus->accessibleName().isEmpty() ? QStringLiteral("Save") : pFocus->accessibleName());
        write(i == 0 ? QStringLiteral("x") : QString());
        QTest::keyClick(pFocus, Qt::Key_Tab);
    }
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("Comment Blue Orange Cyan Yellow Save"));
    // The preview's keys are the card's own while it is open.
    for (const auto key : {Qt::Key_Left, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Delete, Qt::Key_Tab}) {
        QKeyEvent event(QEvent::ShortcutOverride, key, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(textBox(), &event);
        QVERIFY2(event.isAccepted(), qPrintable(QString::number(key)));
    }
    QTest::keyClick(textBox(), Qt::Key_Escape);
    QVERIFY(!card()->isVisible() && overlay()->isVisible());
    QCOMPARE(overlay()->regionCount(), 0);
    // Neither a click in the tool bar nor leaving the mode takes the keys out of the preview.
    m_pWidget->setFocusPolicy(Qt::StrongFocus); // as the hub has it
    m_pWidget->activateWindow();
    QTRY_VERIFY(overlay()->hasFocus());
    QTest::mouseClick(m_pWidget->findChild<ImgPreviewToolBar *>()->button(ImgPreviewToolBar::FlipButton),
                      Qt::LeftButton);
    QVERIFY(overlay()->hasFocus());
    QTest::keyClick(overlay(), Qt::Key_Escape);
    QVERIFY(!overlay()->isVisible() && !pComment->isChecked());
    QVERIFY(m_pWidget->hasFocus());
    m_pWidget->slot_EditBtnClicked(); // on, not off again
    QVERIFY(overlay()->isVisible());
    QCOMPARE(requests(), 0);
}

/** Held outside the picture, a handle does not jump; pulled outwards, it stays at the edge. */
void tst_notes::handlesAtThePicturesEdge()
{
    m_stored[1] = {makeNote(QRect(1400, 800, 200, 200))};
    comment();
    const QRect before = regionRect();
    const QPoint grip = before.topLeft() + QPoint(before.width() + 5, before.height() + 5);
    drag(grip, grip + QPoint(1, 0));
    QCOMPARE(regionRect(), before);
    drag(grip, grip + QPoint(40, -10));
    QCOMPARE(regionRect(), before.adjusted(0, 0, 0, -10));
    // A click elsewhere keeps the new size; a drag that is broken off leaves no trace.
    drag(QPoint(10, 10), QPoint(10, 10));
    QCOMPARE(regionRect(), before.adjusted(0, 0, 0, -10));
    QCOMPARE(m_stored[1].first().rect, QRect(1400, 800, 200, 180));
    QTest::mousePress(overlay(), Qt::LeftButton, {}, regionRect().center());
    QTest::keyClick(overlay(), Qt::Key_Escape);
    QVERIFY(overlay()->region(0)->ptPress.isNull() && overlay()->region(0)->ptLast.isNull());
}

void tst_notes::keysChooseANote()
{
    comment();
    QTest::keyClick(overlay(), Qt::Key_Tab, Qt::ControlModifier); // no note yet
    for (const int nLeft : {100, 500, 900})
        m_stored[1].append(makeNote(QRect(nLeft, 100, 99, 99), QByteArray::number(nLeft).constData()));
    comment();
    QTest::keyClick(overlay(), Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyClick(overlay(), Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyClick(overlay(), Qt::Key_Delete);
    QCOMPARE(textsOf(m_stored[1]), (QStringList{QStringLiteral("100"), QStringLiteral("900")}));
    QTest::keyClick(overlay(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(overlay(), Qt::Key_Enter);
    QCOMPARE(textBox()->toPlainText(), QStringLiteral("900"));
    QTest::keyClick(textBox(), Qt::Key_Escape);
    QTest::keyClick(overlay(), Qt::Key_Delete);
    // Once more finds no note chosen, and is still no command to remove the file.
    QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Delete, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(overlay(), &event);
    QVERIFY(event.isAccepted());
    QTest::keyClick(overlay(), Qt::Key_Delete);
    QCOMPARE(textsOf(m_stored[1]), QStringList(QStringLiteral("100")));
}

void tst_notes::clickBesideTheCardSaves()
{
    comment();
    drag(QPoint(200, 200), QPoint(300, 280));
    drag(QPoint(500, 400), QPoint(500, 400)); // nothing was written
    QCOMPARE(overlay()->regionCount(), 0);
    drag(QPoint(200, 200), QPoint(300, 280));
    write(QStringLiteral("first"));
    drag(QPoint(500, 400), QPoint(600, 440));
    QCOMPARE(textsOf(m_stored[1]), QStringList(QStringLiteral("first")));
    write(QStringLiteral("second"));
    m_pWidget->slot_EditBtnClicked();
    QVERIFY(!overlay()->isVisible());
    QCOMPARE(textsOf(m_stored[1]), (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

void tst_notes::oddNotes_data()
{
    QTest::addColumn<QRect>("rect");
    constexpr int Most = std::numeric_limits<int>::max();
    constexpr int Least = std::numeric_limits<int>::min();
    QTest::newRow("outside") << QRect(5000, -3000, 10, 10);
    QTest::newRow("negative") << QRect(500, 400, -300, -200);
    QTest::newRow("zero") << QRect(500, 400, 0, 0);
    QTest::newRow("null") << QRect();
    QTest::newRow("huge") << QRect(QPoint(Least, Least), QPoint(Most, Most));
    QTest::newRow("far corner") << QRect(QPoint(100, 100), QPoint(Most, Most));
    QTest::newRow("backwards") << QRect(QPoint(Most, Most), QPoint(Least, Least));
    QTest::newRow("beyond") << QRect(QPoint(Most - 5, Most - 5), QPoint(Most, Most));
}

/** Each can be seen, rewritten where it is, moved back into the picture where it is movable at all, and deleted. */
void tst_notes::oddNotes()
{
    QFETCH(QRect, rect);
    m_stored[1] = {makeNote(rect)};
    comment();
    for (const char c : {'1', 'r', '-', 'm', 'f'})
        command(c);
    QVERIFY(overlay()->rect().intersects(overlay()->badgeRect(0)));
    QVERIFY(!overlay()->grab().isNull());
    QTest::mouseDClick(overlay(), Qt::LeftButton, {}, overlay()->badgeRect(0).center());
    QVERIFY(card()->isEditing());
    QVERIFY(overlay()->rect().contains(card()->geometry()));
    write(QStringLiteral("!"));
    pressSave();
    QCOMPARE(m_stored[1].first().text, QStringLiteral("note!"));
    QVERIFY(m_stored[1].first().rect == rect); // comparing by name would print sizes, which overflow
    const QPoint badge = overlay()->badgeRect(0).center();
    drag(badge, badge);
    QTest::keyClick(card(), Qt::Key_Delete);
    QVERIFY(m_stored[1].isEmpty());
}

void tst_notes::oddTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("html") << QStringLiteral("<b>bold</b><img src='file:///etc/passwd'>&amp;");
    QTest::newRow("long") << QString(100 * 1024, QLatin1Char('x'));
    QTest::newRow("many lines") << QStringLiteral("line\n").repeated(20000);
    QTest::newRow("right to left") << QString::fromUtf8("\u05e9\u05dc\u05d5\u05dd \u202e world");
    QTest::newRow("control") << QStringLiteral("a\x01\x07\x1b[31m b\ttab") + QChar(0) + QStringLiteral("end");
    QTest::newRow("separators") << QString::fromUtf8("a\u2028b\u00a0c\r\nd");
    QTest::newRow("surrogates") << QString(QChar(0xD83D)) + QString::fromUtf8(" \U0001F600");
}

/** Shown as it stands and stored unchanged where only the colour was changed. */
void tst_notes::oddTexts()
{
    QFETCH(QString, text);
    m_stored[1] = {{QRect(400, 300, 400, 200), Orange, text}};
    comment();
    drag(regionRect().center(), regionRect().center());
    const auto labels = card()->currentWidget()->findChildren<QLabel *>();
    const auto isText = [&text](const QLabel *pLabel) {
        return pLabel->text().startsWith(text.left(1));
    };
    const auto it = std::find_if(labels.cbegin(), labels.cend(), isText);
    QVERIFY(it != labels.cend());
    QCOMPARE((*it)->textFormat(), Qt::PlainText);
    QVERIFY(!(*it)->text().contains(QChar(7)) && !(*it)->text().contains(QChar(0)));
    QVERIFY(overlay()->rect().contains(card()->geometry()));
    card()->slot_switchToEdit();
    card()->findChildren<CColorPntBtn *>().first()->click();
    pressSave();
    QCOMPARE(m_stored[1].first().text, text);
    QCOMPARE(m_stored[1].first().value, 0xFF0000U);
}

void tst_notes::textSurvivesTheStep_data()
{
    QTest::addColumn<bool>("modifies");
    QTest::addColumn<Reply>("reply");
    QTest::addColumn<bool>("fails");
    QTest::addColumn<int>("notices");
    QTest::newRow("new note") << false << Reply::Queued << false << 1;
    QTest::newRow("rewritten note") << true << Reply::Queued << false << 1;
    QTest::newRow("file removed") << false << Reply::Never << false << 1;
    QTest::newRow("refused") << false << Reply::RefuseZero << true << 1;
    QTest::newRow("fails late") << false << Reply::OnDemand << true << 2; // "saved", and then the truth
    QTest::newRow("fails inside the request") << false << Reply::InsideRequest << true << 1;
}

/** As the surfaces step: the shared state turns first, then the widget is stopped. */
void tst_notes::textSurvivesTheStep()
{
    QFETCH(bool, modifies);
    QFETCH(Reply, reply);
    QFETCH(bool, fails);
    m_stored[1] = {makeNote(QRect(200, 200, 400, 200), "old")};
    m_stored[2] = {makeNote(QRect(1, 1, 50, 50), "other")};
    comment();
    if (modifies)
        QTest::mouseDClick(overlay(), Qt::LeftButton, {}, regionRect().center());
    else
        drag(QPoint(500, 300), QPoint(600, 340));
    write(QStringLiteral("typed"));
    host().desk.reply = reply;
    host().desk.response = fails ? FakeResponse::failure(5) : FakeResponse::success();
    if (reply == Reply::Never)
        host().removeFiles({1});
    QGuiApplication::clipboard()->clear();
    data()->setCurrentFile(2);
    m_pWidget->quitPreview();
    m_pWidget->clearPreview();
    QVERIFY(!overlay()->isVisible());
    QCOMPARE(requests(), 1);
    const ActionRequest request = host().desk.of(ActionKind::Comment).first();
    QCOMPARE(request.fileIds, QVector<qint64>{1});
    const QStringList expected = modifies ? QStringList(QStringLiteral("oldtyped"))
                                          : QStringList{QStringLiteral("old"), QStringLiteral("typed")};
    QCOMPARE(textsOf(request.notes), expected);
    if (reply == Reply::OnDemand) {
        m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
        finishWorkers();
        host().desk.answer(0, host().desk.response);
    }
    QCOMPARE(textsOf(m_stored[2]), QStringList(QStringLiteral("other")));
    QCOMPARE(textsOf(data()->noteList()), QStringList(QStringLiteral("other")));
    QCOMPARE(QGuiApplication::clipboard()->text(), fails ? QStringLiteral("typed") : QString());
    QTEST(notices(), "notices"); // the user is told
}

void tst_notes::hostsAnswers_data()
{
    QTest::addColumn<Reply>("reply");
    QTest::addColumn<bool>("fails");
    QTest::addColumn<int>("notices");
    QTest::newRow("at once") << Reply::InsideRequest << false << 0;
    QTest::newRow("queued") << Reply::Queued << false << 0;
    QTest::newRow("twice") << Reply::Twice << false << 0;
    QTest::newRow("late") << Reply::OnDemand << false << 0;
    QTest::newRow("never") << Reply::Never << false << 0;
    QTest::newRow("refused") << Reply::RefuseZero << false << 1;
    QTest::newRow("refused below 0") << Reply::RefuseNegative << false << 1;
    QTest::newRow("fails at once") << Reply::InsideRequest << true << 1;
    QTest::newRow("fails") << Reply::Queued << true << 1;
}

/** The note is seen on, also after a step away and back to an older record, and goes out with the next one. */
void tst_notes::hostsAnswers()
{
    QFETCH(Reply, reply);
    QFETCH(bool, fails);
    const bool bStores = !fails && reply != Reply::OnDemand && reply != Reply::Never;
    if (!bStores)
        host().desk.storeNotes = {};
    else
        host().desk.storeNotes = [this](qint64 nId, const QVector<NoteRecord> &notes) {
            m_stored[nId] = notes;
            refreshRecord(nId);
        };
    host().desk.reply = reply;
    if (fails)
        host().desk.response = FakeResponse::failure(5);
    comment();
    drag(QPoint(200, 200), QPoint(300, 280));
    write(QStringLiteral("one"));
    pressSave();
    QCOMPARE(overlay()->regionCount(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(overlay()->regionCount(), 1);
    QTEST(notices(), "notices");
    load(2);
    comment(1);
    QCOMPARE(overlay()->regionCount(), 1);
    drag(QPoint(400, 400), QPoint(500, 440));
    write(QStringLiteral("two"));
    pressSave();
    QCOMPARE(textsOf(host().desk.of(ActionKind::Comment).last().notes),
             (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    // A late answer to the older request says nothing of the newer one.
    if (reply == Reply::OnDemand) {
        host().desk.answer(0);
        QCoreApplication::processEvents();
        QCOMPARE(overlay()->regionCount(), 2);
    }
}

void tst_notes::hostsOwnListCounts()
{
    host().desk.reply = Reply::OnDemand;
    m_stored[1] = {makeNote(QRect(200, 200, 99, 99), "a"), makeNote(QRect(600, 200, 99, 99), "b")};
    comment();
    drag(regionRect(0).center(), regionRect(0).center() + QPoint(9, 9));
    // While the second note is being rewritten, the answer comes: the host has dropped the first and added one.
    QTest::mouseDClick(overlay(), Qt::LeftButton, {}, regionRect(1).center());
    write(QStringLiteral("!"));
    const NoteRecord kept = m_stored[1].at(1);
    m_stored[1] = {makeNote(QRect(1, 1, 9, 9), "host"), makeNote(QRect(3, 3, 9, 9), "more"), kept};
    refreshRecord(1);
    host().desk.answer(0);
    QCOMPARE(overlay()->regionCount(), 3);
    QVERIFY(card()->isEditing());
    QCOMPARE(textBox()->toPlainText(), QStringLiteral("b!"));
    pressSave();
    QCOMPARE(textsOf(m_stored[1]), (QStringList{QStringLiteral("host"), QStringLiteral("more"), QStringLiteral("b!")}));
    // The one being written is gone at the host: it is written anew.
    QTest::mouseDClick(overlay(), Qt::LeftButton, {}, regionRect(2).center());
    write(QStringLiteral("?"));
    m_stored[1].removeLast();
    refreshRecord(1);
    host().desk.answer(1);
    QCOMPARE(overlay()->regionCount(), 3);
    pressSave();
    QCOMPARE(textsOf(m_stored[1]).last(), QStringLiteral("b!?"));
    QCOMPARE(m_stored[1].size(), 3);
}

void tst_notes::fallbackPictures_data()
{
    QTest::addColumn<QString>("told"); // by whom: s: the source's header, t: the thumbnail's text
    QTest::addColumn<double>("factor");
    QTest::newRow("damaged source") << "s" << 8.0;
    QTest::newRow("thumbnail tells") << "t" << 8.0;
    QTest::newRow("nobody tells") << "" << 1.0;
}

/** Stored coordinates count pixels of the source, also where a smaller picture stands for it. */
void tst_notes::fallbackPictures()
{
    QFETCH(QString, told);
    QFETCH(double, factor);
    QTemporaryDir folder;
    QImage whole(1600, 800, QImage::Format_RGB32);
    whole.fill(Qt::red);
    QImage small = whole.scaled(200, 100);
    if (told.contains(QLatin1Char('t'))) {
        small.setText(QStringLiteral("Thumb::Image::Width"), QStringLiteral("1600"));
        small.setText(QStringLiteral("Thumb::Image::Height"), QStringLiteral("800"));
    }
    const auto pFile = host().addFile(1, Png, folder.filePath(QStringLiteral("source.png")));
    pFile->thumbnail = folder.filePath(QStringLiteral("thumb.png"));
    if (told.contains(QLatin1Char('s')))
        QVERIFY(whole.save(pFile->path));
    QVERIFY(small.save(pFile->thumbnail));
    FakePicture picture;
    picture.size = small.size();
    host().decoder.setPicture(pFile->thumbnail, picture); // the source cannot be decoded
    pFile->noteList = {makeNote(QRect(80, 40, 16, 8))};
    openFiles({1}, 1);
    m_pWidget->loadImage(pFile->path, 0, 1, 1.0, 0);
    finishWorkers();
    m_pWidget->showLoaded();
    m_pWidget->slot_EditBtnClicked();
    const auto shown = [&factor, this](const QRect &rect) {
        return NoteGeometry::normalised(
            onScreen(rect.left() / factor, rect.top() / factor),
            onScreen((rect.left() + rect.width()) / factor, (rect.top() + rect.height()) / factor));
    };
    QCOMPARE(regionRect(), shown(QRect(80, 40, 16, 8)));
    drag(QPoint(420, 305), QPoint(440, 320));
    write(QStringLiteral("x"));
    pressSave();
    QCOMPARE(shown(m_stored[1].last().rect), QRect(420, 305, 20, 15));
}

void tst_notes::placeholderTakesNoNotes()
{
    m_stored[1] = {makeNote(QRect(10, 10, 100, 100))};
    FakePicture broken;
    broken.opens = false;
    refreshRecord(1);
    host().decoder.setPicture(QStringLiteral("/1.png"), broken);
    openFiles({1}, 1);
    m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
    finishWorkers();
    m_pWidget->showLoaded();
    m_pWidget->slot_EditBtnClicked();
    QCOMPARE(notices(), 1);
    drag(QPoint(400, 300), QPoint(500, 400));
    drag(regionRect().center(), regionRect().center() + QPoint(50, 50));
    QCOMPARE(overlay()->regionCount(), 1);
    QCOMPARE(requests(), 0);
}

void tst_notes::showsTheNoteAskedFor()
{
    m_stored[1] = {makeNote(QRect(10, 10, 100, 100)), makeNote(QRect(1500, 900, 50, 50))};
    load(1);
    command('1');
    data()->noteStore()->requestShow(1, 1);
    QVERIFY(overlay()->isVisible());
    QVERIFY(overlay()->rect().contains(regionRect(1)));
    const QImage before = overlay()->grab().toImage();
    QTRY_VERIFY(overlay()->grab().toImage() != before);
    // Of a file that is not there yet, and of one that has no such note.
    m_stored[2] = {makeNote(QRect(10, 10, 100, 100))};
    data()->noteStore()->requestShow(2, 0);
    load(2);
    QVERIFY(overlay()->isVisible());
    m_pWidget->slot_EditBtnClicked();
    data()->noteStore()->requestShow(2, 7);
    QVERIFY(!overlay()->isVisible());
}

void tst_notes::paintsOnce()
{
    for (int i = 0; i < 50; ++i)
        m_stored[1].append(makeNote(QRect(i * 20, i * 15, 60, 40)));
    comment();
    QTest::qWait(200);
    const auto paintsOf = [this](const std::function<void()> &change) {
        PaintCounter paints(overlay());
        change();
        QTest::qWait(200); // the refresh after it changes nothing, and paints nothing
        return paints.count;
    };
    QCOMPARE(paintsOf([this] { turnWheel(overlay(), QPoint(300, 300)); }), 1);
    QCOMPARE(paintsOf([this] { m_pWidget->slot_HorizonalRotateBtnClicked(); }), 1);
    QCOMPARE(paintsOf([this] { drag(QPoint(400, 60), QPoint(420, 90), Qt::MiddleButton); }), 1);
    QCOMPARE(paintsOf([] {}), 0);
}

BIGIMGPREVIEW_TEST_MAIN(tst_notes)
#include "tst_notes.moc"
