#include "FakeHost.h"
#include "TestMain.h"

#include <QSignalSpy>
#include <QThreadPool>

Q_DECLARE_METATYPE(Reply)

/** The fake host itself, where a mistake would let other tests pass for nothing. */
class tst_support : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void replies_data();
    void replies();
    void answerToDeadActionIsDropped();
    void decoderWaitsAtGateAndCountsLeaks();
    void lookupCanFailAtEveryStep();
    void unannouncedWarningsAreKept();
};

void tst_support::replies_data()
{
    QTest::addColumn<Reply>("reply");
    QTest::addColumn<int>("results");
    QTest::addColumn<int>("sign");
    QTest::newRow("inside") << Reply::InsideRequest << 1 << 1;
    QTest::newRow("queued") << Reply::Queued << 1 << 1;
    QTest::newRow("twice") << Reply::Twice << 2 << 1;
    QTest::newRow("never") << Reply::Never << 0 << 1;
    QTest::newRow("on demand") << Reply::OnDemand << 0 << 1;
    QTest::newRow("zero") << Reply::RefuseZero << 0 << 0;
    QTest::newRow("negative") << Reply::RefuseNegative << 0 << -1;
}

void tst_support::replies()
{
    QFETCH(Reply, reply);
    FakeHost host;
    host.desk.reply = reply;
    const QSharedPointer<IExportAction> pAction = host.source->exportAction();
    QSignalSpy answers(pAction.data(), &IExportAction::signalExportResult);
    const qint64 nId = pAction->requestExport(QStringLiteral("/tmp/x"), {1, 2}, false);
    QFETCH(int, results);
    QTRY_COMPARE(answers.count(), results);
    QTEST(nId > 0 ? 1 : int(nId), "sign");
    QCOMPARE(host.desk.of(ActionKind::Export).value(0).fileIds, (QVector<qint64>{1, 2}));
    if (reply == Reply::OnDemand) {
        host.desk.answer(0, FakeResponse::failure(7));
        QCOMPARE(answers.value(0).value(1).value<ResponseInfoPtr>()->returnCode(), 7);
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

void tst_support::decoderWaitsAtGateAndCountsLeaks()
{
    FakeHost host;
    const QString path = QStringLiteral("/pictures/slow.png");
    FakePicture picture;
    picture.size = QSize(4, 2);
    const QSharedPointer<Gate> gate = host.addSlowPicture(1, 1, path, picture);
    QThreadPool pool;
    IDecodedBitmap *pBitmap = nullptr;
    class Decode : public QRunnable {
    public:
        Decode(IImageDecoder &decoder, const QString &path, IDecodedBitmap **ppBitmap)
            : m_decoder(decoder)
            , m_path(path)
            , m_ppBitmap(ppBitmap)
        {
        }
        void run() override
        {
            if (m_decoder.openFile(m_path.toUtf8())) {
                IDecodedDocument *pDocument = m_decoder.takeDocument();
                *m_ppBitmap = pDocument->createBitmap(1.0, 1.0);
                pDocument->release();
            }
            m_decoder.closeFile();
        }

    private:
        IImageDecoder &m_decoder;
        QString m_path;
        IDecodedBitmap **m_ppBitmap;
    };
    pool.start(new Decode(host.decoder, path, &pBitmap));
    QTRY_COMPARE(gate->waiting(), 1);
    gate->open();
    QVERIFY(pool.waitForDone());
    QVERIFY(pBitmap != nullptr);
    QCOMPARE(pBitmap->rowLength(), 16);
    QVERIFY(!host.decoder.counts().isBalanced());
    pBitmap->release();
    QVERIFY(host.decoder.counts().isBalanced());
    QCOMPARE(host.decoder.counts().inGuiThread, 0);
}

void tst_support::lookupCanFailAtEveryStep()
{
    FakeHost host;
    IPlugin *pPlugin = host.getPlugins(QStringLiteral("ISettingPlugin")).value(0);
    QVERIFY(qobject_cast<ISettingPlugin *>(pPlugin->getObject()) != nullptr);
    host.setting.answersInterface = false;
    QVERIFY(qobject_cast<ISettingPlugin *>(pPlugin->getObject()) == nullptr);
    host.setting.hasObject = false;
    QVERIFY(pPlugin->getObject() == nullptr);
    QVERIFY(host.getPlugins(QStringLiteral("IOther")).isEmpty());
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
