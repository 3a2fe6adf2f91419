#pragma once

#include "PluginTest.h"
#include "actions/FileActionController.h"
#include "common/TSCustomMenu.h"
#include "common/TSMessageBox.h"
#include "common/TsProgressDialog.h"

#include <QAbstractButton>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>

/** Takes the files and folders that would go to the desktop. */
class UrlCatcher : public QObject {
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> urls;

public Q_SLOTS:
    void open(const QUrl &url) { urls.append(url); }
};

/** Base of the tests of file actions: a widget with a controller on file 1 of three, and a user for its dialogs. */
class FileActionTest : public PluginTest {
protected:
    void init() override
    {
        PluginTest::init();
        for (const qint64 nId : {1, 2, 3})
            m_files.insert(nId, host().addFile(nId, 10, QStringLiteral("/folder/file %1#.png").arg(nId)));
        openFiles({1, 2, 3}, 1);
        host().desk.reply = Reply::OnDemand;
        make(FileActionType::image());
    }
    void cleanup() override
    {
        delete m_pWidget.data();
        m_calls.clear();
        m_files.clear();
        PluginTest::cleanup();
    }

    void make(const FileActionType &type)
    {
        delete m_pWidget.data();
        m_pWidget = new QWidget;
        m_pWidget->resize(500, 400);
        m_pWidget->show();
        FileActionHooks hooks;
        hooks.beforeMenu = [this] {
            m_calls.append(QStringLiteral("menu"));
        };
        hooks.beforeRemoval = [this] {
            m_calls.append(QStringLiteral("removal"));
        };
        hooks.setCover = [this] {
            m_calls.append(QStringLiteral("cover"));
        };
        hooks.refresh = [this] {
            m_calls.append(QStringLiteral("refresh"));
        };
        m_pController = new FileActionController(type, hooks, m_pWidget);
    }

    /** Opens the menu and does something while it is open. */
    void withMenu(const std::function<void(TSCustomMenu &)> &act)
    {
        bool bSeen = false;
        QTimer::singleShot(0, qApp, [&] {
            const QPointer<TSCustomMenu> pMenu = qobject_cast<TSCustomMenu *>(QApplication::activePopupWidget());
            QVERIFY(pMenu);
            bSeen = true;
            act(*pMenu);
            if (pMenu)
                pMenu->close();
        });
        m_pController->showMenu(QKeySequence(Qt::Key_Delete));
        QVERIFY(bSeen);
    }

    /** The entry with this text, of the menu or of one below it. */
    static QAction *entry(const QMenu &menu, const QString &text)
    {
        for (QAction *pAction : menu.actions()) {
            if (pAction->text() == text)
                return pAction;
            QAction *pBelow = pAction->menu() != nullptr ? entry(*pAction->menu(), text) : nullptr;
            if (pBelow != nullptr)
                return pBelow;
        }
        return nullptr;
    }

    /** Answers the file dialog that the next call opens; an empty path cancels it. */
    void answerFileDialog(const QString &path, const std::function<void(QFileDialog &)> &before = {})
    {
        QTimer::singleShot(0, qApp, [this, path, before] {
            const QPointer<QFileDialog> pDialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(pDialog);
            m_dialogTitle = pDialog->windowTitle();
            m_dialogFolder = pDialog->directory().path();
            if (before)
                before(*pDialog);
            if (!pDialog)
                return;
            pDialog->findChild<QLineEdit *>()->setText(path);
            QMetaObject::invokeMethod(pDialog, path.isEmpty() ? "reject" : "accept");
        });
    }

    /** The progress dialog that can be seen, or null. */
    TsProgressDialog *progress() const
    {
        const auto dialogs = m_pWidget->findChildren<TsProgressDialog *>();
        for (TsProgressDialog *pDialog : dialogs) {
            if (pDialog->isVisible())
                return pDialog;
        }
        return nullptr;
    }
    QString status() const
    {
        const auto labels = progress()->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        return labels.last()->text();
    }
    /** "title|text" of each box that is open. */
    QStringList boxes(bool bVisible = true) const
    {
        QStringList texts;
        for (const TSMessageBox *pBox : m_pWidget->findChildren<TSMessageBox *>()) {
            if (pBox->isVisible() == bVisible) {
                texts.append(pBox->findChild<QLabel *>(QStringLiteral("tips_lab"))->text() + QLatin1Char('|') +
                             pBox->findChild<QLabel *>(QStringLiteral("lab_context"))->text());
            }
        }
        return texts;
    }
    static void settle()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QPointer<QWidget> m_pWidget;
    QPointer<FileActionController> m_pController;
    QHash<qint64, QSharedPointer<FakeFileInfo>> m_files;
    QStringList m_calls;
    QString m_dialogTitle;
    QString m_dialogFolder;
};
