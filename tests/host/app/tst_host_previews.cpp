#include "../IdleAnalysis.h"
#include "HostRecords.h"
#include "TestMain.h"
#include "app/CommandLine.h"
#include "app/FileGridModel.h"
#include "app/MainWindow.h"
#include "app/MainWindowHandle.h"
#include "app/PreviewController.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"

namespace {

class FakeDialog : public IPreviewSpaceDialog {
public:
    using IPreviewSpaceDialog::IPreviewSpaceDialog;
    void showPreview() override { show(); }
    bool canClosePreview() override { return true; }
};

/** A preview plug-in that notes what is asked of it. */
class FakePreviewPlugin : public IBigImgPreviewPlugin {
public:
    virtual ~FakePreviewPlugin() = default;

    void setDataSource(const QSharedPointer<IPreviewDataSource> & /*pSource*/) override
    {
        calls.append(QStringLiteral("source"));
    }
    void clearPreviewData() override
    {
        calls.append(pDialog == nullptr ? QStringLiteral("clear") : QStringLiteral("clear under a surface"));
    }
    IPreviewDbClickWidget *createPreviewDbClickWidget(QWidget *, QVector<qint64>, int, qint64, qint64) override
    {
        return nullptr;
    }
    IPreviewSpaceDialog *createPreviewSpaceDialog(QWidget *pParent, QVector<qint64> fileIds, int nIndex, qint64 nFileId,
                                                  qint64 /*nContext*/) override
    {
        calls.append(QStringLiteral("create %1 %2 of %3").arg(nFileId).arg(nIndex).arg(fileIds.size()));
        pDialog = new FakeDialog(pParent);
        return pDialog;
    }
    void setMainWindowHandle(IMainWindowHandle *pHandle) override
    {
        calls.append(pHandle != nullptr ? QStringLiteral("handle") : QStringLiteral("no handle"));
    }

    QStringList calls;
    QPointer<FakeDialog> pDialog;
};

class AheadAnalysis final : public IdleAnalysis {
public:
    void setFilesAhead(const QStringList &paths) override { ahead = paths; }

    QStringList ahead;
};

} // namespace

/** What the host does around a preview surface, and how it reads its command line. */
class HostPreviewsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void opensOneAtATime()
    {
        Stage stage;
        PreviewController &previews = *stage.previews;
        FakePreviewPlugin &plugin = stage.plugin;
        plugin.calls.clear();
        QSignalSpy closed(&previews, &PreviewController::signalClosed);

        QVERIFY(!previews.openQuickPreview(99));
        QVERIFY(previews.openQuickPreview(3));
        QVERIFY(!previews.openQuickPreview(4));
        QCOMPARE(plugin.calls, QStringList{QStringLiteral("create 3 2 of 6")});
        const QPointer<FakeDialog> pFirst = plugin.pDialog;
        // A surface that closes twice is still closed once.
        Q_EMIT pFirst->signalSpacePreviewClosed(5);
        Q_EMIT pFirst->signalSpacePreviewClosed(5);
        QCOMPARE(closed.size(), 1);
        QCOMPARE(closed.first().first().toLongLong(), 5);
        QVERIFY(pFirst != nullptr);
        QTRY_VERIFY(pFirst == nullptr);
        QVERIFY(previews.openQuickPreview(4));
        // Another library takes the place of the one that the preview shows files of.
        previews.drop();
        previews.drop();
        QCOMPARE(closed.size(), 2);
        QTRY_VERIFY(plugin.pDialog == nullptr);
        QVERIFY(!previews.isOpen());
    }

    void announcesNeighbours()
    {
        AheadAnalysis analysis;
        Stage stage;
        PreviewController &previews = *stage.previews;
        FakePreviewPlugin &plugin = stage.plugin;
        previews.setAnalysis(&analysis);
        QSignalSpy shown(&previews, &PreviewController::signalFileShown);

        QVERIFY(previews.openQuickPreview(3));
        // Nothing is decoded ahead before the first picture had its time.
        QVERIFY(analysis.ahead.isEmpty());
        QTRY_COMPARE(analysis.ahead, paths({4, 5, 2}));
        Q_EMIT plugin.pDialog->signalPreviewFileIdChanged(2);
        QCOMPARE(shown.size(), 1);
        QTRY_COMPARE(analysis.ahead, paths({1, 3}));
        Q_EMIT plugin.pDialog->signalPreviewFileIdChanged(3);
        QTRY_COMPARE(analysis.ahead, paths({4, 5, 2}));
        Q_EMIT plugin.pDialog->signalSpacePreviewClosed(3);
        QVERIFY(analysis.ahead.isEmpty());
    }

    void endsInOrder()
    {
        MainWindow *pNoWindow = nullptr;
        MainWindowHandle handle(pNoWindow);
        handle.moveBy(QPoint(1, 1));
        QVERIFY(!handle.isMaximized());
        Stage stage(&handle);
        QVERIFY(stage.previews->openQuickPreview(1));
        stage.previews.reset();
        QCOMPARE(stage.plugin.calls,
                 QStringList({QStringLiteral("source"), QStringLiteral("handle"), QStringLiteral("create 1 0 of 6"),
                              QStringLiteral("clear"), QStringLiteral("no handle")}));
        QVERIFY(stage.plugin.pDialog == nullptr);
    }

    void readsCommandLine()
    {
        const QString folder = QDir::tempPath();
        const QString file = QCoreApplication::applicationFilePath();
        const std::tuple<QString, bool, QString, int> rows[] = {
            {QString(), false, QString(), 0},
            {folder + QStringLiteral(" /"), false, QString(), 2},
            {file, false, file, 0},
            {QStringLiteral("--library x --theme light ") + folder, false, QString(), 1},
            {QStringLiteral("/no/such/place"), true, QString(), 0},
            {file + QLatin1Char(' ') + folder, true, file, 1},
            {QStringLiteral("--unknown"), true, QString(), 0},
            {QStringLiteral("--theme pink"), true, QString(), 0}};
        for (const auto &[line, bError, wanted, nFolders] : rows) {
            const CommandLine result = parseCommandLine(QStringList(QStringLiteral("host")) +
                                                        line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
            QVERIFY2(!result.error.isEmpty() == bError, qPrintable(line));
            QCOMPARE(result.file, wanted);
            QCOMPARE(result.folders.size(), nFolders);
        }
    }

private:
    /** Six files, and a controller that previews them with a plug-in that is watched. */
    struct Stage {
        explicit Stage(IMainWindowHandle *pHandle = nullptr)
        {
            FileRecordList records;
            for (int i = 1; i <= 6; ++i)
                records.append(makeRecord(i, QStringLiteral("%1.jpg").arg(i)));
            model.addRecords(records);
            previews = std::make_unique<PreviewController>(&window, &model, nullptr);
            previews->setPlugin(&plugin, {}, pHandle);
        }
        FileGridModel model;
        QWidget window;
        FakePreviewPlugin plugin;
        std::unique_ptr<PreviewController> previews;
    };

    static QStringList paths(const QVector<int> &ids)
    {
        QStringList all;
        for (const int nId : ids)
            all.append(QStringLiteral("/pictures/%1.jpg").arg(nId));
        return all;
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostPreviewsTest)
#include "tst_host_previews.moc"
