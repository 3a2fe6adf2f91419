#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "image/ImgPreviewToolBar.h"
#include "image/ImgPreviewWidget.h"
#include "image/TSLargePreviewView.h"

#include <QDir>
#include <QGraphicsScene>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWheelEvent>

namespace {

constexpr qint64 Png = 10;
const QSize ViewSize(800, 600);
const QSize PlaceholderSize(500, 500);

/** Two pictures of one pixel, red and white, in turn. */
QByteArray gif()
{
    QByteArray file = QByteArray::fromHex("47494638396101000100800000ff0000ffffff"
                                          "21ff0b4e45545343415045322e300301000000");
    for (const char *pPixel : {"02024401", "02024c01"}) {
        file += QByteArray::fromHex("21f90404020000002c0000000001000100") + QByteArray(1, '\0');
        file += QByteArray::fromHex(pPixel) + QByteArray(1, '\0');
    }
    return file + QByteArray(";");
}

void sendMouse(QWidget *pWidget, QEvent::Type type, const QPoint &pos, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, pos, pWidget->mapToGlobal(pos), type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(pWidget, &event);
}

void drag(QWidget *pWidget, const QPoint &from, const QPoint &to)
{
    sendMouse(pWidget, QEvent::MouseButtonPress, from, Qt::LeftButton);
    sendMouse(pWidget, QEvent::MouseMove, (from + to) / 2, Qt::LeftButton);
    sendMouse(pWidget, QEvent::MouseMove, to, Qt::LeftButton);
    sendMouse(pWidget, QEvent::MouseButtonRelease, to, Qt::NoButton);
}

} // namespace

class tst_image_widget : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void loads_data();
    void loads();
    void staleResultIsIgnored();
    void sameFileIsDecodedOnce();
    void clearedDuringTheDecode();
    void destroyedDuringTheDecode();
    void animationPlaysFromMemory();
    void commands_data();
    void commands();
    void buttonsAreOffWhileItMoves();
    void destroyedWhileItMoves();
    void wheelKeepsThePointUnderTheCursor_data();
    void wheelKeepsThePointUnderTheCursor();
    void rotation();
    void fitBringsADraggedPictureBack();
    void topStripDragsTheWindow();
    void resizePlacesTheTools();
    void reducedRow_data();
    void reducedRow();
    void toolTipsNameTheKeys();
    void doubleClicks_data();
    void doubleClicks();

protected:
    void init() override
    {
        PluginTest::init();
        m_pWidget = std::make_unique<ImgPreviewWidget>(nullptr);
        m_pWidget->resize(ViewSize);
        m_pWidget->show();
    }
    void cleanup() override
    {
        m_pWidget.reset();
        PluginTest::cleanup();
    }

private:
    void load(qint64 nId, int nOpenMode = ImgPreviewWidget::OpenOwnFile)
    {
        openFiles({1, 2, 3}, nId);
        m_pWidget->setOpenMode(nOpenMode);
        m_pWidget->loadImage(data()->currentFilePath(), 0, 1, 1.0, 0);
    }
    void show(const QSize &size, qint64 nId = 1)
    {
        FakePicture picture;
        picture.size = size;
        host().addPicture(nId, Png, QStringLiteral("/%1.png").arg(nId), picture);
        load(nId);
        finishWorkers();
        m_pWidget->showLoaded();
        QCOMPARE(item()->pictureSize(), size);
    }
    TSLargePreviewView *view() const { return m_pWidget->findChild<TSLargePreviewView *>(); }
    CResourceItem *item() const { return dynamic_cast<CResourceItem *>(view()->scene()->items().value(0)); }
    ImgPreviewToolBar *bar() const { return m_pWidget->findChild<ImgPreviewToolBar *>(); }
    QString percent() const
    {
        for (const QLabel *pLabel : bar()->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (pLabel->text().endsWith(QLatin1Char('%')))
                return pLabel->text();
        }
        return {};
    }
    bool isMoving() const { return !bar()->button(ImgPreviewToolBar::FitToWindowButton)->isEnabled(); }
    /** Lets the ticks of the timer pass at once. */
    void settle()
    {
        for (int i = 0; isMoving() && i < 100; ++i)
            m_pWidget->slot_PreviewTimerout();
        QVERIFY(!isMoving());
    }
    int notices() const { return m_pWidget->findChildren<CNotificationFloatingWidget *>().size(); }

    std::unique_ptr<ImgPreviewWidget> m_pWidget;
};

void tst_image_widget::loads_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("readable"); // s: source, l: large preview, t: thumbnail, c: the host's cache
    QTest::addColumn<bool>("needsLoader");
    QTest::addColumn<QSize>("expected");
    QTest::addColumn<int>("notices");
    const QSize source(11, 11), large(22, 22), thumb(33, 33), cached(44, 44);
    const auto row = [](const char *pName, int nMode, const char *pReadable, bool bLoader, const QSize &size,
                        int nNotices) {
        QTest::newRow(pName) << nMode << QString::fromLatin1(pReadable) << bLoader << size << nNotices;
    };
    row("own file", 0, "slt", true, source, 0);
    row("own file, large", 0, "lt", true, large, 1);
    row("own file, thumbnail", 0, "t", true, thumb, 1);
    row("own file, nothing", 0, "", true, PlaceholderSize, 0);
    row("rendition", 2, "slt", false, source, 0);
    row("rendition, large", 2, "lt", false, large, 1);
    row("host, loader", 3, "slt", true, source, 0);
    row("host, loader, large", 3, "lt", true, large, 1);
    row("host, loader but no large preview", 3, "stc", true, source, 0);
    row("host, loader but only the cache", 3, "c", true, cached, 0);
    row("host, cache", 3, "sltc", false, cached, 0);
    row("host, empty cache", 3, "slt", false, source, 0);
    row("host, nothing", 3, "", false, PlaceholderSize, 0);
}

void tst_image_widget::loads()
{
    QTemporaryDir folder;
    QFETCH(int, mode);
    QFETCH(QString, readable);
    QFETCH(bool, needsLoader);
    const auto pFile = host().addFile(1, Png, QStringLiteral("/s.png"));
    pFile->largePreview = folder.filePath(QStringLiteral("large.png"));
    pFile->thumbnail = QStringLiteral("/t.png");
    pFile->loaderNeeded = needsLoader;
    const auto put = [this, readable](char key, const QString &path, int nSide) {
        FakePicture picture;
        picture.size = QSize(nSide, nSide);
        if (readable.contains(QLatin1Char(key)))
            host().decoder.setPicture(path, picture);
    };
    put('s', pFile->path, 11);
    put('l', pFile->largePreview, 22);
    put('t', pFile->thumbnail, 33);
    if (readable.contains(QLatin1Char('l')))
        QVERIFY(QFile(pFile->largePreview).open(QIODevice::WriteOnly));
    QImage cached(44, 44, QImage::Format_RGB32);
    cached.fill(Qt::red);
    if (readable.contains(QLatin1Char('c')))
        host().cache->largePictures.insert(1, cached);

    QSignalSpy ends(m_pWidget.get(), &ImgPreviewWidget::signal_load_img_end);
    load(1, mode);
    finishWorkers();
    QCOMPARE(ends.count(), 1);
    QVERIFY(!data()->isLoading());
    QTEST(item()->pictureSize(), "expected");
    QTEST(notices(), "notices");
    QCOMPARE(host().decoder.counts().inGuiThread, 0);
    QVERIFY(!item()->isVisible()); // the page comes first, then the fitted picture
    m_pWidget->showLoaded();
    QVERIFY(item()->isVisible());
}

void tst_image_widget::staleResultIsIgnored()
{
    FakePicture picture;
    picture.size = QSize(100, 10);
    const auto pGate = host().addSlowPicture(1, Png, QStringLiteral("/1.png"), picture);
    picture.size = QSize(200, 20);
    host().addPicture(2, Png, QStringLiteral("/2.png"), picture);
    QSignalSpy ends(m_pWidget.get(), &ImgPreviewWidget::signal_load_img_end);
    load(1);
    QTRY_COMPARE(pGate->waiting(), 1);
    m_pWidget->clearPreview();
    load(2);
    QVERIFY(data()->isLoadingFor(1, m_pWidget.get()) && data()->isLoadingFor(2, m_pWidget.get()));
    pGate->open();
    finishWorkers();
    QCOMPARE(item()->pictureSize(), QSize(200, 20));
    QCOMPARE(ends.count(), 1);
    QCOMPARE(notices(), 0);
    QVERIFY(!data()->isLoading());
}

void tst_image_widget::sameFileIsDecodedOnce()
{
    const auto pGate = host().addSlowPicture(1, Png, QStringLiteral("/1.png"));
    host().addPicture(2, Png, QStringLiteral("/2.png"));
    load(1);
    QTRY_COMPARE(pGate->waiting(), 1);
    m_pWidget->clearPreview();
    load(2);
    m_pWidget->clearPreview();
    load(1); // back before the first result
    pGate->open();
    finishWorkers();
    QCOMPARE(host().decoder.counts().paths.count(QStringLiteral("/1.png")), 1);
    QCOMPARE(item()->pictureSize(), QSize(64, 48));
    QCOMPARE(item()->filePath(), QStringLiteral("/1.png"));
}

void tst_image_widget::clearedDuringTheDecode()
{
    const auto pGate = host().addSlowPicture(1, Png, QStringLiteral("/1.png"));
    load(1);
    QTRY_COMPARE(pGate->waiting(), 1);
    m_pWidget->clearPreview();
    pGate->open();
    finishWorkers();
    QVERIFY(!data()->isLoading());
    QVERIFY(item() == nullptr);
    m_pWidget->showLoaded();
    for (const auto pSlot :
         {&ImgPreviewWidget::slot_fullPreviewBtnClicked, &ImgPreviewWidget::slot_ZoomInBtnClicked,
          &ImgPreviewWidget::slot_RotateBtnCllicked, &ImgPreviewWidget::slot_HorizonalRotateBtnClicked})
        (m_pWidget.get()->*pSlot)();
    settle();
    show(QSize(30, 20), 2);
}

void tst_image_widget::destroyedDuringTheDecode()
{
    const auto pGate = host().addSlowPicture(1, Png, QStringLiteral("/1.png"));
    load(1);
    QTRY_COMPARE(pGate->waiting(), 1);
    m_pWidget = std::make_unique<ImgPreviewWidget>(nullptr);
    QVERIFY(!data()->isLoading());
    load(1); // the new widget's own load
    QVERIFY(data()->isLoadingFor(1, m_pWidget.get()));
    pGate->open();
    finishWorkers();
    QVERIFY(!data()->isLoading());
    QCOMPARE(item()->pictureSize(), QSize(64, 48));
}

void tst_image_widget::animationPlaysFromMemory()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.gif"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(gif());
    file.close();
    FakePicture picture;
    picture.size = QSize(1, 1);
    host().addPicture(1, 30, path, picture);
    load(1);
    QTRY_VERIFY(item()->hasAnimation());
    m_pWidget->showLoaded();
    for (const QFileInfo &fd : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System))
        QVERIFY(fd.symLinkTarget() != path);
    QVERIFY(file.remove());
    QSet<QRgb> seen;
    const auto seesBoth = [this, &seen] {
        QImage image(1, 1, QImage::Format_RGB32);
        QPainter painter(&image);
        view()->scene()->render(&painter, QRectF(0, 0, 1, 1), QRectF(0.25, 0.25, 0.5, 0.5));
        painter.end();
        seen.insert(image.pixel(0, 0));
        return seen.contains(qRgb(255, 0, 0)) && seen.contains(qRgb(255, 255, 255));
    };
    QTRY_VERIFY(seesBoth());
    show(QSize(60, 40), 2);
    QVERIFY(!item()->hasAnimation());
}

void tst_image_widget::commands_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("commands"); // f: fit, w: fit to width, 1: actual size, +, -, r: rotate, m: flip
    QTest::addColumn<QString>("expected");
    const auto row = [](const QSize &size, const char *pCommands, const char *pExpected) {
        QTest::addRow("%dx%d %s", size.width(), size.height(), pCommands)
            << size << QString::fromLatin1(pCommands) << QString::fromLatin1(pExpected);
    };
    const QSize small(100, 100), wide(1600, 400), tall(400, 1200), odd(1333, 777);
    row(small, "", "100%");
    row(small, "f", "100%");
    row(small, "w", "100%");
    row(small, "++-", "125%");
    row(small, "+++++++++++", "800%");
    row(small, "------", "0%");
    row(small, "------+", "5%");
    row(small, "+f", "100%");
    row(wide, "", "50%");
    row(wide, "1", "100%");
    row(wide, "1f", "50%");
    row(wide, "+", "75%");
    row(tall, "", "50%");
    row(tall, "w", "200%");
    row(tall, "w+", "250%");
    row(tall, "1w1", "100%");
    row(odd, "", "60%");
    row(odd, "-", "50%");
    row(wide, "rf", "38%"); // turned: 400 x 1600
    row(wide, "rmf", "38%");
    row(wide, "rrf", "50%");
    row(tall, "rf", "67%"); // turned: 1200 x 400
    row(wide, "rw", "200%");
}

/** Also each command on the heels of the one before, while that one still moves. */
void tst_image_widget::commands()
{
    QFETCH(QSize, size);
    QFETCH(QString, commands);
    for (const bool bWaits : {true, false}) {
        show(size);
        for (const QChar command : commands) {
            switch (command.toLatin1()) {
            case 'f':
                m_pWidget->slot_fullPreviewBtnClicked();
                break;
            case 'w':
                m_pWidget->slot_adaptWidthBtnClicked();
                break;
            case '1':
                m_pWidget->slot_NormalBtnClicked();
                break;
            case '+':
                m_pWidget->slot_ZoomInBtnClicked();
                break;
            case '-':
                m_pWidget->slot_ZoomOutBtnClicked();
                break;
            case 'r':
                m_pWidget->slot_RotateBtnCllicked();
                break;
            default:
                m_pWidget->slot_HorizonalRotateBtnClicked();
                break;
            }
            if (bWaits)
                settle();
        }
        settle();
        QTEST(percent(), "expected");
        QVERIFY(qAbs(qRound(view()->transform().m11() * 100) - percent().chopped(1).toInt()) <= 1);
        m_pWidget->clearPreview();
    }
}

void tst_image_widget::buttonsAreOffWhileItMoves()
{
    show(QSize(100, 100));
    QPushButton *pZoomIn = bar()->button(ImgPreviewToolBar::ZoomInButton);
    QTest::mouseClick(pZoomIn, Qt::LeftButton);
    QVERIFY(isMoving());
    QTest::mouseClick(pZoomIn, Qt::LeftButton); // does nothing
    QWheelEvent wheel(QPointF(400, 300), m_pWidget->mapToGlobal(QPoint(400, 300)), QPoint(), QPoint(0, 120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view()->viewport(), &wheel);
    QTRY_VERIFY(!isMoving()); // by its own timer
    QCOMPARE(percent(), QStringLiteral("125%"));
    // A new file ends what moves.
    m_pWidget->slot_RotateBtnCllicked();
    show(QSize(50, 50), 2);
    QVERIFY(!isMoving());
    QVERIFY(!item()->isTurned());
    m_pWidget->slot_ZoomInBtnClicked();
    m_pWidget->clearPreview();
    QVERIFY(!isMoving());
}

void tst_image_widget::destroyedWhileItMoves()
{
    show(QSize(100, 100));
    m_pWidget->slot_RotateBtnCllicked();
    QVERIFY(isMoving());
    sendMouse(view()->viewport(), QEvent::MouseButtonPress, QPoint(400, 300), Qt::LeftButton);
    m_pWidget.reset();
}

void tst_image_widget::wheelKeepsThePointUnderTheCursor_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("cursor");
    QTest::addColumn<QString>("first");
    QTest::newRow("middle") << QSize(2000, 1500) << QPoint(400, 300) << QString();
    QTest::newRow("corner") << QSize(2000, 1500) << QPoint(30, 40) << QString();
    QTest::newRow("beside the picture") << QSize(300, 300) << QPoint(700, 500) << QString();
    QTest::newRow("turned") << QSize(2000, 1500) << QPoint(500, 200) << QStringLiteral("r");
    QTest::newRow("turned and flipped") << QSize(2000, 1500) << QPoint(500, 200) << QStringLiteral("rm");
    QTest::newRow("enlarged") << QSize(900, 700) << QPoint(601, 177) << QStringLiteral("+++");
}

void tst_image_widget::wheelKeepsThePointUnderTheCursor()
{
    QFETCH(QSize, size);
    QFETCH(QPoint, cursor);
    QFETCH(QString, first);
    show(size);
    for (const QChar command : first) {
        if (command == QLatin1Char('r'))
            m_pWidget->slot_RotateBtnCllicked();
        else if (command == QLatin1Char('m'))
            m_pWidget->slot_HorizonalRotateBtnClicked();
        else
            m_pWidget->slot_ZoomInBtnClicked();
    }
    settle();
    const auto underCursor = [this, cursor] {
        return item()->mapFromScene(view()->mapToScene(cursor));
    };
    const QPointF before = underCursor();
    const int nPercent = percent().chopped(1).toInt();
    for (int i = 0; i < 30; ++i) {
        const int nDelta = i < 20 ? 120 : -120;
        QWheelEvent wheel(cursor, view()->viewport()->mapToGlobal(cursor), QPoint(), QPoint(0, nDelta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view()->viewport(), &wheel);
        const QPointF moved = underCursor() - before;
        QVERIFY2(moved.manhattanLength() < 1e-3, qPrintable(QString::number(moved.manhattanLength())));
    }
    QVERIFY(qAbs(percent().chopped(1).toInt() - (nPercent + 30)) <= 1);
}

void tst_image_widget::rotation()
{
    show(QSize(1600, 400));
    QVector<double> turns;
    for (int i = 0; i < 4; ++i) {
        m_pWidget->slot_RotateBtnCllicked();
        int nTicks = 0;
        while (isMoving()) {
            m_pWidget->slot_PreviewTimerout();
            QVERIFY(++nTicks <= 10);
        }
        QCOMPARE(nTicks, 10);
        turns.append(item()->turn());
        QCOMPARE(item()->isTurned(), i < 3);
    }
    QCOMPARE(turns, (QVector<double>{-90, -180, -270, -360}));
    m_pWidget->slot_PreviewTimerout(); // nothing moves
    QCOMPARE(item()->turn(), -360.0);
    QCOMPARE(percent(), QStringLiteral("50%"));
}

void tst_image_widget::fitBringsADraggedPictureBack()
{
    show(QSize(1600, 400));
    drag(view()->viewport(), QPoint(400, 300), QPoint(460, 330));
    QVERIFY2((item()->pos() - QPointF(120, 60)).manhattanLength() < 4, "a drag moves with the cursor");
    const QPointF dragged = item()->pos();
    sendMouse(view()->viewport(), QEvent::MouseMove, QPoint(100, 100), Qt::NoButton);
    QCOMPARE(item()->pos(), dragged); // the button was released
    m_pWidget->slot_fullPreviewBtnClicked();
    settle();
    QCOMPARE(item()->pos(), QPointF());
    // The picture goes while the button is held.
    sendMouse(view()->viewport(), QEvent::MouseButtonPress, QPoint(400, 300), Qt::LeftButton);
    m_pWidget->clearPreview();
    sendMouse(view()->viewport(), QEvent::MouseMove, QPoint(410, 310), Qt::LeftButton);
    show(QSize(100, 100), 2);
    sendMouse(view()->viewport(), QEvent::MouseMove, QPoint(420, 320), Qt::LeftButton);
    QCOMPARE(item()->pos(), QPointF());
    sendMouse(view()->viewport(), QEvent::MouseButtonRelease, QPoint(420, 320), Qt::NoButton);
}

void tst_image_widget::topStripDragsTheWindow()
{
    show(QSize(100, 100));
    drag(view()->viewport(), QPoint(400, 19), QPoint(430, 59));
    QCOMPARE(host().window.moved, QPoint(30, 40));
    drag(view()->viewport(), QPoint(400, 20), QPoint(430, 60));
    QCOMPARE(host().window.moved, QPoint(30, 40));
    data()->setMainWindowHandle(nullptr);
    drag(view()->viewport(), QPoint(400, 5), QPoint(430, 60));
    QCOMPARE(item()->pos(), QPointF());
}

void tst_image_widget::resizePlacesTheTools()
{
    show(QSize(1600, 400));
    for (const QSize &size : {QSize(1001, 701), QSize(400, 300)}) {
        m_pWidget->resize(size);
        QCOMPARE(view()->geometry(), QRect(QPoint(), size));
        QCOMPARE(bar()->geometry(), QRect(0, size.height() - 58, size.width(), 50));
        QCOMPARE(view()->sceneRect(), QRectF(-size.width() / 2.0, -size.height() / 2.0, size.width(), size.height()));
        const QPoint centre = view()->mapFromScene(item()->mapToScene(QPointF()));
        QVERIFY((centre - QPoint(size.width(), size.height()) / 2).manhattanLength() <= 2);
    }
}

void tst_image_widget::reducedRow_data()
{
    QTest::addColumn<qint64>("type");
    QTest::addColumn<bool>("full");
    QTest::newRow("png") << 10LL << true;
    QTest::newRow("pdf") << 131LL << true;
    QTest::newRow("sketch") << 940LL << false;
    QTest::newRow("unknown") << 7LL << false;
}

void tst_image_widget::reducedRow()
{
    QFETCH(qint64, type);
    QFETCH(bool, full);
    host().addFile(1, type, QStringLiteral("/1.x"));
    load(1, ImgPreviewWidget::OpenHostRendition);
    finishWorkers();
    for (int i = 0; i < ImgPreviewToolBar::ButtonCount; ++i) {
        const bool bExtra = i >= ImgPreviewToolBar::RotateButton && i <= ImgPreviewToolBar::CommentButton;
        QCOMPARE(bar()->button(ImgPreviewToolBar::Button(i))->isVisibleTo(bar()), full || !bExtra);
    }
}

void tst_image_widget::toolTipsNameTheKeys()
{
    show(QSize(10, 10));
    QCOMPARE(bar()->button(ImgPreviewToolBar::ZoomInButton)->toolTip(), QStringLiteral("Zoom In(Ctrl+=)"));
    QCOMPARE(bar()->button(ImgPreviewToolBar::RotateButton)->toolTip(), QStringLiteral("Rotate"));
    host().shortcuts.keys.clear(); // changed in the host's settings while the preview is open
    show(QSize(10, 10));
    QCOMPARE(bar()->button(ImgPreviewToolBar::ZoomInButton)->toolTip(), QStringLiteral("Zoom In"));
}

void tst_image_widget::doubleClicks_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("loading");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("notices");
    QTest::newRow("plain") << true << false << 1 << 0;
    QTest::newRow("off") << false << false << 0 << 0;
    QTest::newRow("loading") << true << true << 0 << 1;
    QTest::newRow("off and loading") << false << true << 0 << 1;
}

void tst_image_widget::doubleClicks()
{
    QFETCH(bool, enabled);
    QFETCH(bool, loading);
    show(QSize(300, 300));
    const auto pGate = host().addSlowPicture(2, Png, QStringLiteral("/2.png"));
    if (loading)
        load(2);
    m_pWidget->setDoubleClickEnabled(enabled);
    QSignalSpy clicks(m_pWidget.get(), &BasePreviewWidget::signal_PreviewWidgetDoubleClicked);
    // A double click on the bar is none on the picture, also on a button that is off.
    bar()->setButtonsEnabled(false);
    QTest::mouseDClick(bar()->button(ImgPreviewToolBar::RotateButton), Qt::LeftButton);
    QTest::mouseDClick(bar(), Qt::LeftButton, {}, QPoint(400, 25));
    QCOMPARE(clicks.count() + notices(), 0);
    QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, QPoint(400, 300));
    QTEST(clicks.count(), "signal");
    QTEST(notices(), "notices");
    pGate->open();
    finishWorkers();
}

BIGIMGPREVIEW_TEST_MAIN(tst_image_widget)
#include "tst_image_widget.moc"
