#include "FileActionTest.h"

/** The file dialogs of exports and preview pictures, and what may happen behind them. */
class tst_file_exports : public FileActionTest {
    Q_OBJECT

private Q_SLOTS:
    void exportDialogs_data();
    void exportDialogs();
    void folderDialogAfterPack();
    void fileDialogOutlivesTheWidget();
    void fileChangesBehindTheFileDialog();
    void exportedFolderIsShown();

private:
    ActionDesk &desk() { return host().desk; }

    QTemporaryDir m_folder;
};

void tst_file_exports::exportDialogs_data()
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

void tst_file_exports::exportDialogs()
{
    QFETCH(bool, package);
    QFETCH(bool, known);
    QFETCH(QString, typed);
    QFETCH(QString, path);
    QTemporaryDir last;
    host().settings.exportPath = known ? last.path() : QString();
    const QString before = host().settings.exportPath;
    answerFileDialog(typed.isEmpty() ? QString() : QDir::cleanPath(m_folder.filePath(typed)));
    if (package)
        m_pController->exportToPackage();
    else
        m_pController->exportToComputer();
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

void tst_file_exports::folderDialogAfterPack()
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

void tst_file_exports::fileDialogOutlivesTheWidget()
{
    for (const bool bPackage : {true, false}) {
        make(FileActionType::image());
        answerFileDialog(m_folder.path(), [this](QFileDialog &) { delete m_pWidget.data(); });
        if (bPackage)
            m_pController->exportToPackage();
        else
            m_pController->exportToComputer();
        QVERIFY(!m_pWidget && desk().requests.isEmpty());
    }
    make(FileActionType::image());
    answerFileDialog(m_folder.path(), [this](QFileDialog &) { delete m_pWidget.data(); });
    m_pController->chooseCover();
    QVERIFY(!m_pWidget);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void tst_file_exports::fileChangesBehindTheFileDialog()
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

void tst_file_exports::exportedFolderIsShown()
{
    for (const bool bPackage : {false, true}) {
        make(FileActionType::image());
        answerFileDialog(m_folder.path() + (bPackage ? QStringLiteral("/a.MORAYPack") : QString()));
        if (bPackage)
            m_pController->exportToPackage();
        else
            m_pController->exportToComputer();
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

BIGIMGPREVIEW_TEST_MAIN(tst_file_exports)
#include "tst_file_exports.moc"
