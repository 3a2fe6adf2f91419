#include "FileActionTest.h"

namespace {

/** Does something of the test's own inside the request and inside the cancellation. */
class OwnRemoveAction final : public IRemoveAction {
    Q_OBJECT

public:
    qint64 requestRemove(const QVector<qint64> &) override { return inRequest ? inRequest() : 1; }
    void requestCancel(qint64 nActionId) override
    {
        if (inCancel)
            inCancel(nActionId);
    }
    std::function<qint64()> inRequest;
    std::function<void(qint64)> inCancel;
};

ResponseInfoPtr responseOf(int nCode, const QString &error = {})
{
    return FakeResponse::failure(nCode, error.isEmpty() ? QStringList() : QStringList{error});
}

} // namespace

/** The host's actions, the file dialogs before them, and what may happen meanwhile. */
class tst_file_requests : public FileActionTest {
    Q_OBJECT

private Q_SLOTS:
    void runs_data();
    void runs();
    void results_data();
    void results();
    void refused();
    void blockedDeletion();
    void progressText();
    void lateAndRepeatedAnswers();
    void twoInARow();
    void cancelRaces();
    void cancelAfterTheResult();
    void requestReplacedInside();
    void widgetDiesInside();
    void widgetDiesDuringARequest();
    void actionDies();
    void hostThatNeverAnswers();
    void exportDialogs_data();
    void exportDialogs();
    void folderDialogAfterPack();
    void fileDialogOutlivesTheWidget();
    void fileChangesBehindTheFileDialog();
    void exportedFolderIsShown();

private:
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
    /** An action object of the test's own, which the library hands out from now on. */
    QSharedPointer<OwnRemoveAction> handOutOwnAction()
    {
        const auto pAction = QSharedPointer<OwnRemoveAction>::create();
        host().source->ownRemoveAction = pAction;
        return pAction;
    }

    QTemporaryDir m_folder;
};

void tst_file_requests::runs_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<Reply>("reply");
    QTest::addColumn<QString>("title");
    struct {
        const char *pName;
        Reply reply;
    } const replies[] = {{"on demand", Reply::OnDemand},
                         {"inside the request", Reply::InsideRequest},
                         {"queued", Reply::Queued},
                         {"twice", Reply::Twice}};
    for (const auto &reply : replies) {
        QTest::addRow("export, %s", reply.pName)
            << QStringLiteral("export") << reply.reply << QStringLiteral("Exporting");
        QTest::addRow("remove, %s", reply.pName)
            << QStringLiteral("remove") << reply.reply << QStringLiteral("Deleting files permanently");
        QTest::addRow("recycle, %s", reply.pName)
            << QStringLiteral("recycle") << reply.reply << QStringLiteral("Deleting files...");
    }
}

void tst_file_requests::runs()
{
    QFETCH(QString, kind);
    QFETCH(Reply, reply);
    QFETCH(QString, title);
    desk().reply = reply;
    start(kind);
    QCOMPARE(desk().requests.size(), 1);
    QCOMPARE(desk().requests.first().fileIds, QVector<qint64>{1});
    if (desk().reply == Reply::InsideRequest) {
        QVERIFY(progress() == nullptr);
    } else {
        QVERIFY(progress() != nullptr && progress()->parentWidget() == m_pWidget);
        const auto labels = progress()->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
        QCOMPARE(labels.first()->text(), title);
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

void tst_file_requests::results_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<ResponseInfoPtr>("response");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("hidden");
    const auto row = [](const char *pName, const char *pKind, const ResponseInfoPtr &pResponse, const char *pShown,
                        const char *pHidden = "") {
        QTest::newRow(pName) << QString::fromLatin1(pKind) << pResponse << QString::fromLatin1(pShown)
                             << QString::fromLatin1(pHidden);
    };
    const char *const occupied = "Operation exception|Failed to delete file, the file is currently occupied!";
    const char *const full =
        "Insufficient Disk Space|This disk has insufficient space remaining. Please select another disk.";
    const QString error = QStringLiteral("line");
    row("export", "export", responseOf(0), "", "Export Complete|Do you hope to view the export file(s) in folder?");
    row("export with errors", "export", responseOf(0, error), "");
    row("export failed", "export", responseOf(7), "");
    row("export, disk full", "export", responseOf(32305, error), full);
    row("export, no result", "export", {}, "");
    row("remove failed", "remove", responseOf(7, error), "");
    row("remove, no result", "remove", {}, "");
    row("recycle", "recycle", responseOf(0), "");
    row("recycle failed", "recycle", responseOf(7), occupied);
    row("recycle with errors", "recycle", responseOf(0, error), occupied);
    row("recycle, disk full", "recycle", responseOf(32305), occupied);
    row("recycle, no result", "recycle", {}, occupied);
}

void tst_file_requests::results()
{
    QFETCH(QString, kind);
    QFETCH(ResponseInfoPtr, response);
    QFETCH(QString, shown);
    QFETCH(QString, hidden);
    start(kind);
    desk().answer(0, response);
    settle();
    QCOMPARE(boxes(true).join(QLatin1Char('\n')), shown);
    QCOMPARE(boxes(false).join(QLatin1Char('\n')), hidden);
    QVERIFY(progress() == nullptr);
    for (TSMessageBox *pBox : m_pWidget->findChildren<TSMessageBox *>()) {
        if (pBox->isVisible()) {
            QCOMPARE(pBox->findChild<QAbstractButton *>(QStringLiteral("ok_btn"))->text(), QStringLiteral("OK"));
            pBox->close();
        }
    }
    QCOMPARE(log().hasLine(QStringLiteral("export pkg err:")), kind == QStringLiteral("export") && hidden.isEmpty());
}

void tst_file_requests::refused()
{
    for (const char *pKind : {"export", "remove", "recycle"}) {
        const QString kind = QString::fromLatin1(pKind);
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

void tst_file_requests::blockedDeletion()
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

void tst_file_requests::progressText()
{
    const std::pair<double, const char *> rows[] = {{0.0, "0"},  {99.9, "99"},   {100.0, "100"},
                                                    {-0.9, "0"}, {qQNaN(), "0"}, {qInf(), "100"}};
    for (const char *pKind : {"export", "remove", "recycle"}) {
        start(QString::fromLatin1(pKind));
        for (const auto &[fValue, pText] : rows) {
            desk().report(desk().requests.size() - 1, fValue, 3, 2);
            QCOMPARE(status(), QStringLiteral("Completed(%1%)").arg(QLatin1String(pText)));
        }
        desk().answer(desk().requests.size() - 1);
        settle();
    }
}

void tst_file_requests::lateAndRepeatedAnswers()
{
    auto pAction = handOutOwnAction();
    m_pController->deleteComplete();
    QVERIFY(progress() != nullptr);
    Q_EMIT pAction->signalRemoveProgress(99, 50.0, 1, 0); // of nobody
    Q_EMIT pAction->signalRemoveResult(99, FakeResponse::success());
    QCOMPARE(status(), QString());
    Q_EMIT pAction->signalRemoveProgress(1, 50.0, 1, 0);
    QCOMPARE(status(), QStringLiteral("Completed(50%)"));
    Q_EMIT pAction->signalRemoveResult(1, FakeResponse::success());
    Q_EMIT pAction->signalRemoveProgress(1, 60.0, 1, 0); // after the result
    Q_EMIT pAction->signalRemoveResult(1, FakeResponse::success());
    settle();
    QCOMPARE(log().count(QStringLiteral("remove file retCode:")), 1);
    QCOMPARE(log().count(QStringLiteral("remove file:nProgess=")), 1);
    // Nobody but the test holds the object any more.
    const QWeakPointer<OwnRemoveAction> pWeak = pAction;
    host().source->ownRemoveAction.reset();
    pAction.reset();
    QVERIFY(pWeak.isNull());
}

void tst_file_requests::twoInARow()
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

void tst_file_requests::cancelRaces()
{
    // The result comes out of the cancellation itself.
    auto pAction = handOutOwnAction();
    pAction->inCancel = [pRaw = pAction.data()](qint64 nActionId) {
        Q_EMIT pRaw->signalRemoveResult(nActionId, FakeResponse::failure(1));
    };
    m_pController->deleteComplete();
    pAction.reset();
    host().source->ownRemoveAction.reset();
    progress()->slotCloseBtnClicked(true);
    settle();
    QVERIFY(m_pWidget->findChildren<TsProgressDialog *>().isEmpty());
    QCOMPARE(log().count(QStringLiteral("remove file retCode:1")), 1);

    // Progress between the cancellation and the result.
    start(QStringLiteral("export"));
    progress()->slotCloseBtnClicked(true);
    QCOMPARE(desk().cancelled, QVector<qint64>{1});
    desk().report(0, 70.0);
    settle();
    QVERIFY(progress() == nullptr);
}

void tst_file_requests::cancelAfterTheResult()
{
    for (const char *pKind : {"export", "remove", "recycle"}) {
        start(QString::fromLatin1(pKind));
        const QPointer<TsProgressDialog> pDialog = progress();
        desk().answer(desk().requests.size() - 1, pKind[0] == 'e' ? FakeResponse::failure(5) : FakeResponse::success());
        QVERIFY(pDialog);
        Q_EMIT pDialog->userCancle();
        settle();
    }
    QVERIFY(desk().cancelled.isEmpty());
}

void tst_file_requests::requestReplacedInside()
{
    // The host's request runs the user's next command before it returns.
    auto pAction = handOutOwnAction();
    bool bNested = false;
    pAction->inRequest = [this, &bNested]() -> qint64 {
        if (bNested)
            return 7;
        bNested = true;
        m_pController->deleteComplete();
        return 6;
    };
    m_pController->deleteComplete();
    settle();
    QCOMPARE(m_pWidget->findChildren<TsProgressDialog *>().size(), 1);
    Q_EMIT pAction->signalRemoveResult(6, FakeResponse::success());
    QVERIFY(progress() != nullptr);
    Q_EMIT pAction->signalRemoveResult(7, FakeResponse::success());
    QVERIFY(progress() == nullptr);
}

void tst_file_requests::widgetDiesInside()
{
    auto pAction = handOutOwnAction();
    pAction->inRequest = [this, pRaw = pAction.data()]() -> qint64 {
        Q_EMIT pRaw->signalRemoveResult(3, FakeResponse::success());
        delete m_pWidget.data();
        return 3;
    };
    pAction.reset();
    m_pController->deleteComplete();
    QVERIFY(!m_pWidget);
    host().source->ownRemoveAction.reset();
    settle();
}

void tst_file_requests::widgetDiesDuringARequest()
{
    for (const char *pKind : {"export", "remove", "recycle"})
        start(QString::fromLatin1(pKind));
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

void tst_file_requests::actionDies()
{
    auto *pRaw = new OwnRemoveAction;
    host().source->ownRemoveAction.reset(pRaw, [](IRemoveAction *) {}); // the host's own, lent out
    m_pController->deleteComplete();
    QVERIFY(progress() != nullptr);
    const QPointer<TsProgressDialog> pDialog = progress();
    delete pRaw;
    QVERIFY(progress() == nullptr);
    Q_EMIT pDialog->userCancle();
    settle();
    QVERIFY(!pDialog);
    host().source->ownRemoveAction.reset();
    start(QStringLiteral("remove"));
    QVERIFY(progress() != nullptr);
    desk().answer(0);
}

void tst_file_requests::hostThatNeverAnswers()
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

void tst_file_requests::exportDialogs_data()
{
    QTest::addColumn<bool>("package");
    QTest::addColumn<bool>("known"); // where the last export went
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("typed"); // empty: cancelled
    QTest::addColumn<QString>("path");
    const auto row = [](const char *pName, bool bPackage, bool bKnown, const char *pTitle, const char *pTyped,
                        const char *pPath) {
        QTest::newRow(pName) << bPackage << bKnown << QString::fromLatin1(pTitle) << QString::fromUtf8(pTyped)
                             << QString::fromUtf8(pPath);
    };
    row("pack", true, false, "Export Library Pack", "a.MORAYPack", "a.MORAYPack");
    row("pack again", true, true, "Export Library Pack", "ü %1 'b'.MORAYPack", "ü %1 'b'.MORAYPack");
    row("pack without suffix", true, false, "Export Library Pack", "a", "a.MORAYPack");
    row("pack, cancelled", true, false, "Export Library Pack", "", "");
    row("folder", false, false, "Export file path...", ".", "");
    row("folder again", false, true, "Select file path...", ".", "");
    row("folder, cancelled", false, true, "Select file path...", "", "");
}

void tst_file_requests::exportDialogs()
{
    QFETCH(bool, package);
    QFETCH(bool, known);
    QFETCH(QString, typed);
    QFETCH(QString, path);
    QTemporaryDir last;
    host().settings.exportPath = known ? last.path() : QString();
    const QString before = host().settings.exportPath;
    answerFileDialog(typed.isEmpty() ? QString() : QDir::cleanPath(m_folder.filePath(typed)));
    exportTo(package);
    QTEST(m_dialogTitle, "title");
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

void tst_file_requests::folderDialogAfterPack()
{
    QFile pack(m_folder.filePath(QStringLiteral("last.MORAYPack")));
    QVERIFY(pack.open(QIODevice::WriteOnly));
    host().settings.exportPath = pack.fileName();
    QString offered;
    answerFileDialog(QString(), [&offered](QFileDialog &dialog) { offered = dialog.findChild<QLineEdit *>()->text(); });
    m_pController->exportToComputer();
    QCOMPARE(m_dialogFolder, m_folder.path());
    QCOMPARE(offered, QString()); // a file is no folder to export to
}

void tst_file_requests::fileDialogOutlivesTheWidget()
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

void tst_file_requests::fileChangesBehindTheFileDialog()
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

void tst_file_requests::exportedFolderIsShown()
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

BIGIMGPREVIEW_TEST_MAIN(tst_file_requests)
#include "tst_file_requests.moc"
