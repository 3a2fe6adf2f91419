#include "PluginTest.h"
#include "image/PictureDecoder.h"
#include "interfaces/services/IShortcutSetting.h"
#include "plugin/FileTypeTable.h"

#include <QClipboard>

namespace {

const QString Manager = QStringLiteral("Big Img Preview Set Plugin Manager,");

void remove(FakeHost &host, const char *pClassName)
{
    host.registry.remove(QLatin1String(pClassName));
}

} // namespace

class tst_shared_state : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void missingServices_data()
    {
        // missing: what cannot be used then
        const auto row = columns<QString, QString, HostChange>("missing", "line", "change");
        const char *const noPlugin = "m_pSettingPlugin is nullptr";
        row("nothing", "", "", [](FakeHost &) {});
        row("settings", "keys settings", noPlugin, [](FakeHost &host) { remove(host, "ISettingPlugin"); });
        row("settings list with null", "keys settings", noPlugin,
            [](FakeHost &host) { host.registry[QStringLiteral("ISettingPlugin")] = {nullptr}; });
        row("settings object", "keys settings", noPlugin, [](FakeHost &host) { host.setting.hasObject = false; });
        row("settings interface", "keys settings", noPlugin,
            [](FakeHost &host) { host.setting.answersInterface = false; });
        row("shortcuts", "keys", "m_pShortcutSetting is nullptr",
            [](FakeHost &host) { host.setting.shortcuts = nullptr; });
        row("settings values", "settings", "", [](FakeHost &host) { host.setting.settings = nullptr; });
        row("base", "cache decoder renderer", "", [](FakeHost &host) { remove(host, "IBaseModulePlugin"); });
        row("base object", "cache decoder renderer", "", [](FakeHost &host) { host.base.hasObject = false; });
        row("cache", "cache", "", [](FakeHost &host) { host.base.cache.reset(); });
        row("decoder", "decoder", "", [](FakeHost &host) { host.base.decoder = nullptr; });
        row("renderer", "renderer", "", [](FakeHost &host) { host.base.renderer = nullptr; });
        row("data centre", "center", "", [](FakeHost &host) { remove(host, "IDataCenterPlugin"); });
        row("everything", "keys settings cache decoder renderer center", noPlugin,
            [](FakeHost &host) { host.registry.clear(); });
    }

    void missingServices()
    {
        const auto [missing, line, change] = currentRow<QString, QString, HostChange>();
        change(host());
        for (const qint64 nId : {1, 2, 3})
            host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
        host().settings.exportPath = QStringLiteral("/export");
        host().renderer.setDocument(7, {QSize(4, 3)});
        attachHost();

        QStringList absent;
        const auto note = [&absent](bool bThere, const char *pName) {
            if (!bThere)
                absent.append(QLatin1String(pName));
        };
        note(data()->shortcutText(IShortcutSetting::ZoomIn) == QLatin1String("Ctrl+="), "keys");
        note(data()->settingsText() == QLatin1String("/export"), "settings");
        note(data()->cacheManager() != nullptr, "cache");
        note(!PictureDecoder::decode(QStringLiteral("/1.png")).image.isNull(), "decoder");
        note(data()->openPresentation(7, QStringLiteral("/7.pptx")) && data()->presentationPageCount(7) == 1,
             "renderer");
        note(data()->dataCenter() != nullptr, "center");
        QCOMPARE(absent.join(QLatin1Char(' ')), missing);
        QCOMPARE(log().count(Manager), line.isEmpty() ? 0 : 1);
        QVERIFY(line.isEmpty() || log().hasLine(Manager + line));

        useEverything();
        data()->setPluginManager(nullptr); // what was there is forgotten with the manager
        QVERIFY(log().hasLine(Manager + QStringLiteral("m_pluginManager is nullptr")));
        useEverything();
        QVERIFY(data()->shortcutText(IShortcutSetting::ZoomIn).isEmpty());
        QVERIFY(data()->cacheManager() == nullptr);
    }

    /** Each part alone, all of them, and the source itself. */
    void missingSourceParts()
    {
        QSet<SourcePart> all;
        for (int i = int(SourcePart::FileList); i <= int(SourcePart::TagAction); ++i)
            all.insert(SourcePart(i));
        QVector<QSet<SourcePart>> rows{all};
        for (const SourcePart part : all)
            rows.append({part});
        for (const QSet<SourcePart> &row : rows) {
            for (const qint64 nId : {1, 2, 3})
                host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
            host().source->absent = row;
            attachHost();
            useEverything();
        }
        data()->setDataSource({});
        useEverything();
    }

    void newRecordOfTheSameFileIsFound()
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

    void pasteTags()
    {
        host().addFile(8, 10, QStringLiteral("/8.png"));
        openFiles({8}, 8);
        host().desk.reply = Reply::RefuseZero;
        const QVector<std::pair<const char *, QList<quint64>>> rows = {
            {"12,,34,", {12, 34}}, {"abc", {0}}, {"5,x", {5, 0}}, {"18446744073709551615", {~0ULL}}, {"-1", {0}}};
        for (const auto &row : rows) {
            QGuiApplication::clipboard()->setText(QLatin1String(row.first));
            data()->pasteTags();
            const ActionRequest request = host().desk.of(ActionKind::Tag).last();
            QCOMPARE(request.fileIds, (QVector<qint64>{8}));
            QList<quint64> tagIds;
            for (const TagRecordPtr &pTag : request.tags)
                tagIds.append(pTag->id);
            QCOMPARE(tagIds, row.second);
        }
        QVERIFY(log().hasLine(QStringLiteral("files associate tags action id <= 0")));
    }

    void tagResults_data()
    {
        const auto row = columns<ResponseInfoPtr, int>("response", "updates");
        const auto partly = [](QVector<qint64> FakeResponse::*pList) {
            const auto pResponse = QSharedPointer<FakeResponse>::create();
            (pResponse.data()->*pList) = {8};
            return ResponseInfoPtr(pResponse);
        };
        row("success", FakeResponse::success(), 1);
        row("error", FakeResponse::failure(3), 0);
        row("failed file", partly(&FakeResponse::failed), 0);
        row("skipped file", partly(&FakeResponse::skipped), 0);
        row("missing file", partly(&FakeResponse::missing), 0);
        row("no response", ResponseInfoPtr(), 0);
    }

    void tagResults()
    {
        const auto [response, nUpdates] = currentRow<ResponseInfoPtr, int>();
        host().addFile(8, 10, QStringLiteral("/8.png"));
        openFiles({8}, 8);
        QGuiApplication::clipboard()->setText(QStringLiteral("1"));
        host().desk.reply = Reply::OnDemand;
        QSignalSpy updates(data(), &PluginInnerData::signalUpdateRightPanel);
        data()->pasteTags();
        data()->pasteTags();
        host().desk.answer(0, response); // of a request that the later one replaced
        QCOMPARE(updates.count(), 0);
        host().desk.answer(1, response);
        QCOMPARE(updates.count(), nUpdates);
        if (!updates.isEmpty())
            QCOMPARE(updates.at(0).at(0).toLongLong(), 8LL);
    }

    void clearReleasesTheHost()
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

    void fileTypes()
    {
        const QHash<const char *, QVector<qint64>> rows = {
            {"", {0, -1, 4, 300, 690, 800, 1100, 1213, 1218, 3000, qint64(1) << 32 | 10}},
            {"preview", {1, 10, 100, 121, 131, 191, 194, 200, 1220}},
            {"preview video", {220, 650}},
            {"preview audio", {210, 620, 754}},
            {"preview gif", {30}},
            {"preview presentation", {192, 193}},
            {"preview psd", {120}}};
        for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
            for (const qint64 nType : row.value()) {
                QString words(QLatin1String(isPreviewableType(nType) ? "preview" : ""));
                words += QLatin1String(isVideoType(nType) ? " video" : "");
                words += QLatin1String(isAudioType(nType) ? " audio" : "");
                words += QLatin1String(isGifType(nType) ? " gif" : "");
                words += QLatin1String(isPresentationType(nType) ? " presentation" : "");
                words += QLatin1String(isPsdType(nType) ? " psd" : "");
                QVERIFY2(words == QLatin1String(row.key()), qPrintable(QString::number(nType)));
            }
        }
    }

private:
    /** Every operation that a surface may call, whatever the host lacks. */
    void useEverything()
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
};

BIGIMGPREVIEW_TEST_MAIN(tst_shared_state)
#include "tst_shared_state.moc"
