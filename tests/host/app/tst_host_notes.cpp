#include "LibraryFixture.h"
#include "app/NotesList.h"

namespace {

NoteRecord makeNote(const QString &text, quint32 nValue = 0x0064FA)
{
    return {QRect(1, 2, 30, 40), nValue, text};
}

} // namespace

/** The list of a file's notes and their number in the grid. */
class HostNotesTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void listsAndFollows();
    void showsTextsAsTheyStand();

protected:
    void init() override
    {
        LoggedTest::init();
        m_place = std::make_unique<LibraryFixture>();
        m_place->write(QStringLiteral("a.jpg"));
        m_place->write(QStringLiteral("b.jpg"));
        m_place->open();
    }
    void cleanup() override
    {
        m_place.reset();
        LoggedTest::cleanup();
    }

private:
    qint64 id(const char *pName) const { return m_place->id(QLatin1String(pName)); }
    void store(qint64 nFileId, const QVector<NoteRecord> &notes)
    {
        QSignalSpy stored(m_place->library.get(), &Library::signalNotesStored);
        m_place->library->setNotes(nFileId, notes);
        QTRY_COMPARE(stored.size(), 1);
    }

    std::unique_ptr<LibraryFixture> m_place;
};

void HostNotesTest::listsAndFollows()
{
    QWidget panel;
    NotesList list(m_place->library.get(), &panel);
    panel.show();
    list.setFile(id("a.jpg"));
    QVERIFY(list.isHidden());
    store(id("b.jpg"), {makeNote(QStringLiteral("of another file"))});
    QCOMPARE(list.count(), 0);
    store(id("a.jpg"), {makeNote(QStringLiteral("one")), makeNote(QStringLiteral("two"))});
    QCOMPARE(list.count(), 2);
    QVERIFY(list.isVisible());
    QSignalSpy activated(&list, &NotesList::signalNoteActivated);
    list.resize(200, 100);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(1)).center());
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.first(), (QVariantList{id("a.jpg"), 1}));
    store(id("a.jpg"), {makeNote(QStringLiteral("two"))});
    QCOMPARE(list.count(), 1);
    QCOMPARE(list.item(0)->text(), QStringLiteral("two"));
    list.setFile(id("b.jpg"));
    QCOMPARE(list.item(0)->text(), QStringLiteral("of another file"));
    list.setFile(0);
    QVERIFY(list.isHidden());
    // As high as its notes, but not for all of them.
    store(id("a.jpg"), QVector<NoteRecord>(500, makeNote(QStringLiteral("x"))));
    list.setFile(id("a.jpg"));
    QCOMPARE(list.count(), 500);
    QVERIFY(list.sizeHint().height() < 300);
}

void HostNotesTest::showsTextsAsTheyStand()
{
    const std::pair<QString, QString> rows[] = {{QStringLiteral("<b>a</b>"), QStringLiteral("<b>a</b>")},
                                                {QStringLiteral("a\n\n  b\tc"), QStringLiteral("a b c")},
                                                {QString(100 * 1024, QLatin1Char('x')), QString(200, QLatin1Char('x'))},
                                                {QString(), QString()}};
    for (const auto &row : rows) {
        store(id("a.jpg"), {makeNote(row.first)});
        NotesList list(m_place->library.get());
        list.setFile(id("a.jpg"));
        QCOMPARE(list.item(0)->text(), row.second);
        QVERIFY(!list.item(0)->toolTip().contains(QLatin1String("<b>")));
        QVERIFY(list.item(0)->toolTip().size() < 8000);
    }
}

BIGIMGPREVIEW_TEST_MAIN(HostNotesTest)
#include "tst_host_notes.moc"
