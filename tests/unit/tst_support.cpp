#include "FakeHost.h"
#include "TestMain.h"

#include <QSignalSpy>

#include <thread>

/** The fake host itself, where a mistake would let other tests pass for nothing. */
class tst_support : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void replies();
    void answerToDeadActionIsDropped();
    void decoderCountsLeaks();
    void unannouncedWarningsAreKept();
};

void tst_support::replies()
{
    const std::tuple<Reply, int, int> rows[] = {
        {Reply::InsideRequest, 1, 1}, {Reply::Queued, 1, 1},     {Reply::Twice, 2, 1},          {Reply::Never, 0, 1},
        {Reply::OnDemand, 0, 1},      {Reply::RefuseZero, 0, 0}, {Reply::RefuseNegative, 0, -1}};
    for (const auto &[reply, nAnswers, nSign] : rows) {
        FakeHost host;
        host.desk.reply = reply;
        const QSharedPointer<IExportAction> pAction = host.source->exportAction();
        QSignalSpy answers(pAction.data(), &IExportAction::signalExportResult);
        const qint64 nId = pAction->requestExport(QStringLiteral("/tmp/x"), {1, 2}, false);
        QTRY_COMPARE(answers.count(), nAnswers);
        QCOMPARE(nId > 0 ? 1 : int(nId), nSign);
        QCOMPARE(host.desk.of(ActionKind::Export).value(0).fileIds, (QVector<qint64>{1, 2}));
        if (reply == Reply::OnDemand) {
            host.desk.answer(0, FakeResponse::failure(7));
            QCOMPARE(answers.value(0).value(1).value<ResponseInfoPtr>()->returnCode(), 7);
        }
    }
}

void tst_support::answerToDeadActionIsDropped()
{
    FakeHost host;
    host.desk.reply = Reply::OnDemand;
    host.source->removeAction()->requestRemove({1});
    host.desk.report(0, 50);
    host.desk.answer(0);
    QCOMPARE(host.desk.requests.size(), 1);
}

void tst_support::decoderCountsLeaks()
{
    FakeHost host;
    const QString path = QStringLiteral("/pictures/a.png");
    const auto pGate = host.addSlowPicture(1, 1, path);
    std::thread([&host, &path] { host.decoder.openFile(path.toUtf8()); }).join();
    IDecodedDocument *pDocument = host.decoder.takeDocument();
    QVERIFY(pDocument != nullptr);
    std::thread decode([pDocument] { pDocument->createBitmap(1.0, 1.0)->release(); });
    QTRY_COMPARE(pGate->waiting(), 1);
    pGate->open();
    decode.join();
    host.decoder.closeFile();
    QVERIFY(!host.decoder.counts().isBalanced());
    pDocument->release();
    QVERIFY(host.decoder.counts().isBalanced());
    QCOMPARE(host.decoder.counts().inGuiThread, 0);
}

void tst_support::unannouncedWarningsAreKept()
{
    log().expect(QStringLiteral("expected"));
    qWarning("expected and fine");
    QVERIFY(log().unannounced().isEmpty());
    qWarning("surprise");
    QCOMPARE(log().unannounced(), QStringList{QStringLiteral("surprise")});
    log().clear();
}

BIGIMGPREVIEW_TEST_MAIN(tst_support)
#include "tst_support.moc"
