#include "PluginTest.h"
#include "image/PictureDecoder.h"
#include "interfaces/services/IShortcutSetting.h"
#include "plugin/FileTypeTable.h"

#include <QClipboard>
#include <QSignalSpy>

namespace {

const QString Manager = QStringLiteral("Big Img Preview Set Plugin Manager,");

void remove(FakeHost &host, const char *pClassName)
{
    host.registry.remove(QLatin1String(pClassName));
}

QVector<qint64> ids(const QVector<FileInfoPtr> &files)
{
    QVector<qint64> result;
    for (const FileInfoPtr &pFile : files)
        result.append(pFile->fileId());
    return result;
}

} // namespace

class tst_shared_state : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void missingServices_data();
    void missingServices();
    void missingSourceParts_data();
    void missingSourceParts();
    void removedFilesChooseTheNext_data();
    void removedFilesChooseTheNext();
    void newRecordOfTheSameFileIsFound();
    void notesAreSentWhole();
    void refusedNotesAreLogged();
    void notesBelongToTheCurrentFile();
    void pasteTags_data();
    void pasteTags();
    void tagResults_data();
    void tagResults();
    void tagResultsCountOnce();
    void copyTagsAndPath();
    void clearReleasesTheHost();
    void fileTypes_data();
    void fileTypes();
    void fileTypeTable();

private:
    void useEverything();
};

/** Every operation that a surface may call, whatever the host lacks. */
void tst_shared_state::useEverything()
{
    data()->shortcutText(IShortcutSetting::ZoomIn);
    data()->settingsText();
    data()->cacheManager();
    data()->dataCenter();
    data()->openPresentation(1, QStringLiteral("/a.pptx"));
    data()->renderPresentationPage(1, 0);
    data()->dropRenderEntry(1);
    data()->openPresentation(2, QStringLiteral("/b.pptx"));
    data()->releaseOpenRenderers();
    data()->clearRenderCache();
    PictureDecoder::decode(QStringLiteral("/a.png"));
    openFiles({1, 2, 3}, 2);
    data()->reloadCurrentTags();
    data()->addOrModifyNote(1, QStringLiteral("text"), QRect(1, 2, 3, 4), 5);
    data()->deleteNote(1);
    data()->copyFilePath();
    data()->copyTags();
    data()->pasteTags();
    data()->removeFiles({2});
    data()->dropFiles({2});
    data()->refillFileInformation();
    QCOMPARE(data()->fileIds(), (QVector<qint64>{1, 3}));
}

void tst_shared_state::missingServices_data()
{
    QTest::addColumn<HostChange>("change");
    QTest::addColumn<QString>("present"); // what is still there
    QTest::addColumn<QString>("line");
    const QString all = QStringLiteral("keys settings cache decoder renderer center");
    const QString noSettings = QStringLiteral("cache decoder renderer center");
    const QString noBase = QStringLiteral("keys settings center");
    const QString noSettingLine = QStringLiteral("m_pSettingPlugin is nullptr");
    const auto row = [](const char *pName, const HostChange &change, const QString &present, const QString &line = {}) {
        QTest::newRow(pName) << change << present << line;
    };
    row(
        "nothing", [](FakeHost &) {}, all);
    row(
        "settings", [](FakeHost &host) { remove(host, "ISettingPlugin"); }, noSettings, noSettingLine);
    row(
        "settings list with null", [](FakeHost &host) { host.registry[QStringLiteral("ISettingPlugin")] = {nullptr}; },
        noSettings, noSettingLine);
    row(
        "settings object", [](FakeHost &host) { host.setting.hasObject = false; }, noSettings, noSettingLine);
    row(
        "settings interface", [](FakeHost &host) { host.setting.answersInterface = false; }, noSettings, noSettingLine);
    row(
        "shortcuts", [](FakeHost &host) { host.setting.shortcuts = nullptr; }, QStringLiteral("settings ") + noSettings,
        QStringLiteral("m_pShortcutSetting is nullptr"));
    row(
        "settings values", [](FakeHost &host) { host.setting.settings = nullptr; },
        QStringLiteral("keys ") + noSettings);
    row(
        "base", [](FakeHost &host) { remove(host, "IBaseModulePlugin"); }, noBase);
    row(
        "base object", [](FakeHost &host) { host.base.hasObject = false; }, noBase);
    row(
        "cache", [](FakeHost &host) { host.base.cache.reset(); }, QString(all).remove(QStringLiteral("cache ")));
    row(
        "decoder", [](FakeHost &host) { host.base.decoder = nullptr; },
        QString(all).remove(QStringLiteral("decoder ")));
    row(
        "renderer", [](FakeHost &host) { host.base.renderer = nullptr; },
        QString(all).remove(QStringLiteral("renderer ")));
    row(
        "data centre", [](FakeHost &host) { remove(host, "IDataCenterPlugin"); },
        QString(all).remove(QStringLiteral(" center")));
    row(
        "everything", [](FakeHost &host) { host.registry.clear(); }, QString(), noSettingLine);
}

void tst_shared_state::missingServices()
{
    QFETCH(HostChange, change);
    change(host());
    for (const qint64 nId : {1, 2, 3})
        host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
    host().settings.exportPath = QStringLiteral("/export");
    host().renderer.setDocument(7, {QSize(4, 3)});
    attachHost();

    QStringList present;
    const auto note = [&present](bool bThere, const char *pName) {
        if (bThere)
            present.append(QLatin1String(pName));
    };
    note(data()->shortcutText(IShortcutSetting::ZoomIn) == QLatin1String("Ctrl+="), "keys");
    note(data()->settingsText() == QLatin1String("/export"), "settings");
    note(data()->cacheManager() != nullptr, "cache");
    note(!PictureDecoder::decode(QStringLiteral("/1.png")).image.isNull(), "decoder");
    note(data()->openPresentation(7, QStringLiteral("/7.pptx")) && data()->presentationPageCount(7) == 1, "renderer");
    note(data()->dataCenter() != nullptr, "center");
    QTEST(present.join(QLatin1Char(' ')), "present");
    QFETCH(QString, line);
    QCOMPARE(log().count(Manager), line.isEmpty() ? 0 : 1);
    QVERIFY(line.isEmpty() || log().hasLine(Manager + line));

    useEverything();
    data()->setPluginManager(nullptr); // what was there is forgotten with the manager
    QVERIFY(log().hasLine(Manager + QStringLiteral("m_pluginManager is nullptr")));
    useEverything();
    QVERIFY(data()->shortcutText(IShortcutSetting::ZoomIn).isEmpty());
    QVERIFY(data()->cacheManager() == nullptr);
}

void tst_shared_state::missingSourceParts_data()
{
    QTest::addColumn<QList<int>>("parts");
    QList<int> all;
    for (int i = int(SourcePart::FileList); i <= int(SourcePart::TagAction); ++i) {
        QTest::addRow("part %d", i) << QList<int>{i};
        all.append(i);
    }
    QTest::newRow("all") << all;
    QTest::newRow("no source") << QList<int>{-1};
}

void tst_shared_state::missingSourceParts()
{
    QFETCH(QList<int>, parts);
    for (const int nPart : parts)
        host().source->absent.insert(SourcePart(nPart));
    for (const qint64 nId : {1, 2, 3})
        host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
    attachHost();
    if (parts.contains(-1))
        data()->setDataSource({});
    useEverything();
}

void tst_shared_state::removedFilesChooseTheNext_data()
{
    using Ids = QVector<qint64>;
    QTest::addColumn<qint64>("current");
    QTest::addColumn<Ids>("removed");
    QTest::addColumn<qint64>("expected");
    QTest::addColumn<Ids>("left");
    QTest::newRow("middle") << 3LL << Ids{3} << 4LL << Ids{1, 2, 4, 5};
    QTest::newRow("with the next") << 3LL << Ids{4, 3} << 5LL << Ids{1, 2, 5};
    QTest::newRow("to the end") << 3LL << Ids{3, 4, 5} << 2LL << Ids{1, 2};
    QTest::newRow("all but the first") << 3LL << Ids{2, 3, 4, 5} << 1LL << Ids{1};
    QTest::newRow("last") << 5LL << Ids{5} << 4LL << Ids{1, 2, 3, 4};
    QTest::newRow("first") << 1LL << Ids{1} << 2LL << Ids{2, 3, 4, 5};
    QTest::newRow("everything") << 3LL << Ids{1, 2, 3, 4, 5} << 3LL << Ids{};
    QTest::newRow("ids of no file") << 5LL << Ids{5, 77, 5} << 4LL << Ids{1, 2, 3, 4};
    QTest::newRow("current not listed") << 9LL << Ids{1} << 2LL << Ids{2, 3, 4, 5};
}

void tst_shared_state::removedFilesChooseTheNext()
{
    for (const qint64 nId : {1, 2, 3, 4, 5, 9})
        host().addFile(nId, 10, QStringLiteral("/%1.png").arg(nId));
    QFETCH(qint64, current);
    QFETCH(QVector<qint64>, removed);
    openFiles({1, 2, 3, 4, 5}, current);
    for (const qint64 nId : removed)
        host().source->removeFile(nId);
    data()->removeFiles(removed);
    QTEST(data()->currentFileId(), "expected");
    QCOMPARE(data()->currentFileInfo()->fileId(), data()->currentFileId());
    data()->dropFiles(removed);
    data()->refillFileInformation();
    QTEST(data()->fileIds(), "left");
    QTEST(ids(data()->fileInformationList()), "left");
}

void tst_shared_state::newRecordOfTheSameFileIsFound()
{
    for (const qint64 nId : {1, 2, 3})
        host().addFile(nId, 10, QStringLiteral("/%1.png").arg(nId));
    openFiles({1, 2, 3}, 3);
    QCOMPARE(data()->indexOfCurrent(), 2);
    host().addFile(3, 10, QStringLiteral("/renamed.png"));
    data()->setCurrentFile(3);
    QCOMPARE(data()->currentFilePath(), QStringLiteral("/renamed.png"));
    QCOMPARE(data()->indexOfCurrent(), 2);
    data()->setCurrentFile(99);
    QCOMPARE(data()->indexOfCurrent(), -1);
    QVERIFY(data()->currentFilePath().isEmpty());
}

void tst_shared_state::notesAreSentWhole()
{
    const auto pFile = host().addFile(1, 10, QStringLiteral("/1.png"));
    pFile->noteList = {{QRect(0, 0, 1, 1), 1, QStringLiteral("a")}, {QRect(1, 1, 1, 1), 2, QStringLiteral("b")}};
    openFiles({1}, 1);
    QCOMPARE(data()->notes().keys(), (QList<int>{0, 1}));

    const auto sent = [this] {
        QStringList texts;
        for (const NoteRecord &note : host().desk.requests.last().notes)
            texts.append(QStringLiteral("%1@%2#%3").arg(note.text).arg(note.rect.x()).arg(note.value));
        return texts.join(QLatin1Char(' '));
    };
    data()->addOrModifyNote(7, QString(), QRect(), 9);
    data()->addOrModifyNote(1, QStringLiteral(""), QRect(), 9);
    data()->deleteNote(7);
    QCOMPARE(host().desk.requests.size(), 0);
    data()->addOrModifyNote(7, QStringLiteral("c"), QRect(5, 5, 1, 1), 3);
    QCOMPARE(sent(), QStringLiteral("a@0#1 b@1#2 c@5#3"));
    data()->addOrModifyNote(0, QStringLiteral("A"), QRect(8, 8, 1, 1), 4);
    QCOMPARE(sent(), QStringLiteral("A@8#4 b@1#2 c@5#3"));
    data()->deleteNote(1);
    QCOMPARE(sent(), QStringLiteral("A@8#4 c@5#3"));
    data()->deleteNote(0);
    data()->deleteNote(7);
    QCOMPARE(sent(), QString());
    QCOMPARE(host().desk.of(ActionKind::Comment).size(), 5);
    QCOMPARE(host().desk.requests.last().fileIds, (QVector<qint64>{1}));
}

void tst_shared_state::refusedNotesAreLogged()
{
    host().addFile(1, 10, QStringLiteral("/1.png"));
    openFiles({1}, 1);
    host().desk.reply = Reply::RefuseNegative;
    data()->addOrModifyNote(3, QStringLiteral("a"), QRect(), 0);
    QVERIFY(log().hasLine(QStringLiteral("modify(add) comment action id <= 0")));
    host().desk.reply = Reply::RefuseZero;
    data()->addOrModifyNote(3, QStringLiteral("b"), QRect(), 0);
    QVERIFY(log().hasLine(QStringLiteral("modify comment action id <= 0")));
    data()->deleteNote(3);
    QVERIFY(log().hasLine(QStringLiteral("modify(del) comment action id <= 0")));
    QVERIFY(data()->notes().isEmpty());
}

void tst_shared_state::notesBelongToTheCurrentFile()
{
    host().addFile(1, 10, QStringLiteral("/1.png"))->noteList = {{QRect(), 1, QStringLiteral("a")}};
    openFiles({1}, 1);
    data()->setCurrentFile(2); // a file that the host does not know
    QVERIFY(data()->notes().isEmpty());
    QVERIFY(data()->currentFileInfo() == nullptr);
}

void tst_shared_state::pasteTags_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QList<quint64>>("expected");
    QTest::newRow("empty parts") << QStringLiteral("12,,34,") << QList<quint64>{12, 34};
    QTest::newRow("letters") << QStringLiteral("abc") << QList<quint64>{0};
    QTest::newRow("mixed") << QStringLiteral("5,x") << QList<quint64>{5, 0};
    QTest::newRow("largest") << QStringLiteral("18446744073709551615") << QList<quint64>{~0ULL};
    QTest::newRow("negative") << QStringLiteral("-1") << QList<quint64>{0};
}

void tst_shared_state::pasteTags()
{
    host().addFile(8, 10, QStringLiteral("/8.png"));
    openFiles({8}, 8);
    QFETCH(QString, text);
    QGuiApplication::clipboard()->setText(text);
    host().desk.reply = Reply::RefuseZero;
    data()->pasteTags();
    const ActionRequest request = host().desk.requests.value(0);
    QCOMPARE(request.kind, ActionKind::Tag);
    QCOMPARE(request.fileIds, (QVector<qint64>{8}));
    QList<quint64> tagIds;
    for (const TagRecordPtr &pTag : request.tags) {
        tagIds.append(pTag->id);
        QVERIFY(pTag->name.isEmpty());
    }
    QTEST(tagIds, "expected");
    QVERIFY(log().hasLine(QStringLiteral("files associate tags action id <= 0")));
}

void tst_shared_state::tagResults_data()
{
    QTest::addColumn<ResponseInfoPtr>("response");
    QTest::addColumn<int>("updates");
    const auto partly = [](QVector<qint64> FakeResponse::*pList) {
        const auto pResponse = QSharedPointer<FakeResponse>::create();
        (pResponse.data()->*pList) = {8};
        return ResponseInfoPtr(pResponse);
    };
    QTest::newRow("success") << FakeResponse::success() << 1;
    QTest::newRow("error") << FakeResponse::failure(3) << 0;
    QTest::newRow("failed file") << partly(&FakeResponse::failed) << 0;
    QTest::newRow("skipped file") << partly(&FakeResponse::skipped) << 0;
    QTest::newRow("missing file") << partly(&FakeResponse::missing) << 0;
    QTest::newRow("no response") << ResponseInfoPtr() << 0;
}

void tst_shared_state::tagResults()
{
    host().addFile(8, 10, QStringLiteral("/8.png"));
    openFiles({8}, 8);
    QGuiApplication::clipboard()->setText(QStringLiteral("1"));
    host().desk.reply = Reply::OnDemand;
    QSignalSpy updates(data(), &PluginInnerData::signalUpdateRightPanel);
    data()->pasteTags();
    QFETCH(ResponseInfoPtr, response);
    host().desk.answer(0, response);
    QTEST(updates.count(), "updates");
    if (!updates.isEmpty())
        QCOMPARE(updates.at(0).at(0).toLongLong(), 8LL);
}

void tst_shared_state::tagResultsCountOnce()
{
    host().addFile(8, 10, QStringLiteral("/8.png"));
    openFiles({8}, 8);
    QGuiApplication::clipboard()->setText(QStringLiteral("1"));
    host().desk.reply = Reply::OnDemand;
    QSignalSpy updates(data(), &PluginInnerData::signalUpdateRightPanel);
    for (int i = 0; i < 3; ++i)
        data()->pasteTags();
    host().desk.answer(0); // of a request that a later one replaced
    QCOMPARE(updates.count(), 0);
    host().desk.answer(2);
    QCOMPARE(updates.count(), 1);
}

void tst_shared_state::copyTagsAndPath()
{
    const auto pFile = host().addFile(1, 10, QStringLiteral("/dir/ä b.png"));
    openFiles({1}, 1);
    pFile->tagList = {makeTag(12), makeTag(34)}; // linked after the file was opened
    QClipboard *pClipboard = QGuiApplication::clipboard();
    data()->copyTags();
    QCOMPARE(pClipboard->text(), QStringLiteral("12,34"));
    data()->copyFilePath();
    QCOMPARE(pClipboard->text(), QStringLiteral("/dir/ä b.png"));
    pFile->tagList.clear();
    data()->copyTags();
    QCOMPARE(pClipboard->text(), QString());
    pClipboard->setText(QStringLiteral("kept"));
    data()->setCurrentFile(2);
    data()->copyFilePath();
    QCOMPARE(pClipboard->text(), QStringLiteral("kept"));
}

void tst_shared_state::clearReleasesTheHost()
{
    const QWeakPointer<FakeFileInfo> pFile = host().addFile(1, 10, QStringLiteral("/1.png"));
    openFiles({1}, 1);
    data()->dataCenter();
    const QWeakPointer<FakeDataSource> pSource = host().source;
    const QWeakPointer<QObject> pCenter = host().center.center;
    host().source.reset();
    host().center.center.reset();
    data()->setAudioVolume(33);
    data()->clearPreviewData();
    QVERIFY(pSource.isNull());
    QVERIFY(pCenter.isNull());
    QVERIFY(pFile.isNull());
    QVERIFY(data()->fileInformationList().isEmpty());
    QCOMPARE(data()->audioVolume(), 33);
    QVERIFY(data()->shortcutSetting() == &host().shortcuts);
    QVERIFY(data()->mainWindowHandle() == &host().window);
}

void tst_shared_state::fileTypes_data()
{
    QTest::addColumn<qint64>("type");
    QTest::addColumn<QString>("expected");
    const auto row = [](qint64 nType, const char *pExpected) {
        QTest::addRow("%lld", nType) << nType << QString::fromLatin1(pExpected);
    };
    row(0, "");
    row(-1, "");
    row(4, "");
    row(1, "preview");
    row(10, "preview");
    row(30, "preview gif");
    row(100, "preview");
    row(120, "preview psd");
    row(121, "preview");
    row(131, "preview");
    row(191, "preview");
    row(192, "preview presentation");
    row(193, "preview presentation");
    row(194, "preview");
    row(200, "preview");
    row(210, "preview audio");
    row(620, "preview audio");
    row(754, "preview audio");
    row(220, "preview video");
    row(650, "preview video");
    row(300, "");
    row(690, "");
    row(800, "");
    row(1100, "");
    row(3000, "");
    row(1213, "");
    row(1218, "");
    row(1220, "preview");
    row(qint64(1) << 32 | 10, "");
}

void tst_shared_state::fileTypes()
{
    QFETCH(qint64, type);
    QStringList words;
    const auto note = [&words](bool bIs, const char *pWord) {
        if (bIs)
            words.append(QLatin1String(pWord));
    };
    note(isPreviewableType(type), "preview");
    note(isVideoType(type), "video");
    note(isAudioType(type), "audio");
    note(isGifType(type), "gif");
    note(isPresentationType(type), "presentation");
    note(isPsdType(type), "psd");
    QTEST(words.join(QLatin1Char(' ')), "expected");
}

/** Sums over the whole table, so that no id or group can slip. */
void tst_shared_state::fileTypeTable()
{
    QHash<int, int> inGroup;
    QHash<int, int> withFlags;
    QHash<int, qint64> idSum;
    for (auto it = FileTypeTable().cbegin(); it != FileTypeTable().cend(); ++it) {
        ++inGroup[it->group];
        ++withFlags[it->flags];
        idSum[it->group] += it.key();
        QCOMPARE(it->extension, it->extension.toLower());
    }
    QCOMPARE(FileTypeTable().size(), 139);
    QCOMPARE(inGroup, (QHash<int, int>{{1, 93}, {2, 16}, {3, 6}, {4, 20}, {5, 4}}));
    QCOMPARE(withFlags, (QHash<int, int>{{17, 13}, {1, 46}, {9, 3}, {5, 9}, {3, 22}, {0, 46}}));
    QCOMPARE(idSum.value(2), 6485LL);
    QCOMPARE(idSum.value(3), 4290LL);
    QCOMPARE(idSum.value(4), 17900LL);
    QCOMPARE(idSum.value(5), 6330LL);
    QCOMPARE(FileTypeTable().value(224).extension, QStringLiteral("3g2p"));
    QCOMPARE(FileTypeTable().value(231).extension, QStringLiteral("gov"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_shared_state)
#include "tst_shared_state.moc"
