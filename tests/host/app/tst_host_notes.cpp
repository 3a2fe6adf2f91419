#include "TestMain.h"
#include "app/NoteCountBadge.h"
#include "app/NotesList.h"
#include "library/Library.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>

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
    void showsTextsAsTheyStand_data();
    void showsTextsAsTheyStand();
    void countsInTheGrid_data();
    void countsInTheGrid();

protected:
    void init() override
    {
        LoggedTest::init();
        m_pFolder = std::make_unique<QTemporaryDir>();
        const QString files = m_pFolder->filePath(QStringLiteral("files"));
        QVERIFY(QDir().mkpath(files));
        for (const char *pName : {"a.jpg", "b.jpg"}) {
            QFile file(files + QLatin1Char('/') + QLatin1String(pName));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("x");
        }
        m_pLibrary = std::make_unique<Library>();
        connect(m_pLibrary.get(), &Library::signalRecords, this, [this](const FileRecordList &records) {
            for (const FileRecordPtr &pRecord : records)
                m_ids[pRecord->fileName()] = pRecord->fileId();
        });
        m_pLibrary->open(m_pFolder->filePath(QStringLiteral("library.db")));
        QSignalSpy ends(m_pLibrary.get(), &Library::signalScanEnded);
        m_pLibrary->showFolders({files});
        QTRY_VERIFY(!ends.isEmpty());
        QCOMPARE(m_ids.size(), 2);
    }
    void cleanup() override
    {
        m_pLibrary.reset();
        m_pFolder.reset();
        m_ids.clear();
        LoggedTest::cleanup();
    }

private:
    qint64 id(const char *pName) const { return m_ids.value(QLatin1String(pName)); }
    void store(qint64 nFileId, const QVector<NoteRecord> &notes)
    {
        QSignalSpy stored(m_pLibrary.get(), &Library::signalNotesStored);
        m_pLibrary->setNotes(nFileId, notes);
        QTRY_COMPARE(stored.size(), 1);
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<Library> m_pLibrary;
    QMap<QString, qint64> m_ids;
};

void HostNotesTest::listsAndFollows()
{
    QWidget panel;
    NotesList list(m_pLibrary.get(), &panel);
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

void HostNotesTest::showsTextsAsTheyStand_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("html") << QStringLiteral("<b>a</b>") << QStringLiteral("<b>a</b>");
    QTest::newRow("lines") << QStringLiteral("a\n\n  b\tc") << QStringLiteral("a b c");
    QTest::newRow("long") << QString(100 * 1024, QLatin1Char('x')) << QString(200, QLatin1Char('x'));
    QTest::newRow("empty") << QString() << QString();
}

void HostNotesTest::showsTextsAsTheyStand()
{
    QFETCH(QString, text);
    store(id("a.jpg"), {makeNote(text)});
    NotesList list(m_pLibrary.get());
    list.setFile(id("a.jpg"));
    QTEST(list.item(0)->text(), "line");
    QVERIFY(!list.item(0)->toolTip().contains(QLatin1String("<b>")));
    QVERIFY(list.item(0)->toolTip().size() < 8000);
}

void HostNotesTest::countsInTheGrid_data()
{
    QTest::addColumn<int>("notes");
    QTest::addColumn<bool>("marked");
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("many") << 123456 << true;
}

void HostNotesTest::countsInTheGrid()
{
    QFETCH(int, notes);
    QImage image(168, 128, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    const QImage before = image;
    QPainter painter(&image);
    NoteCountBadge::paint(&painter, image.rect(), notes);
    painter.end();
    QTEST(image != before, "marked");
    QCOMPARE(image.copy(0, 0, 84, 128), before.copy(0, 0, 84, 128)); // in its corner
}

BIGIMGPREVIEW_TEST_MAIN(HostNotesTest)
#include "tst_host_notes.moc"
