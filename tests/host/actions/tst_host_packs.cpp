#include "ActionStage.h"
#include "TestMain.h"

#include <QImage>

#include <archive.h>
#include <archive_entry.h>
#include <functional>

namespace {

/** One thing in a pack that somebody made up. */
struct Entry {
    QByteArray name;
    QByteArray content;
    QByteArray link; ///< Not empty: a symbolic link to this.
    qint64 nZeros = 0;
};

bool makePack(const QString &path, const QVector<Entry> &entries)
{
    const std::unique_ptr<struct archive, int (*)(struct archive *)> pArchive(::archive_write_new(),
                                                                              &::archive_write_free);
    ::archive_write_set_format_zip(pArchive.get());
    if (::archive_write_open_filename(pArchive.get(), QFile::encodeName(path).constData()) != ARCHIVE_OK)
        return false;
    for (const Entry &entry : entries) {
        const std::unique_ptr<struct archive_entry, decltype(&::archive_entry_free)> pHeader(::archive_entry_new(),
                                                                                             &::archive_entry_free);
        ::archive_entry_set_pathname(pHeader.get(), entry.name.constData());
        ::archive_entry_set_filetype(pHeader.get(), entry.link.isEmpty() ? AE_IFREG : AE_IFLNK);
        if (!entry.link.isEmpty())
            ::archive_entry_set_symlink(pHeader.get(), entry.link.constData());
        ::archive_entry_set_perm(pHeader.get(), 0777);
        ::archive_entry_set_size(pHeader.get(), entry.content.size() + entry.nZeros);
        if (::archive_write_header(pArchive.get(), pHeader.get()) < ARCHIVE_WARN)
            return false;
        ::archive_write_data(pArchive.get(), entry.content.constData(), size_t(entry.content.size()));
        const QByteArray zeros(1 << 20, '\0');
        for (qint64 nLeft = entry.nZeros; nLeft > 0; nLeft -= zeros.size())
            ::archive_write_data(pArchive.get(), zeros.constData(), size_t(qMin<qint64>(nLeft, zeros.size())));
    }
    return ::archive_write_close(pArchive.get()) == ARCHIVE_OK;
}

QJsonObject listed(const QString &entry, const QString &name, qint64 nSize)
{
    return {{QStringLiteral("entry"), entry},       {QStringLiteral("name"), name},
            {QStringLiteral("size"), nSize},        {QStringLiteral("modified"), 0},
            {QStringLiteral("mode"), 0777},         {QStringLiteral("labels"), QJsonArray()},
            {QStringLiteral("notes"), QJsonArray()}};
}

QByteArray manifest(const QVector<QJsonObject> &files, const QString &format = QStringLiteral("bigimgpreview-pack"))
{
    QJsonArray list;
    for (const QJsonObject &file : files)
        list.append(file);
    return QJsonDocument(QJsonObject{{QStringLiteral("format"), format},
                                     {QStringLiteral("version"), 1},
                                     {QStringLiteral("files"), list}})
        .toJson();
}

QJsonObject with(QJsonObject object, const char *key, const QJsonValue &value)
{
    object.insert(QLatin1String(key), value);
    return object;
}

} // namespace

Q_DECLARE_METATYPE(QVector<Entry>)

/** Library packs: nothing is lost on the way through one, and one made by somebody else does no harm. */
class HostPacksTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void losesNothing()
    {
        const QByteArray many(3000000, 'y');
        const QMap<QString, QByteArray> files = {
            {QStringLiteral("photo.jpg"), many},
            {QStringLiteral("a\nb \"%1\" <i>.psd"), many},
            {QString(QString(83, QChar(0x5B57)) + QStringLiteral("ab.txt")), "text"},
            {QStringLiteral("aux.txt"), "device elsewhere"},
            {QStringLiteral("a\\b.txt"), "backslash"},
            {QStringLiteral("empty.txt"), ""}};
        ActionStage stage;
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            stage.write(file.key(), file.value());
        QDir(stage.filesFolder()).mkdir(QStringLiteral("other"));
        stage.write(QStringLiteral("other/PHOTO.jpg"), "another photo");
        QFile odd(stage.filesFolder() + QStringLiteral("/odd"));
        QVERIFY(odd.open(QIODevice::WriteOnly));
        QVERIFY(odd.setFileTime(QDateTime::fromMSecsSinceEpoch(981173106123), QFileDevice::FileModificationTime));
        odd.close();
        QVERIFY(stage.open());
        const qint64 nPhoto = stage.id(QStringLiteral("photo.jpg"));
        const QVector<NoteRecord> notes = {{QRect(1, 2, 30, 40), 0xFF8800, QStringLiteral("a \u5B57 \"note\"\n")},
                                           {QRect(-5, 0, 7, 8), 0, QString()}};
        stage.library->setNotes(nPhoto, notes);
        stage.library->addLabels({nPhoto}, {TagRecordPtr(new TagRecord{0, QStringLiteral("label, one")}),
                                            TagRecordPtr(new TagRecord{0, QStringLiteral("\u7B2C\u4E8C")})});
        const QImage cover = plainImage(QSize(50, 40), QColor(0, 255, 0, 128), QImage::Format_ARGB32);
        QVERIFY(cover.save(stage.path(QStringLiteral("cover.png"))));
        QCOMPARE(stage.setCover(nPhoto, stage.path(QStringLiteral("cover.png")))->returnCode(), 0);
        const QString pack = stage.path(QStringLiteral("my pack.MORAYPack"));
        const ResponseInfoPtr pAnswer = stage.exportTo(pack, stage.allIds(), true);
        QVERIFY2(pAnswer->returnCode() == 0, qPrintable(pAnswer->errorMessage()));

        ActionStage other;
        QVERIFY(other.open());
        QString error;
        const QString folder = other.import(pack, other.target(), &error);
        QCOMPARE(error, QString());
        QCOMPARE(folder, other.target() + QStringLiteral("/my pack"));
        QVERIFY(other.show(folder));
        QCOMPARE(other.library->count(), files.size() + 2);
        for (auto file = files.cbegin(); file != files.cend(); ++file)
            QCOMPARE(readFile(folder + QLatin1Char('/') + file.key()), file.value());
        // Names that differ by case alone could not stand beside each other everywhere.
        const bool bFirst = other.record(QStringLiteral("photo.jpg")) != nullptr;
        const FileRecordPtr pPhoto =
            other.record(bFirst ? QStringLiteral("photo.jpg") : QStringLiteral("photo (1).jpg"));
        QVERIFY(pPhoto != nullptr);
        QCOMPARE(pPhoto->notes().size(), notes.size());
        for (int i = 0; i < notes.size(); ++i) {
            QCOMPARE(pPhoto->notes().at(i).rect, notes.at(i).rect);
            QCOMPARE(pPhoto->notes().at(i).value, notes.at(i).value);
            QCOMPARE(pPhoto->notes().at(i).text, notes.at(i).text.isNull() ? QStringLiteral("") : notes.at(i).text);
        }
        QStringList labels;
        for (const TagRecordPtr &pLabel : pPhoto->tags())
            labels.append(pLabel->name);
        QCOMPARE(labels, (QStringList{QStringLiteral("label, one"), QStringLiteral("\u7B2C\u4E8C")}));
        QCOMPARE(QImage(pPhoto->coverPath()).pixelColor(3, 3), QColor(0, 255, 0, 128));
        QCOMPARE(QFileInfo(folder + QStringLiteral("/odd")).lastModified().toMSecsSinceEpoch(), 981173106123);
        // The same pack again stands beside the first.
        QCOMPARE(other.import(pack, other.target(), &error), other.target() + QStringLiteral("/my pack (1)"));
        QCOMPARE(ActionStage::namesIn(other.library->unfinishedFolder()), QStringList());
    }

    void replacesOnlyWhatWasAsked()
    {
        ActionStage stage;
        stage.write(QStringLiteral("a.jpg"));
        QVERIFY(stage.open());
        const QString old = stage.target() + QStringLiteral("/x.MORAYPack");
        QVERIFY(writeFile(old, "old"));
        // The dialog asked before it gave out the name of a pack that is there; the suffix is ours to add.
        QCOMPARE(stage.exportTo(stage.target() + QStringLiteral("/x"), stage.allIds(), true)->returnCode(), 0);
        QCOMPARE(readFile(old), QByteArray("old"));
        QVERIFY(QFile::exists(stage.target() + QStringLiteral("/x (1).MORAYPack")));
        QCOMPARE(stage.exportTo(old, stage.allIds(), true)->returnCode(), 0);
        QVERIFY(readFile(old).startsWith("PK"));
    }

    void refusesHostilePacks_data()
    {
        const auto row = columns<QVector<Entry>, QString>("entries", "reason");
        const QString entryName = QStringLiteral("files/a.jpg");
        const QJsonObject good = listed(entryName, QStringLiteral("a.jpg"), 4);
        const Entry file{"files/a.jpg", "data", {}, 0};
        const auto list = [](const QVector<QJsonObject> &files) {
            return Entry{"manifest.json", manifest(files), {}, 0};
        };
        row("good", {file, list({good})}, "");
        for (const char *pName : {"../evil", "files/../../evil", "files/..\\..\\evil", "files/.."})
            row(pName, {file, list({good}), {pName, "x", {}, 0}}, "leads out");
        for (const char *pName : {"/tmp/evil", "C:/evil", "\\\\server\\evil", "C:evil"})
            row(pName, {file, list({good}), {pName, "x", {}, 0}}, "absolute");
        for (const char *pName : {"files/NUL", "files/con.jpg", "files/Lpt1 .txt"})
            row(pName, {file, list({good}), {pName, "x", {}, 0}}, "device");
        row("link", {file, list({good}), {"files/link", {}, "/etc/passwd", 0}}, "link");
        row("two of a name", {file, file, list({good})}, "two files");
        row("two by case", {file, {"files/A.JPG", "data", {}, 0}, list({good})}, "two files");
        row("two lists", {file, list({good}), list({good})}, "two files");
        row("bomb", {file, list({good}), {"files/bomb", {}, {}, qint64(1200) << 20}}, "honestly");
        row("bomb as list", {file, {"manifest.json", {}, {}, qint64(100) << 20}}, "more than it says");
        row("no list", {file}, "no list");
        row("no JSON", {file, {"manifest.json", "{\"format\":", {}, 0}}, "damaged");
        row("deep JSON", {file, {"manifest.json", QByteArray(100000, '['), {}, 0}}, "damaged");
        row("other format", {file, {"manifest.json", manifest({good}, QStringLiteral("x")), {}, 0}}, "damaged");
        row("newer", {file, {"manifest.json", manifest({good}).replace("\"version\": 1", "\"version\": 2"), {}, 0}},
            "newer");
        row("empty list", {file, list({})}, "damaged");
        row("not listed", {file, {"files/b.jpg", "data", {}, 0}, list({good})}, "does not name");
        row("not there", {list({good})}, "missing");
        row("other size", {file, list({listed(entryName, QStringLiteral("a.jpg"), 5)})}, "missing");
        row("listed twice", {file, list({good, good})}, "twice");
        row("entry elsewhere", {file, list({with(good, "entry", QStringLiteral("manifest.json"))})}, "damaged");
        for (const char *pName : {"../a.jpg", "/a.jpg", "..", ".", "", "a/b"})
            row(QByteArray(QByteArray("name ") + pName).constData(),
                {file, list({with(good, "name", QLatin1String(pName))})}, "damaged");
        row("name of 256 bytes", {file, list({with(good, "name", QString(256, QLatin1Char('a')))})}, "damaged");
        row("name with zero", {file, list({with(good, "nameBytes", QStringLiteral("YQBi"))})}, "damaged");
        row("number as text", {file, list({with(good, "size", QStringLiteral("4"))})}, "damaged");
        row("size of infinity", {file, list({with(good, "modified", 1e300)})}, "damaged");
        row("labels as text", {file, list({with(good, "labels", QStringLiteral("a"))})}, "damaged");
        row("note of no size", {file, list({with(good, "notes", QJsonArray{QJsonObject()})})}, "damaged");
    }

    void refusesHostilePacks()
    {
        const auto [entries, reason] = currentRow<QVector<Entry>, QString>();
        ActionStage stage;
        QVERIFY(stage.open());
        const QString pack = stage.path(QStringLiteral("stranger.MORAYPack"));
        QVERIFY(makePack(pack, entries));
        QString error;
        const QString folder = stage.import(pack, stage.target(), &error);
        if (reason.isEmpty()) {
            QCOMPARE(error, QString());
            // What comes from elsewhere is no program here.
            QVERIFY(!QFileInfo(folder + QStringLiteral("/a.jpg")).isExecutable());
            return;
        }
        QVERIFY2(error.contains(reason), qPrintable(error));
        QVERIFY(error.contains(QStringLiteral("stranger.MORAYPack")));
        QCOMPARE(folder, QString());
        QCOMPARE(ActionStage::namesIn(stage.target()), QStringList());
        QCOMPARE(ActionStage::namesIn(stage.library->unfinishedFolder()), QStringList());
    }

    void survivesDamage()
    {
        ActionStage stage;
        for (int i = 0; i < 20; ++i)
            stage.write(QStringLiteral("%1.txt").arg(i), QByteArray(5000, char('a' + i)));
        QVERIFY(stage.open());
        const QString pack = stage.path(QStringLiteral("good.MORAYPack"));
        QCOMPARE(stage.exportTo(pack, stage.allIds(), true)->returnCode(), 0);
        const QByteArray good = readFile(pack);
        const QString damagedPack = stage.path(QStringLiteral("damaged.MORAYPack"));
        // Cut off and overwritten all over the file: refused, or imported in full; never in part, never a crash.
        for (int i = 0; i < 60; ++i) {
            QByteArray damaged = good;
            const int nPlace = int(qint64(good.size()) * i / 60);
            if (i % 3 == 0)
                damaged.truncate(nPlace);
            else
                damaged.replace(nPlace, 7, i % 3 == 1 ? QByteArray(7, '\xFF') : QByteArray(7, '\0'));
            QVERIFY(writeFile(damagedPack, damaged));
            QString error;
            const QString folder = stage.import(damagedPack, stage.target(), &error);
            QCOMPARE(folder.isEmpty(), !error.isEmpty());
            if (!folder.isEmpty())
                QCOMPARE(ActionStage::namesIn(folder).size(), 20);
            QDir(stage.target()).removeRecursively();
            QDir().mkpath(stage.target());
        }
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostPacksTest)
#include "tst_host_packs.moc"
