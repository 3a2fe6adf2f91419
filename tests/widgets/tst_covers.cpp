#include "FileActionTest.h"
#include "actions/TsQtUtils.h"
#include "common/CNotificationFloatingWidget.h"
#include "image/ImgPreviewWidget.h"

#include <QImageReader>
#include <QImageWriter>

namespace {

/** A picture that does not pack well, so that its file is large. */
QImage noise(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    quint32 nState = 1;
    for (int y = 0; y < size.height(); ++y) {
        auto *pLine = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            nState = nState * 1664525U + 1013904223U;
            pLine[x] = 0xFF000000U | nState >> 8U;
        }
    }
    return image;
}

QImage plain(const QSize &size)
{
    return plainImage(size, Qt::darkGreen);
}

QSize sizeOf(const QString &path)
{
    QImageReader reader(path);
    return reader.format() == "webp" ? reader.size() : QSize();
}

/** Where Qt comes without the format, the user's own file is handed on. */
bool writesWebP()
{
    return QImageWriter::supportedImageFormats().contains("webp");
}

} // namespace

/** Preview pictures: how they are prepared, and their way to the host. */
class tst_covers : public FileActionTest {
    Q_OBJECT

private Q_SLOTS:
    void preparation()
    {
        const std::tuple<QImage, const char *, QSize> rows[] = {
            {noise({3000, 2000}), "a.jpg", {480, 320}},
            {noise({1000, 1500}), "a.PNG", {320, 480}},
            {noise({901, 901}), "a.png", {320, 320}},
            {noise({900, 1200}), "a.jpeg", {900, 1200}},  // one side too short
            {plain({1200, 1000}), "a.png", {1200, 1000}}, // few bytes
            {noise({800, 800}), "a.png", {800, 800}},
            {plain({1, 1}), "a.webp", {1, 1}}};
        for (const auto &[picture, pName, expected] : rows) {
            const QString path = save(picture, QLatin1String(pName));
            int nWidth = -1;
            int nHeight = -1;
            const QString made = TsQtUtils::prepareCoverImage(path, &nWidth, &nHeight);
            if (!writesWebP()) {
                QCOMPARE(made, QFile::exists(path) ? path : QString());
                continue;
            }
            QVERIFY(made != path && made.startsWith(QDir::tempPath()) && made.endsWith(QStringLiteral(".webp")));
            QCOMPARE(QSize(nWidth, nHeight), expected);
            QCOMPARE(sizeOf(made), expected);
            QFile::remove(made);
        }
    }

    void badPictures()
    {
        for (const char *pName : {"gone.png", "a.txt", "png", "a.png"}) {
            const QString path = m_folder.filePath(QLatin1String(pName));
            const bool bHandedOn = qstrcmp(pName, "a.png") == 0; // as it is, though no picture: the host knows better
            QVERIFY(qstrcmp(pName, "gone.png") == 0 || writeFile(path, "no picture"));
            int nWidth = 0;
            int nHeight = 0;
            QCOMPARE(TsQtUtils::prepareCoverImage(path, &nWidth, &nHeight), bHandedOn ? path : QString());
            // An empty path would take the preview picture away.
            m_pController->setCover(path);
            finishWorkers();
            QCOMPARE(sent().size(), bHandedOn ? 1 : 0);
        }
    }

    void fullTemporaryFolder()
    {
#if defined(Q_OS_WIN)
        const char *pVariable = "TMP";
        const QByteArray unusable("C:\\none");
#else
        const char *pVariable = "TMPDIR";
        const QByteArray unusable("/proc");
#endif
        const QByteArray before = qgetenv(pVariable);
        qputenv(pVariable, unusable);
        const QString path = save(plain({50, 20}), QStringLiteral("kept.png"));
        answerFileDialog(path);
        m_pController->chooseCover();
        finishWorkers();
        before.isEmpty() ? qunsetenv(pVariable) : qputenv(pVariable, before);
        QCOMPARE(sent().size(), 1);
        QCOMPARE(sent().first().path, path);
    }

    void chosenPicture_data()
    {
        const auto row = columns<QSize, QSize>("size", "expected");
        row("wide", QSize(1000, 600), QSize(600, 600));
        row("tall", QSize(40, 90), QSize(40, 40));
        row("square", QSize(70, 70), QSize(70, 70));
        row("large", QSize(2000, 1500), QSize(320, 320));
    }

    void chosenPicture()
    {
        const auto [size, expected] = currentRow<QSize, QSize>();
        const QString path = save(noise(size), QString::fromUtf8("a ü%1'.png"));
        answerFileDialog(path);
        m_pController->chooseCover();
        QCOMPARE(m_dialogTitle, QStringLiteral("Choose a photo"));
        data()->setCurrentFile(2); // the user steps on
        finishWorkers();
        QCOMPARE(sent().size(), 1);
        QCOMPARE(sent().first().fileIds, QVector<qint64>{1});
        QCOMPARE(sent().first().path == path, !writesWebP());
        if (writesWebP())
            QCOMPARE(sizeOf(sent().first().path), expected);
        host().desk.answer(0);
        QVERIFY(!m_calls.contains(QStringLiteral("refresh"))); // another file is shown
    }

    void theLastOneStays()
    {
        const QString slow = save(noise({3000, 3000}), QStringLiteral("slow.png"));
        const QString quick = save(plain({20, 20}), QStringLiteral("quick.png"));
        m_pController->setCover(slow);
        m_pController->setCover(quick);
        QTRY_COMPARE(sent().size(), 2);
        if (writesWebP()) {
            QCOMPARE(sizeOf(sent().at(0).path), QSize(320, 320));
            QCOMPARE(sizeOf(sent().at(1).path), QSize(20, 20));
        }
        host().desk.answer(0); // of the request that the second one replaced
        QVERIFY(m_calls.isEmpty());
        host().desk.answer(1);
        QCOMPARE(m_calls, QStringList{QStringLiteral("refresh")});
    }

    void answers_data()
    {
        const auto row = columns<Reply, ResponseInfoPtr, bool, QString>("reply", "response", "success", "line");
        const QString answered = QStringLiteral("set cover action response");
        const QString refused = QStringLiteral("preview audio set cover action id <= 0");
        row("success", Reply::Queued, FakeResponse::success(), true, answered);
        row("inside the request", Reply::InsideRequest, FakeResponse::success(), true, answered);
        row("twice", Reply::Twice, FakeResponse::success(), true, answered);
        row("failure", Reply::Queued, FakeResponse::failure(4), false, answered);
        row("errors", Reply::Queued, FakeResponse::failure(0, {answered}), false, answered);
        row("refused", Reply::RefuseZero, FakeResponse::success(), false, refused);
    }

    void answers()
    {
        const auto [reply, response, success, line] = currentRow<Reply, ResponseInfoPtr, bool, QString>();
        make(FileActionType::audio());
        host().desk.reply = reply;
        host().desk.response = response;
        m_pController->setCover(save(plain({20, 20}), QStringLiteral("a.png")));
        finishWorkers();
        settle();
        QCOMPARE(log().count(line), 1);
        const auto notices = m_pWidget->findChildren<CNotificationFloatingWidget *>();
        QCOMPARE(notices.size(), success ? 1 : 0);
        QCOMPARE(m_calls, success ? QStringList{QStringLiteral("refresh")} : QStringList());
        if (success)
            QVERIFY(notices.first()->isVisible());
    }

    void widgetDiesDuringThePreparation()
    {
        m_pController->setCover(save(noise({1500, 1500}), QStringLiteral("a.png")));
        delete m_pWidget.data();
        finishWorkers();
        QVERIFY(sent().isEmpty());
    }

    void anotherLibraryMeanwhile()
    {
        m_pController->setCover(save(plain({20, 20}), QStringLiteral("a.png")));
        m_pController->setCover(save(plain({30, 30}), QStringLiteral("b.png")));
        data()->clearPreviewData();
        for (int i = 0; i < 3; ++i)
            finishWorkers();
        QVERIFY(sent().isEmpty());
        attachHost();
        openFiles({1, 2, 3}, 2);
        m_pController->setCover(save(plain({40, 40}), QStringLiteral("c.png")));
        finishWorkers();
        QCOMPARE(sent().size(), 1);
    }

    /** One's own file keeps its zoom; a host's picture is read again. */
    void refreshOfThePicture()
    {
        const auto pFile = host().addPicture(1, 10, QStringLiteral("/1.png"));
        pFile->largePreview = QStringLiteral("/large.png");
        openFiles({1}, 1);
        host().desk.reply = Reply::Queued;
        const QString cover = save(plain({20, 20}), QStringLiteral("a.png"));
        for (const auto &[nMode, nDecodes] :
             {std::pair(ImgPreviewWidget::OpenOwnFile, 1), {ImgPreviewWidget::OpenHostRendition, 2}}) {
            const auto nBefore = host().decoder.counts().paths.count(QStringLiteral("/1.png"));
            ImgPreviewWidget widget(nullptr);
            widget.show();
            widget.setOpenMode(nMode);
            widget.loadImage(pFile->path, 0, 1, 1.0, 0);
            finishWorkers();
            QSignalSpy updates(&widget, &ImgPreviewWidget::signal_img_preview_update);
            answerFileDialog(cover);
            widget.slot_setCover();
            finishWorkers();
            settle();
            finishWorkers();
            QCOMPARE(host().decoder.counts().paths.count(QStringLiteral("/1.png")) - nBefore, nDecodes);
            QCOMPARE(updates.count(), 1);
            const auto notices = widget.findChildren<CNotificationFloatingWidget *>();
            QVERIFY(notices.size() == 1 && notices.first()->isVisible());
        }
    }

private:
    QString save(const QImage &image, const QString &name)
    {
        const QString path = m_folder.filePath(name);
        image.save(path);
        return path;
    }
    QVector<ActionRequest> sent()
    {
        return host().desk.of(ActionKind::File);
    }

    QTemporaryDir m_folder;
};

BIGIMGPREVIEW_TEST_MAIN(tst_covers)
#include "tst_covers.moc"
