#include "FileActionTest.h"
#include "common/CResourceItem.h"
#include "image/ImgPreviewWidget.h"
#include "image/TSLargePreviewView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QShortcut>

using TypeOf = const FileActionType &(*)();
Q_DECLARE_METATYPE(TypeOf)

namespace {

/** "Name", "Name*" where a mask cuts the corners, "Name-" where disabled, "Name[…]" with a sub-menu. */
QString describe(const QMenu &menu)
{
    QStringList entries;
    for (const QAction *pAction : menu.actions()) {
        QString entry = pAction->text();
        if (pAction->menu() != nullptr) {
            entry += pAction->menu()->mask().isEmpty() ? QString() : QStringLiteral("*");
            entry += QLatin1Char('[') + describe(*pAction->menu()) + QLatin1Char(']');
        }
        entry += pAction->isEnabled() ? QString() : QStringLiteral("-");
        entries.append(entry);
    }
    return entries.join(QLatin1Char(','));
}

} // namespace

class tst_file_menu : public FileActionTest {
    Q_OBJECT

private Q_SLOTS:
    void entries()
    {
        const std::tuple<TypeOf, bool, const char *> rows[] = {
            {&FileActionType::image, false, "File Settings[Set the Preview Image],"},
            {&FileActionType::image, true, ""}, // the picture is its own preview
            {&FileActionType::presentation, true, "File Settings[Current Page Set the Preview Image],"},
            {&FileActionType::video, true, "File Settings*[Current Frame Set the Preview Image],"},
            {&FileActionType::audio, true, "File Settings*[Set the Audio Preview Image],"}};
        for (const auto &[type, bFixed, pSettings] : rows) {
            m_files[1]->previewFixed = bFixed;
            m_calls.clear();
            make(type());
            QString seen;
            withMenu([&seen](TSCustomMenu &menu) { seen = describe(menu); });
            QCOMPARE(seen, QStringLiteral("Open with Default App,Open File Location,"
                                          "Export File*[Export Library Pack,Export to Computer],"
                                          "Copy/Paste*[Copy the File,Copy File Path,Copy Labels-,Paste Labels],%1"
                                          "Delete Permanently,Delete to Recycle Bin")
                               .arg(QLatin1String(pSettings)));
            QCOMPARE(m_calls, QStringList{QStringLiteral("menu")});
            QVERIFY(m_pWidget->findChildren<QMenu *>().isEmpty());
        }
    }

    void labelsAreAskedForAfresh()
    {
        const auto canCopy = [this] {
            bool bEnabled = false;
            withMenu([&](TSCustomMenu &menu) { bEnabled = entry(menu, QStringLiteral("Copy Labels"))->isEnabled(); });
            return bEnabled;
        };
        QVERIFY(!canCopy());
        m_files[1]->tagList = {makeTag(5)};
        QVERIFY(canCopy());
        m_files[1]->tagList.clear();
        QVERIFY(!canCopy());
    }

    void entriesAct_data()
    {
        const auto add = columns<TypeOf, QString, QString>("type", "text", "expected");
        const auto row = [&add](TypeOf type, const char *pText, const char *pExpected) {
            add(QStringLiteral("%1: %2").arg(QLatin1String(type().pTypeWord), QLatin1String(pText)), type, pText,
                pExpected);
        };
        for (const TypeOf type : {&FileActionType::image, &FileActionType::presentation, &FileActionType::audio})
            row(type, "Open with Default App", "url:/folder/file 1#.png");
        row(&FileActionType::video, "Open with Default App", "");
        row(&FileActionType::image, "Copy File Path", "clipboard:/folder/file 1#.png");
        row(&FileActionType::image, "Copy Labels", "clipboard:5,6");
        row(&FileActionType::image, "Paste Labels", "tag:1");
        row(&FileActionType::image, "Set the Preview Image", "cover");
        row(&FileActionType::video, "Current Frame Set the Preview Image", "cover");
        row(&FileActionType::image, "Delete Permanently", "remove:1");
        row(&FileActionType::image, "Delete to Recycle Bin", "recycle:1");
    }

    void entriesAct()
    {
        const auto [type, text, expected] = currentRow<TypeOf, QString, QString>();
        m_files[1]->tagList = {makeTag(5), makeTag(6)};
        make(type());
        const UrlCatcher catcher;
        QClipboard *pClipboard = QApplication::clipboard();
        pClipboard->setText(QStringLiteral("12"));
        withMenu([chosen = text](TSCustomMenu &menu) { entry(menu, chosen)->trigger(); });
        m_calls.removeAll(QStringLiteral("menu"));
        m_calls.removeAll(QStringLiteral("removal"));
        QStringList effects = m_calls;
        for (const QUrl &url : catcher.urls)
            effects.append(QStringLiteral("url:") + url.toLocalFile());
        if (pClipboard->text() != QStringLiteral("12"))
            effects.append(QStringLiteral("clipboard:") + pClipboard->text());
        for (const ActionRequest &request : host().desk.requests) {
            static const QStringList names{QStringLiteral("export"),  QStringLiteral("remove"),
                                           QStringLiteral("recycle"), QStringLiteral("file"),
                                           QStringLiteral("comment"), QStringLiteral("tag")};
            effects.append(names.at(int(request.kind)) + QLatin1Char(':') + QString::number(request.fileIds.first()));
        }
        QCOMPARE(effects.join(QLatin1Char(' ')), expected);
    }

    void anotherFileMeanwhile()
    {
        withMenu([](TSCustomMenu &menu) {
            data()->setCurrentFile(2); // the host took file 1 away
            for (const char *pText : {"Delete Permanently", "Delete to Recycle Bin", "Set the Preview Image"})
                entry(menu, QString::fromLatin1(pText))->trigger();
        });
        QVERIFY(host().desk.requests.isEmpty());
        QCOMPARE(m_calls, QStringList{QStringLiteral("menu")});
    }

    /** While the menu is open, and by an entry. */
    void widgetDies()
    {
        for (const bool bByEntry : {false, true}) {
            make(FileActionType::image());
            delete m_pController.data();
            FileActionHooks hooks;
            hooks.setCover = [this] {
                delete m_pWidget.data();
            };
            m_pController = new FileActionController(FileActionType::image(), hooks, m_pWidget);
            withMenu([this, bByEntry](TSCustomMenu &menu) {
                if (!bByEntry) {
                    delete m_pWidget.data();
                    return;
                }
                // As the user does it: with the mouse, in the sub-menu.
                QAction *pSettings = entry(menu, QStringLiteral("File Settings"));
                QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier, menu.actionGeometry(pSettings).center());
                QMenu *pBelow = pSettings->menu();
                QTRY_VERIFY(pBelow->isVisible());
                QAction *pCover = entry(*pBelow, QStringLiteral("Set the Preview Image"));
                QTest::mouseClick(pBelow, Qt::LeftButton, Qt::NoModifier, pBelow->actionGeometry(pCover).center());
            });
            QVERIFY(!m_pWidget && !m_pController);
        }
    }

    void copiedFile()
    {
        m_files[1]->path = QString::fromUtf8("/a b/ü%1\"<b>\n-.png");
        m_pController->copyFile();
        const QMimeData *pData = QApplication::clipboard()->mimeData();
        const QUrl url = QUrl::fromLocalFile(m_files[1]->path);
        QCOMPARE(pData->urls(), QList<QUrl>{url});
#if defined(Q_OS_UNIX)
        QCOMPARE(pData->data(QStringLiteral("x-special/gnome-copied-files")), "copy\n" + url.toEncoded());
        QCOMPARE(pData->data(QStringLiteral("application/x-kde-cutselection")), QByteArray("0"));
#endif
    }

    void noFile()
    {
        const UrlCatcher catcher;
        data()->setCurrentFile(99);
        QApplication::clipboard()->setText(QStringLiteral("kept"));
        m_pController->checkFilePath();
        QVERIFY(log().lines(QtInfoMsg).contains(QStringLiteral("file path is empty")));
        m_pController->copyFile();
        m_pController->copyFilePath();
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("kept"));
        QVERIFY(catcher.urls.isEmpty());
        QString seen;
        withMenu([&seen](TSCustomMenu &menu) { seen = describe(menu); });
        QVERIFY(!seen.contains(QStringLiteral("File Settings")));

        // Without a library nothing can be asked for.
        data()->clearPreviewData();
        m_pController->exportToComputer();
        m_pController->deleteComplete();
        m_pController->removeToRecycle();
        m_pController->setCover(QStringLiteral("/none.png"));
        finishWorkers();
        QVERIFY(host().desk.requests.isEmpty() && m_pWidget->findChildren<QDialog *>().isEmpty());
    }

    void rightClickOnThePicture()
    {
        ImgPreviewWidget widget(nullptr);
        widget.resize(600, 400);
        widget.show();
        QWidget *pViewport = widget.findChild<TSLargePreviewView *>()->viewport();
        int nMenus = 0;
        const auto rightClick = [&] {
            QTimer::singleShot(0, qApp, [&nMenus] {
                if (QWidget *pPopup = QApplication::activePopupWidget()) {
                    ++nMenus;
                    pPopup->close();
                }
            });
            const QPoint pos(300, 200);
            QContextMenuEvent event(QContextMenuEvent::Mouse, pos, pViewport->mapToGlobal(pos));
            QCoreApplication::sendEvent(pViewport, &event);
            settle();
        };
        rightClick();
        QCOMPARE(nMenus, 1);
        widget.setContextMenuEnabled(false);
        rightClick();
        QCOMPARE(nMenus, 1);
    }

    void keysOfThePicture()
    {
        host().shortcuts.keys.insert(IShortcutSetting::MoveToRecycleBin, QStringLiteral("Ctrl+D"));
        attachHost();
        openFiles({1, 2, 3}, 1);
        ImgPreviewWidget widget(nullptr);
        widget.show();
        QVERIFY(QTest::qWaitForWindowActive(&widget));
        QTest::keyClick(&widget, Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(host().desk.requests.size(), 1);
        host().desk.answer(0);
        settle();
        widget.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&widget));
        QTest::keyClick(&widget, Qt::Key_Delete);
        QCOMPARE(host().desk.of(ActionKind::Recycle).size(), 2);
        for (const QShortcut *pShortcut : widget.findChildren<QShortcut *>())
            QVERIFY(!pShortcut->autoRepeat());
        widget.hide(); // on another page nobody knows which file would go
        QTest::keyClick(&widget, Qt::Key_Delete);
        QCOMPARE(host().desk.requests.size(), 2);
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_file_menu)
#include "tst_file_menu.moc"
