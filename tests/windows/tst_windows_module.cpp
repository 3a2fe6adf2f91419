#include "FakeHost.h"
#include "OpenPreview.h"
#include "TestMain.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/PluginInfo.h"
#include "interfaces/surfaces/IPreviewDbClickWidget.h"
#include "interfaces/surfaces/IPreviewSpaceDialog.h"

#include <QGraphicsItem>
#include <QGraphicsView>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QThreadPool>

#include <vector>

// clang-format off
#include <windows.h>
#include <winver.h>
// clang-format on

using namespace OpenPreview;

namespace {

constexpr qint64 PngType = 10;
constexpr qint64 GifType = 30;
constexpr qint64 PptxType = 193;
constexpr qint64 Mp3Type = 210;
constexpr qint64 Mp4Type = 220;

// Pages of the previews, by their place.
constexpr int VideoPage = 1;
constexpr int AudioPage = 2;
constexpr int PresentationPage = 3;

const QColor Still(20, 90, 160);

constexpr QSize AnimationSize(8, 8);

/** Two frames, both red. */
QByteArray redAnimation()
{
    QByteArray file = QByteArray::fromHex("47494638396108000800800000ff0000ff0000");
    const QByteArray pixels = QByteArray::fromHex("040810204080000102").repeated(4);
    for (int i = 0; i < 2; ++i)
        file += QByteArray::fromHex("21f90404040000002c00000000080008000002") + '\x25' + pixels + '\x05' + '\0';
    return file + ';';
}

QString versionText(const QString &path, const QString &name)
{
    const std::wstring wide = QDir::toNativeSeparators(path).toStdWString();
    std::vector<char> block(GetFileVersionInfoSizeW(wide.c_str(), nullptr));
    if (block.empty() || GetFileVersionInfoW(wide.c_str(), 0, DWORD(block.size()), block.data()) == 0)
        return {};
    const std::wstring key = L"\\StringFileInfo\\040904B0\\" + name.toStdWString();
    wchar_t *pText = nullptr;
    UINT nLength = 0;
    if (VerQueryValueW(block.data(), key.c_str(), reinterpret_cast<void **>(&pText), &nLength) == 0)
        return {};
    return QString::fromWCharArray(pText);
}

} // namespace

/** The built DLL as a host's program for Windows meets it, with real windows and real files. */
class tst_windows_module : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void saysWhatItIs()
    {
        const QJsonObject metaData = m_loader.metaData();
        QCOMPARE(metaData.value(QStringLiteral("IID")).toString(),
                 QStringLiteral("Tessaro.Plugin.IBigImgPreviewPlugin/1.0"));
        QCOMPARE(metaData.value(QStringLiteral("MetaData")).toObject(),
                 (QJsonObject{{QStringLiteral("Keys"), QJsonArray{QStringLiteral("plg_bigimgpreviewplugin")}}}));
        QObject *pRoot = m_loader.instance();
        QCOMPARE(pRoot->qt_metacast("KOR.Core.IPlugin/1.0"), pRoot->qt_metacast("IPlugin"));
        QVERIFY(pRoot->qt_metacast("IPlugin") != pRoot->qt_metacast("IBigImgPreviewPlugin"));
        PluginInfo info;
        qobject_cast<IPlugin *>(pRoot)->getPluginInfo(info);
        QCOMPARE(info.name, QStringLiteral("Big Image Preview"));

        const QDir sdk(QCoreApplication::applicationDirPath());
        for (const QString &path : {m_loader.fileName(), sdk.filePath(QStringLiteral("BigImgPreviewInterfaces.dll")),
                                    sdk.filePath(QStringLiteral("BigImgPreviewTheme.dll")),
                                    sdk.filePath(QStringLiteral("BigImgPreviewTracking.dll"))}) {
            QCOMPARE(versionText(path, QStringLiteral("ProductName")), QStringLiteral("Big Image Preview"));
            QCOMPARE(versionText(path, QStringLiteral("OriginalFilename")), QFileInfo(path).fileName());
            QVERIFY(versionText(path, QStringLiteral("FileVersion")).startsWith(info.version));
            QVERIFY(!versionText(path, QStringLiteral("FileDescription")).isEmpty());
        }
    }

    void unloadsAndLoadsAgain()
    {
        m_pPreview->clearPreviewData();
        // Qt keeps the library itself in memory; its root object goes and comes back.
        for (int i = 0; i < 3; ++i) {
            QVERIFY2(m_loader.unload(), qPrintable(m_loader.errorString()));
            m_pPreview = qobject_cast<IBigImgPreviewPlugin *>(m_loader.instance());
            QVERIFY2(m_pPreview != nullptr, qPrintable(m_loader.errorString()));
            // Nothing was handed in: an empty preview comes and goes.
            const std::unique_ptr<IPreviewSpaceDialog> pDialog(
                m_pPreview->createPreviewSpaceDialog(nullptr, {}, -1, 0, 0));
            pDialog->showPreview();
            QVERIFY(waitForPicture());
            QVERIFY(isPlaceholder());
            QVERIFY(leave());
            QThreadPool::globalInstance()->waitForDone();
        }
    }

    void filesStayFree_data()
    {
        const auto row = columns<QString, bool>("name", "bNative");
        row("forward slashes", "a b/animation.gif", false);
        row("back slashes", "a b/animation.gif", true);
        row("other alphabets", "100 % ä/图片 😀.gif", false);
        row("long path", QStringLiteral("%1/%1/%1/animation.gif").arg(QString(120, QLatin1Char('p'))), false);
    }

    void filesStayFree()
    {
        const auto [name, bNative] = currentRow<QString, bool>();
        const QString path = m_pFolder->filePath(name);
        QVERIFY(writeFile(path, redAnimation()));
        const QString given = bNative ? QDir::toNativeSeparators(path) : path;
        FakePicture picture;
        picture.size = AnimationSize;
        picture.colour = Still;
        m_pHost->addPicture(1, GifType, given, picture);
        m_fileIds = {1};
        const std::unique_ptr<IPreviewSpaceDialog> pDialog(open(1));
        QVERIFY(waitForPicture());
        // The preview reads the animation from the file itself, after the host's picture.
        QTRY_VERIFY_WITH_TIMEOUT(isAbout(colorAt(0.5, 0.5), Qt::red), PatienceMsec);
        QCOMPARE(m_pHost->decoder.counts().paths, QStringList{given});

        // Windows refuses all of this for a file that somebody holds open.
        const QString moved = QFileInfo(path).path() + QStringLiteral("/moved.gif");
        QVERIFY(QFile::rename(path, moved));
        QVERIFY(QFile::rename(moved, path));
        QVERIFY(writeFile(path, "other content"));
        QVERIFY(QFile::remove(path));
        QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
        QVERIFY(isAbout(colorAt(0.5, 0.5), Qt::red));
        QVERIFY(leave());
    }

    void stepsAndZooms()
    {
        const QVector<QColor> colours = {Qt::darkGreen, Qt::darkBlue, Qt::darkRed};
        for (int i = 0; i < colours.size(); ++i) {
            FakePicture picture;
            picture.size = {400, 300};
            picture.colour = colours.at(i);
            m_pHost->addPicture(i + 1, PngType, QStringLiteral("C:/pictures/%1.png").arg(i), picture);
            m_fileIds.append(i + 1);
        }
        m_pHost->shortcuts.keys.insert(IShortcutSetting::ZoomIn, QStringLiteral("+"));
        const std::unique_ptr<IPreviewSpaceDialog> pDialog(open(1));
        QSignalSpy changes(pDialog.get(), &IPreviewSpaceDialog::signalPreviewFileIdChanged);
        QSignalSpy closed(pDialog.get(), &IPreviewSpaceDialog::signalSpacePreviewClosed);
        QVERIFY(waitForPicture());
        for (int i = 1; i < colours.size(); ++i) {
            key(Qt::Key_Right);
            QVERIFY(waitForPicture());
            QTRY_VERIFY(isAbout(colorAt(0.5, 0.5), colours.at(i)));
        }
        QCOMPARE(changes.size(), colours.size() - 1);
        const auto shownWidth = [] {
            return view()->mapFromScene(picture()->sceneBoundingRect()).boundingRect().width();
        };
        const double fBefore = shownWidth();
        QVERIFY(fBefore > 0);
        key(Qt::Key_Plus);
        QTRY_VERIFY(shownWidth() > fBefore);
        QVERIFY(leave());
        QCOMPARE(closed.size(), 1);
        QTRY_VERIFY(m_pHost->decoder.counts().isBalanced());
    }

    void otherKinds()
    {
        m_pHost->addFile(1, PptxType, QStringLiteral("C:/a.pptx"));
        m_pHost->renderer.setDocument(1, {{400, 300}});
        m_pHost->addFile(2, Mp4Type, QStringLiteral("C:/a.mp4"));
        m_pHost->addFile(3, Mp3Type, QStringLiteral("C:/a.mp3"));
        m_fileIds = {1, 2, 3};
        const std::unique_ptr<IPreviewSpaceDialog> pDialog(open(1));
        QTRY_COMPARE_WITH_TIMEOUT(hub()->currentIndex(), PresentationPage, PatienceMsec);
        QCOMPARE(m_pHost->renderer.openDocuments(), QSet<qint64>{1});
        key(Qt::Key_Right);
        QTRY_COMPARE(hub()->currentIndex(), VideoPage);
        QTRY_COMPARE(m_pHost->player->openPath, QStringLiteral("C:/a.mp4"));
        key(Qt::Key_Right);
        QTRY_COMPARE(hub()->currentIndex(), AudioPage);
        QTRY_COMPARE(m_pHost->player->openPath, QStringLiteral("C:/a.mp3"));
        QVERIFY(leave());
        QTRY_VERIFY(m_pHost->player->openPath.isEmpty() && m_pHost->renderer.openDocuments().isEmpty());
    }

    void fullPreview()
    {
        FakePicture picture;
        picture.size = {800, 600}; // the middle of the window is inside it
        picture.colour = Still;
        for (const qint64 nId : {1, 2}) {
            m_pHost->addPicture(nId, PngType, QStringLiteral("C:/pictures/%1.png").arg(nId), picture);
            m_fileIds.append(nId);
        }
        IPreviewDbClickWidget *pPreview = m_pPreview->createPreviewDbClickWidget(m_pWindow.get(), m_fileIds, 0, 1, 0);
        pPreview->resize(m_pWindow->size());
        pPreview->show();
        QSignalSpy back(pPreview, &IPreviewDbClickWidget::signalBackBtnClicked);
        const auto isShown = [pPreview] {
            const QImage seen = pPreview->grab().toImage();
            return isAbout(seen.pixelColor(seen.rect().center()), Still);
        };
        QVERIFY(QTest::qWaitFor(isShown, PatienceMsec));
        QVERIFY(makeActive(m_pWindow.get()));
        QTRY_VERIFY(QApplication::focusWidget() != nullptr);
        key(Qt::Key_Escape);
        QTRY_COMPARE(back.size(), 1);
    }

protected Q_SLOTS:
    void init() override
    {
        LoggedTest::init();
        m_pFolder = std::make_unique<QTemporaryDir>();
        m_pHost = std::make_unique<FakeHost>();
        m_pPreview = qobject_cast<IBigImgPreviewPlugin *>(m_loader.instance());
        QVERIFY2(m_pPreview != nullptr, qPrintable(m_loader.errorString()));
        QVERIFY(qobject_cast<IPlugin *>(m_loader.instance())->setPluginManager(m_pHost.get()));
        m_pPreview->setDataSource(m_pHost->source);
        m_pWindow = std::make_unique<QWidget>();
        m_pWindow->resize(900, 600);
        m_pWindow->show();
        QVERIFY(makeActive(m_pWindow.get()));
    }

    void cleanup() override
    {
        m_pWindow.reset();
        QThreadPool::globalInstance()->waitForDone();
        if (m_pPreview != nullptr)
            m_pPreview->clearPreviewData();
        m_pHost.reset();
        m_fileIds.clear();
        LoggedTest::cleanup();
    }

private:
    IPreviewSpaceDialog *open(qint64 nId)
    {
        IPreviewSpaceDialog *pDialog =
            m_pPreview->createPreviewSpaceDialog(m_pWindow.get(), m_fileIds, m_fileIds.indexOf(nId), nId, 0);
        pDialog->showPreview();
        return pDialog;
    }

    QPluginLoader m_loader{QStringLiteral(PLUGIN_FILE)};
    IBigImgPreviewPlugin *m_pPreview = nullptr;
    std::unique_ptr<FakeHost> m_pHost;
    std::unique_ptr<QTemporaryDir> m_pFolder;
    std::unique_ptr<QWidget> m_pWindow;
    QVector<qint64> m_fileIds;
};

BIGIMGPREVIEW_TEST_MAIN(tst_windows_module)
#include "tst_windows_module.moc"
