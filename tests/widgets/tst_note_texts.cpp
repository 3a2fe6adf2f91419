#include "NotesTest.h"
#include "image/CColorPntBtn.h"
#include "image/NoteUndoNotice.h"

#include <QClipboard>
#include <QLabel>

/** What notes say: written, kept, deleted and taken back, whatever keys, steps and the host do meanwhile. */
class tst_note_texts : public NotesTest {
    Q_OBJECT

private Q_SLOTS:
    void deletesAndTakesBack()
    {
        m_stored[1] = {makeNote(QRect(100, 100, 99, 99), "a"), makeNote(QRect(500, 100, 99, 99), "b"),
                       makeNote(QRect(900, 100, 99, 99), "c")};
        const QVector<NoteRecord> all = m_stored[1];
        comment();
        QSignalSpy deletes(overlay(), &CNoteWidget::signal_deleteNoteInfo);
        clickOn(1); // its card is open
        QTest::keyClick(card(), Qt::Key_Delete);
        QCOMPARE(deletes.count(), 1);
        QCOMPARE(deletes.first().first().toInt(), 1);
        QVERIFY(!card()->isVisible());
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("a|c"));
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
        clickOn(2);
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
        makeNew(QPoint(200, 200), QPoint(300, 280), QStringLiteral("new"));
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("new"));
    }

    void keys()
    {
        comment();
        const QPushButton *pComment =
            m_pWidget->findChild<ImgPreviewToolBar *>()->button(ImgPreviewToolBar::CommentButton);
        QVERIFY(pComment->isChecked());
        drag(QPoint(200, 200), QPoint(300, 280));
        write(QStringLiteral("x"));
        // The preview's keys are the card's own while it is open.
        for (const auto key : {Qt::Key_Left, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Delete, Qt::Key_Tab})
            QVERIFY2(takesKey(textBox(), key), qPrintable(QString::number(key)));
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

    void keysChooseANote()
    {
        comment();
        const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(overlay(), key, modifiers);
        };
        press(Qt::Key_Tab, Qt::ControlModifier); // no note yet
        for (const int nLeft : {100, 500, 900})
            m_stored[1].append(makeNote(QRect(nLeft, 100, 99, 99), QByteArray::number(nLeft).constData()));
        comment();
        press(Qt::Key_Tab, Qt::ControlModifier);
        press(Qt::Key_Tab, Qt::ControlModifier);
        press(Qt::Key_Delete);
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("100|900"));
        press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        press(Qt::Key_Enter);
        QCOMPARE(textBox()->toPlainText(), QStringLiteral("900"));
        QTest::keyClick(textBox(), Qt::Key_Escape);
        press(Qt::Key_Delete);
        // Once more finds no note chosen, and is still no command to remove the file.
        QVERIFY(takesKey(overlay(), Qt::Key_Delete));
        press(Qt::Key_Delete);
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("100"));
    }

    void clickBesideTheCardSaves()
    {
        comment();
        drag(QPoint(200, 200), QPoint(300, 280));
        drag(QPoint(500, 400), QPoint(500, 400)); // nothing was written
        QCOMPARE(overlay()->regionCount(), 0);
        drag(QPoint(200, 200), QPoint(300, 280));
        write(QStringLiteral("first"));
        drag(QPoint(500, 400), QPoint(600, 440));
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("first"));
        write(QStringLiteral("second"));
        m_pWidget->slot_EditBtnClicked();
        QVERIFY(!overlay()->isVisible());
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("first|second"));
    }

    void oddTexts_data()
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
    void oddTexts()
    {
        QFETCH(QString, text);
        m_stored[1] = {{QRect(400, 300, 400, 200), Orange, text}};
        comment();
        clickOn(0);
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

    void textSurvivesTheStep_data()
    {
        const auto row = columns<bool, Reply, bool, int>("modifies", "reply", "fails", "notices");
        row("new note", false, Reply::Queued, false, 1);
        row("rewritten note", true, Reply::Queued, false, 1);
        row("file removed", false, Reply::Never, false, 1);
        row("refused", false, Reply::RefuseZero, true, 1);
        row("fails late", false, Reply::OnDemand, true, 2); // "saved", and then the truth
        row("fails inside the request", false, Reply::InsideRequest, true, 1);
    }

    /** As the surfaces step: the shared state turns first, then the widget is stopped. */
    void textSurvivesTheStep()
    {
        const auto [modifies, reply, fails, nNotices] = currentRow<bool, Reply, bool, int>();
        m_stored[1] = {makeNote(QRect(200, 200, 400, 200), "old")};
        m_stored[2] = {makeNote(QRect(1, 1, 50, 50), "other")};
        comment();
        if (modifies)
            rewrite(0);
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
        const QString expected = modifies ? QStringLiteral("oldtyped") : QStringLiteral("old|typed");
        QCOMPARE(textsOf(request.notes), expected);
        if (reply == Reply::OnDemand) {
            m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
            finishWorkers();
            host().desk.answer(0, host().desk.response);
        }
        QCOMPARE(textsOf(m_stored[2]), QStringLiteral("other"));
        QCOMPARE(textsOf(data()->noteList()), QStringLiteral("other"));
        QCOMPARE(QGuiApplication::clipboard()->text(), fails ? QStringLiteral("typed") : QString());
        QCOMPARE(notices(), nNotices); // the user is told
    }

    void hostsAnswers_data()
    {
        const auto row = columns<Reply, bool, int>("reply", "fails", "notices");
        row("at once", Reply::InsideRequest, false, 0);
        row("queued", Reply::Queued, false, 0);
        row("twice", Reply::Twice, false, 0);
        row("late", Reply::OnDemand, false, 0);
        row("never", Reply::Never, false, 0);
        row("refused", Reply::RefuseZero, false, 1);
        row("refused below 0", Reply::RefuseNegative, false, 1);
        row("fails at once", Reply::InsideRequest, true, 1);
        row("fails", Reply::Queued, true, 1);
    }

    /** The note is seen on, also after a step away and back to an older record, and goes out with the next one. */
    void hostsAnswers()
    {
        const auto [reply, fails, nNotices] = currentRow<Reply, bool, int>();
        host().desk.storeNotes = {};
        if (!fails && reply != Reply::OnDemand && reply != Reply::Never)
            host().desk.storeNotes = [this](qint64 nId, const QVector<NoteRecord> &notes) {
                m_stored[nId] = notes;
                refreshRecord(nId);
            };
        host().desk.reply = reply;
        if (fails)
            host().desk.response = FakeResponse::failure(5);
        comment();
        makeNew(QPoint(200, 200), QPoint(300, 280), QStringLiteral("one"));
        QCOMPARE(overlay()->regionCount(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(overlay()->regionCount(), 1);
        QCOMPARE(notices(), nNotices);
        load(2);
        comment(1);
        QCOMPARE(overlay()->regionCount(), 1);
        makeNew(QPoint(400, 400), QPoint(500, 440), QStringLiteral("two"));
        QCOMPARE(textsOf(host().desk.of(ActionKind::Comment).last().notes), QStringLiteral("one|two"));
        // A late answer to the older request says nothing of the newer one.
        if (reply == Reply::OnDemand) {
            host().desk.answer(0);
            QCoreApplication::processEvents();
            QCOMPARE(overlay()->regionCount(), 2);
        }
    }

    void hostsOwnListCounts()
    {
        host().desk.reply = Reply::OnDemand;
        m_stored[1] = {makeNote(QRect(200, 200, 99, 99), "a"), makeNote(QRect(600, 200, 99, 99), "b")};
        comment();
        drag(regionRect(0).center(), regionRect(0).center() + QPoint(9, 9));
        // While the second note is being rewritten, the answer comes: the host has dropped the first and added one.
        rewrite(1);
        write(QStringLiteral("!"));
        const NoteRecord kept = m_stored[1].at(1);
        m_stored[1] = {makeNote(QRect(1, 1, 9, 9), "host"), makeNote(QRect(3, 3, 9, 9), "more"), kept};
        refreshRecord(1);
        host().desk.answer(0);
        QCOMPARE(overlay()->regionCount(), 3);
        QVERIFY(card()->isEditing());
        QCOMPARE(textBox()->toPlainText(), QStringLiteral("b!"));
        pressSave();
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("host|more|b!"));
        // The one being written is gone at the host: it is written anew.
        rewrite(2);
        write(QStringLiteral("?"));
        m_stored[1].removeLast();
        refreshRecord(1);
        host().desk.answer(1);
        QCOMPARE(overlay()->regionCount(), 3);
        pressSave();
        QCOMPARE(textsOf(m_stored[1]), QStringLiteral("host|more|b!?"));
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_note_texts)
#include "tst_note_texts.moc"
