#include "NotesTest.h"
#include "image/CColorPntBtn.h"

/** Where notes lie: drawn, moved and resized on the screen, and stored by the pixels of the picture. */
class tst_notes : public NotesTest {
    Q_OBJECT

private Q_SLOTS:
    void drawing_data()
    {
        // expected: invalid: no note
        const auto row = columns<QPoint, QPoint, QRect>("from", "to", "expected");
        const QRect none(0, 0, -1, -1);
        const QPoint at(300, 250);
        row("click", at, at, none);
        row("one wide", at, at + QPoint(1, 40), none);
        row("one high", at, at + QPoint(40, -1), none);
        row("two by two", at, at + QPoint(2, 2), QRect(at, QSize(2, 2)));
        row("backwards", at, at - QPoint(60, 40), QRect(240, 210, 60, 40));
        row("beside the picture", QPoint(400, 20), QPoint(500, 40), none); // 800 x 500 in the middle
        row("out of the picture", QPoint(700, 500), QPoint(760, 590), QRect(700, 500, 60, 50));
    }

    void drawing()
    {
        const auto [from, to, expected] = currentRow<QPoint, QPoint, QRect>();
        comment();
        QSignalSpy saves(overlay(), &CNoteWidget::signal_saveNoteInfo);
        drag(from, to);
        QCOMPARE(overlay()->regionCount(), expected.isValid() ? 1 : 0);
        QCOMPARE(card()->isVisible(), expected.isValid());
        QCOMPARE(requests(), 0);
        if (!expected.isValid())
            return;
        QCOMPARE(regionRect(), expected);
        QVERIFY(card()->isEditing());
        QVERIFY(!card()->geometry().intersects(regionRect()));
        pressSave(); // nothing written
        QCOMPARE(saves.count(), 0);
        save(QStringLiteral("words"));
        QCOMPARE(saves.count(), 1);
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("words"));
        QCOMPARE(m_stored[1].first().value, Orange);
        QVERIFY(!card()->isVisible());
    }

    void storesPicturePixels_data()
    {
        const auto row = columns<QString, QString>("before", "after"); // the note is drawn
        row("upright", "", "1+-wfooo1dd");
        row("actual size, resized", "1", "ss");
        row("turned", "r", "+os");
        row("flipped", "m", "rrrrmrmmr");
        row("both", "mr", "1do");
        row("three quarters", "rrr", "f");
        row("zoomed, mode off and on", "+", "crcmc");
        row("far in", "1++", "-");
        row("by the wheel", "oooo", "f");
        row("dragged, to nothing", "d", "--------++");
        row("of everything", "rd+s", "mrr1");
    }

    /**
     * The note lies where it was drawn, is stored by the pixels beneath, stays on them whatever is done to the picture,
     * and is there again on the untouched one.
     */
    void storesPicturePixels()
    {
        const auto [before, after] = currentRow<QString, QString>();
        const QRect corner(0, 0, 300, 150);
        m_stored[1] = {makeNote(corner)};
        load(1);
        for (const QChar c : before) {
            if (c != QLatin1Char('d'))
                command(c.toLatin1());
        }
        m_pWidget->slot_EditBtnClicked();
        if (before.contains(QLatin1Char('d')))
            command('d');
        const QPoint from(310, 240), to(390, 300);
        makeNew(from, to, QStringLiteral("a"));
        QCOMPARE(m_stored[1].size(), 2);
        const QRect rect = m_stored[1].last().rect;
        const auto pixel = [this](const QPoint &viewPoint) {
            const QPointF point = item()->toPicturePixels(item()->mapFromScene(view()->mapToScene(viewPoint)));
            return QPoint(int(point.x() + 1e-6), int(point.y() + 1e-6));
        };
        QCOMPARE(rect.topLeft(), pixel(from));
        QCOMPARE(QPoint(rect.left() + rect.width(), rect.top() + rect.height()), pixel(to));
        QVERIFY((regionRect(1).topLeft() - from).manhattanLength() <= 8); // a pixel at 800 % is large
        for (const QChar c : after) {
            command(c.toLatin1());
            if (overlay()->isVisible()) {
                QCOMPARE(regionRect(0), onScreen(corner));
                QCOMPARE(regionRect(1), onScreen(rect));
            }
            QCOMPARE(overlay()->size(), view()->size());
        }
        QCOMPARE(requests(), 1);
        load(1);
        m_pWidget->slot_EditBtnClicked();
        QCOMPARE(regionRect(1), onScreen(rect));
    }

    void moveIsSavedAtOnce()
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

    void handles_data()
    {
        const auto row = columns<int, QRect, int>("handle", "expected", "cursor");
        const QRect at(200, 200, 100, 80);
        row("top left", NoteGeometry::TopLeft, at.adjusted(10, 6, 0, 0), Qt::SizeFDiagCursor);
        row("bottom right", NoteGeometry::BottomRight, at.adjusted(0, 0, 10, 6), Qt::SizeFDiagCursor);
        row("top", NoteGeometry::Top, at.adjusted(0, 6, 0, 0), Qt::SizeVerCursor);
        row("bottom", NoteGeometry::Bottom, at.adjusted(0, 0, 0, 6), Qt::SizeVerCursor);
    }

    void handles()
    {
        const auto [handle, expected, cursor] = currentRow<int, QRect, int>();
        m_stored[1] = {makeNote(QRect(0, 0, 10, 10))};
        comment();
        makeNew(QPoint(200, 200), QPoint(300, 280), QStringLiteral("x"));
        const QRect before = m_stored[1].last().rect;
        const QPoint grip = overlay()->region(1)->handles[size_t(handle)].center();
        QMouseEvent hover(QEvent::MouseMove, grip, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(overlay(), &hover);
        QCOMPARE(int(overlay()->cursor().shape()), cursor);
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
    void rewritingMovesNothing()
    {
        const QVector<QRect> rects = {QRect(203, 107, 311, 153), QRect(511, 402, -37, 91)};
        m_stored[1] = {makeNote(rects.at(0)), makeNote(rects.at(1))};
        comment();
        for (const char *pCommands : {"", "r", "----"}) {
            for (const char *pCommand = pCommands; *pCommand != '\0'; ++pCommand)
                command(*pCommand);
            for (int i = 0; i < 2; ++i) {
                rewrite(i);
                QVERIFY(card()->isEditing());
                card()->findChildren<CColorPntBtn *>().at(2)->click();
                save(QStringLiteral("!"));
                QCOMPARE(m_stored[1].at(i).rect, rects.at(i));
                QCOMPARE(m_stored[1].at(i).value, 0xFFFF00U);
            }
        }
    }

    /** Held outside the picture, a handle does not jump; pulled outwards, it stays at the edge. */
    void handlesAtThePicturesEdge()
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

    void oddNotes_data()
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
    void oddNotes()
    {
        QFETCH(QRect, rect);
        m_stored[1] = {makeNote(rect)};
        comment();
        for (const char c : {'1', 'r', '-', 'm', 'f'})
            command(c);
        QVERIFY(overlay()->rect().intersects(overlay()->badgeRect(0)));
        QVERIFY(!overlay()->grab().isNull());
        rewrite(0);
        QVERIFY(card()->isEditing());
        QVERIFY(overlay()->rect().contains(card()->geometry()));
        save(QStringLiteral("!"));
        QCOMPARE(m_stored[1].first().text, QStringLiteral("note!"));
        QVERIFY(m_stored[1].first().rect == rect); // comparing by name would print sizes, which overflow
        const QPoint badge = overlay()->badgeRect(0).center();
        drag(badge, badge);
        QTest::keyClick(card(), Qt::Key_Delete);
        QVERIFY(m_stored[1].isEmpty());
    }

    void fallbackPictures_data()
    {
        // told: by whom: s: the source's header, t: the thumbnail's text
        const auto row = columns<QString, double>("told", "factor");
        row("damaged source", "s", 8.0);
        row("thumbnail tells", "t", 8.0);
        row("nobody tells", "", 1.0);
    }

    /** Stored coordinates count pixels of the source, also where a smaller picture stands for it. */
    void fallbackPictures()
    {
        const auto [told, factor] = currentRow<QString, double>();
        QTemporaryDir folder;
        const QImage whole = plainImage(QSize(1600, 800), Qt::red);
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
        showCurrent();
        m_pWidget->slot_EditBtnClicked();
        const auto shown = [fTimes = factor, this](const QRect &rect) {
            return NoteGeometry::normalised(
                onScreen(rect.left() / fTimes, rect.top() / fTimes),
                onScreen((rect.left() + rect.width()) / fTimes, (rect.top() + rect.height()) / fTimes));
        };
        QCOMPARE(regionRect(), shown(QRect(80, 40, 16, 8)));
        makeNew(QPoint(420, 305), QPoint(440, 320), QStringLiteral("x"));
        QCOMPARE(shown(m_stored[1].last().rect), QRect(420, 305, 20, 15));
    }

    void placeholderTakesNoNotes()
    {
        m_stored[1] = {makeNote(QRect(10, 10, 100, 100))};
        load(1, false);
        m_pWidget->slot_EditBtnClicked();
        QCOMPARE(notices(), 1);
        drag(QPoint(400, 300), QPoint(500, 400));
        drag(regionRect().center(), regionRect().center() + QPoint(50, 50));
        QCOMPARE(overlay()->regionCount(), 1);
        QCOMPARE(requests(), 0);
    }

    void showsTheNoteAskedFor()
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

    void paintsOnce()
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
};

BIGIMGPREVIEW_TEST_MAIN(tst_notes)
#include "tst_notes.moc"
