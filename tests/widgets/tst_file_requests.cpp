#include "FileActionTest.h"

namespace {

ResponseInfoPtr responseOf(int nCode, const QString &error = {})
{
    return FakeResponse::failure(nCode, error.isEmpty() ? QStringList() : QStringList{error});
}

} // namespace

/** The host's actions, the file dialogs before them, and what may happen meanwhile. */
class tst_file_requests : public FileActionTest {
    Q_OBJECT

private Q_SLOTS:
    void runs_data()
    {
        const auto row = columns<QString, Reply, QString>("kind", "reply", "title");
        for (const auto &[reply, pName] : {std::pair(Reply::OnDemand, "on demand"),
                                           {Reply::InsideRequest, "inside the request"},
                                           {Reply::Queued, "queued"},
                                           {Reply::Twice, "twice"}}) {
            const QString name = QStringLiteral("%1, ") + QLatin1String(pName);
            row(name.arg(QLatin1String("export")), "export", reply, "Exporting");
            row(name.arg(QLatin1String("remove")), "remove", reply, "Deleting files permanently");
            row(name.arg(QLatin1String("recycle")), "recycle", reply, "Deleting files...");
        }
    }

    void runs()
    {
        const auto [kind, reply, title] = currentRow<QString, Reply, QString>();
        desk().reply = reply;
        start(kind);
        QCOMPARE(desk().requests.size(), 1);
        QCOMPARE(desk().requests.first().fileIds, QVector<qint64>{1});
        if (desk().reply == Reply::InsideRequest) {
            QVERIFY(progress() == nullptr);
        } else {
            QVERIFY(progress() != nullptr && progress()->parentWidget() == m_pWidget);
            QCOMPARE(progress()->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly)->text(), title);
        }
        if (desk().reply == Reply::OnDemand)
            desk().answer(0);
        settle();
        QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().isEmpty());
        QCOMPARE(boxes(), QStringList());
        QCOMPARE(log().count(kind == QStringLiteral("export") ? QStringLiteral("export pkg retCode:0")
                                                              : kind + QStringLiteral(" file retCode:0")),
                 1);
        QCOMPARE(m_calls, kind == QStringLiteral("export") ? QStringList() : QStringList{QStringLiteral("removal")});
    }

    void results_data()
    {
        const auto row = columns<QString, ResponseInfoPtr, QString, QString>("kind", "response", "shown", "hidden");
        const char *const occupied = "Operation exception|Failed to delete file, the file is currently occupied!";
        const char *const full =
            "Insufficient Disk Space|This disk has insufficient space remaining. Please select another disk.";
        const QString error = QStringLiteral("line");
        row("export", "export", responseOf(0), "", "Export Complete|Do you hope to view the export file(s) in folder?");
        row("export with errors", "export", responseOf(0, error), "", "");
        row("export failed", "export", responseOf(7), "", "");
        row("export, disk full", "export", responseOf(32305, error), full, "");
        row("export, no result", "export", {}, "", "");
        row("remove failed", "remove", responseOf(7, error), "", "");
        row("remove, no result", "remove", {}, "", "");
        row("recycle", "recycle", responseOf(0), "", "");
        row("recycle failed", "recycle", responseOf(7), occupied, "");
        row("recycle with errors", "recycle", responseOf(0, error), occupied, "");
        row("recycle, disk full", "recycle", responseOf(32305), occupied, "");
        row("recycle, no result", "recycle", {}, occupied, "");
    }

    void results()
    {
        const auto [kind, response, shown, hidden] = currentRow<QString, ResponseInfoPtr, QString, QString>();
        start(kind);
        desk().answer(0, response);
        settle();
        QCOMPARE(boxes(true).join(QLatin1Char('\n')), shown);
        QCOMPARE(boxes(false).join(QLatin1Char('\n')), hidden);
        QVERIFY(progress() == nullptr);
        QCOMPARE(log().hasLine(QStringLiteral("export pkg err:")),
                 kind == QStringLiteral("export") && hidden.isEmpty());
    }

    void refused()
    {
        for (const QString &kind : kinds()) {
            const int nBefore = desk().requests.size();
            for (const Reply reply : {Reply::RefuseZero, Reply::RefuseNegative}) {
                desk().reply = reply;
                start(kind);
                settle();
                QVERIFY(progress() == nullptr);
            }
            QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().size() <= 1);
            desk().answer(nBefore); // a host that answers what it refused
            desk().answer(nBefore + 1);
            QVERIFY(log().lines(QtDebugMsg).filter(QStringLiteral("retCode")).isEmpty());
            desk().reply = Reply::Never;
            start(kind);
            QVERIFY(progress() != nullptr);
            make(FileActionType::image());
        }
    }

    void blockedDeletion()
    {
        host().source->deletingBlocked = true;
        start(QStringLiteral("remove"));
        start(QStringLiteral("recycle"));
        QVERIFY(desk().requests.isEmpty() && m_calls.isEmpty());
        QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().isEmpty());
        start(QStringLiteral("export"));
        QCOMPARE(desk().requests.size(), 1);
        host().source->deletingBlocked = false;
        // A host without the action.
        host().source->absent = {SourcePart::RemoveAction, SourcePart::RecycleAction};
        start(QStringLiteral("remove"));
        start(QStringLiteral("recycle"));
        QCOMPARE(desk().requests.size(), 1);
    }

    void progressText()
    {
        const std::pair<double, const char *> rows[] = {{0.0, "0"},  {99.9, "99"},   {100.0, "100"},
                                                        {-0.9, "0"}, {qQNaN(), "0"}, {qInf(), "100"}};
        for (const QString &kind : kinds()) {
            start(kind);
            for (const auto &[fValue, pText] : rows) {
                desk().report(desk().requests.size() - 1, fValue, 3, 2);
                QCOMPARE(status(), QStringLiteral("Completed(%1%)").arg(QLatin1String(pText)));
            }
            desk().answer(desk().requests.size() - 1);
            settle();
        }
    }

    void twoInARow()
    {
        start(QStringLiteral("remove"));
        const QPointer<TsProgressDialog> pFirst = progress();
        data()->setCurrentFile(2);
        start(QStringLiteral("remove"));
        settle();
        QVERIFY(!pFirst && progress() != nullptr);
        desk().report(0, 40.0);
        desk().answer(0);
        QVERIFY(progress() != nullptr);
        QCOMPARE(status(), QString());
        desk().report(1, 30.0);
        QCOMPARE(status(), QStringLiteral("Completed(30%)"));
        QCOMPARE(desk().requests.at(1).fileIds, QVector<qint64>{2});
        // Kinds do not disturb each other.
        start(QStringLiteral("recycle"));
        desk().answer(2);
        desk().answer(1);
        settle();
        QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().isEmpty());
    }

    void cancelRaces()
    {
        // The result comes out of the cancellation itself.
        start(QStringLiteral("remove"));
        desk().reply = Reply::InsideRequest;
        progress()->slotCloseBtnClicked(true);
        settle();
        QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().isEmpty());
        QCOMPARE(log().count(QStringLiteral("remove file retCode:1")), 1);
        desk().reply = Reply::OnDemand;

        // Progress between the cancellation and the result.
        start(QStringLiteral("export"));
        progress()->slotCloseBtnClicked(true);
        QCOMPARE(desk().cancelled, (QVector<qint64>{1, 2}));
        desk().report(1, 70.0);
        settle();
        QVERIFY(progress() == nullptr);
    }

    void widgetDiesDuringARequest()
    {
        for (const QString &kind : kinds())
            start(kind);
        const QPointer<TsProgressDialog> pDialog = progress();
        delete m_pWidget.data();
        QVERIFY(!pDialog);
        for (int i = 0; i < 3; ++i) {
            desk().report(i, 50.0);
            desk().answer(i, FakeResponse::failure(32305));
        }
        settle();
        QVERIFY(!log().hasLine(QStringLiteral("export pkg retCode:")));
    }

    void hostThatNeverAnswers()
    {
        desk().reply = Reply::Never;
        desk().answersCancel = false;
        start(QStringLiteral("recycle"));
        progress()->slotCloseBtnClicked(true);
        progress()->slotCloseBtnClicked(true);
        settle();
        QCOMPARE(desk().cancelled.size(), 1);
        QVERIFY(progress() != nullptr);
        QCOMPARE(status(), QStringLiteral("Canceling task"));
        data()->clearPreviewData(); // the library closes meanwhile
        desk().report(0, 10.0);
        delete m_pWidget.data();
        settle();
    }

    void exportDialogs_data()
    {
        // known: where the last export went
        // typed: empty: cancelled
        const auto row = columns<bool, bool, QString, QString, QString>("package", "known", "title", "typed", "path");
        row("pack", true, false, "Export Library Pack", "a.MORAYPack", "a.MORAYPack");
        row("pack again", true, true, "Export Library Pack", "ü %1 'b'.MORAYPack", "ü %1 'b'.MORAYPack");
        row("pack without suffix", true, false, "Export Library Pack", "a", "a.MORAYPack");
        row("pack, cancelled", true, false, "Export Library Pack", "", "");
        row("folder", false, false, "Export file path...", ".", "");
        row("folder again", false, true, "Select file path...", ".", "");
        row("folder, cancelled", false, true, "Select file path...", "", "");
    }

    void exportDialogs()
    {
        const auto [package, known, title, typed, path] = currentRow<bool, bool, QString, QString, QString>();
        QTemporaryDir last;
        host().settings.exportPath = known ? last.path() : QString();
        const QString before = host().settings.exportPath;
        answerFileDialog(typed.isEmpty() ? QString() : QDir::cleanPath(m_folder.filePath(typed)));
        exportTo(package);
        QCOMPARE(m_dialogTitle, title);
        if (known)
            QCOMPARE(m_dialogFolder, last.path());
        if (typed.isEmpty()) {
            QVERIFY(desk().requests.isEmpty());
            QCOMPARE(host().settings.exportPath, before);
            return;
        }
        const QString expected = QDir::cleanPath(m_folder.filePath(path));
        QCOMPARE(desk().requests.size(), 1);
        QCOMPARE(desk().requests.first().path, expected);
        QCOMPARE(desk().requests.first().bPackage, package);
        QCOMPARE(host().settings.exportPath, expected);
        desk().answer(0);
    }

    void folderDialogAfterPack()
    {
        host().settings.exportPath = m_folder.filePath(QStringLiteral("last.MORAYPack"));
        QVERIFY(writeFile(host().settings.exportPath));
        QString offered;
        answerFileDialog(QString(),
                         [&offered](QFileDialog &dialog) { offered = dialog.findChild<QLineEdit *>()->text(); });
        m_pController->exportToComputer();
        QCOMPARE(m_dialogFolder, m_folder.path());
        QCOMPARE(offered, QString()); // a file is no folder to export to
    }

    void fileDialogOutlivesTheWidget()
    {
        for (const bool bPackage : {true, false}) {
            make(FileActionType::image());
            answerFileDialog(m_folder.path(), [this](QFileDialog &) { delete m_pWidget.data(); });
            exportTo(bPackage);
            QVERIFY(!m_pWidget && desk().requests.isEmpty());
        }
        make(FileActionType::image());
        answerFileDialog(m_folder.path(), [this](QFileDialog &) { delete m_pWidget.data(); });
        m_pController->chooseCover();
        QVERIFY(!m_pWidget);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void fileChangesBehindTheFileDialog()
    {
        answerFileDialog(m_folder.path(), [](QFileDialog &) { data()->setCurrentFile(3); });
        m_pController->exportToComputer();
        QCOMPARE(desk().requests.first().fileIds, QVector<qint64>{1}); // the file it was asked for
        desk().answer(0);
        // Another library knows nothing of that file.
        const auto pSource = QSharedPointer<FakeDataSource>::create(desk());
        answerFileDialog(m_folder.path(), [pSource](QFileDialog &) { data()->setDataSource(pSource); });
        m_pController->exportToComputer();
        QCOMPARE(desk().requests.size(), 1);
    }

    void exportedFolderIsShown()
    {
        for (const bool bPackage : {false, true}) {
            make(FileActionType::image());
            answerFileDialog(m_folder.path() + (bPackage ? QStringLiteral("/a.MORAYPack") : QString()));
            exportTo(bPackage);
            desk().answer(desk().requests.size() - 1);
            auto *pBox = m_pWidget->findChild<TSMessageBox *>();
            QVERIFY(pBox != nullptr && !pBox->isVisible());
            const UrlCatcher catcher;
            Q_EMIT pBox->signalResult(TSMessageBox::NoValue);
            QVERIFY(catcher.urls.isEmpty());
            Q_EMIT pBox->signalResult(TSMessageBox::YesValue);
            QCOMPARE(catcher.urls, QList<QUrl>{QUrl(QStringLiteral("file:") + m_folder.path())});
        }
    }

private:
    static QStringList kinds()
    {
        return {QStringLiteral("export"), QStringLiteral("remove"), QStringLiteral("recycle")};
    }
    void start(const QString &kind)
    {
        if (kind == QStringLiteral("export")) {
            answerFileDialog(m_folder.path());
            m_pController->exportToComputer();
        } else if (kind == QStringLiteral("remove")) {
            m_pController->deleteComplete();
        } else {
            m_pController->removeToRecycle();
        }
    }
    void exportTo(bool bPackage)
    {
        if (bPackage)
            m_pController->exportToPackage();
        else
            m_pController->exportToComputer();
    }
    ActionDesk &desk() { return host().desk; }
    QTemporaryDir m_folder;
};

BIGIMGPREVIEW_TEST_MAIN(tst_file_requests)
#include "tst_file_requests.moc"
