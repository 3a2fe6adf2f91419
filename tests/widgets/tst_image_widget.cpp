#include "ImageWidgetTest.h"

#include <QLabel>

namespace {

const QSize PlaceholderSize(500, 500);

} // namespace

class tst_image_widget : public ImageWidgetTest {
    Q_OBJECT

private Q_SLOTS:
    void loads_data()
    {
        // readable: s: source, l: large preview, t: thumbnail, c: the host's cache
        const auto row =
            columns<int, QString, bool, QSize, int>("mode", "readable", "needsLoader", "expected", "notices");
        const QSize source(11, 11), large(22, 22), thumb(33, 33), cached(44, 44);
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

    void loads()
    {
        const auto [mode, readable, needsLoader, expected, nNotices] = currentRow<int, QString, bool, QSize, int>();
        QTemporaryDir folder;
        const auto pFile = host().addFile(1, Png, QStringLiteral("/s.png"));
        pFile->largePreview = folder.filePath(QStringLiteral("large.png"));
        pFile->thumbnail = QStringLiteral("/t.png");
        pFile->loaderNeeded = needsLoader;
        const auto put = [this, keys = readable](char key, const QString &path, int nSide) {
            FakePicture picture;
            picture.size = QSize(nSide, nSide);
            if (keys.contains(QLatin1Char(key)))
                host().decoder.setPicture(path, picture);
        };
        put('s', pFile->path, 11);
        put('l', pFile->largePreview, 22);
        put('t', pFile->thumbnail, 33);
        if (readable.contains(QLatin1Char('l')))
            QVERIFY(writeFile(pFile->largePreview));
        if (readable.contains(QLatin1Char('c')))
            host().cache->largePictures.insert(1, plainImage(QSize(44, 44), Qt::red));

        QSignalSpy ends(m_pWidget.get(), &ImgPreviewWidget::signal_load_img_end);
        load(1, mode);
        finishWorkers();
        QCOMPARE(ends.count(), 1);
        QVERIFY(!data()->isLoading());
        QCOMPARE(item()->pictureSize(), expected);
        QCOMPARE(notices(), nNotices);
        QCOMPARE(host().decoder.counts().inGuiThread, 0);
        QVERIFY(!item()->isVisible()); // the page comes first, then the fitted picture
        m_pWidget->showLoaded();
        QVERIFY(item()->isVisible());
    }

    void staleResultIsIgnored()
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

    void clearedDuringTheDecode()
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
        for (const char c : {'f', '+', 'r', 'm'})
            command(c);
        settle();
        show(QSize(30, 20), 2);
    }

    void commands_data()
    {
        // commands: f: fit, w: fit to width, 1: actual size, +, -, r: rotate, m: flip
        const auto add = columns<QSize, QString, QString>("size", "commands", "expected");
        const auto row = [&add](const QSize &size, const char *pCommands, const char *pExpected) {
            add(QStringLiteral("%1 wide, %2").arg(size.width()).arg(QLatin1String(pCommands)), size, pCommands,
                pExpected);
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
        row(wide, "rrrrf", "50%");
        row(tall, "rf", "67%"); // turned: 1200 x 400
        row(wide, "rw", "200%");
    }

    /** By the buttons, and each command on the heels of the one before, while that one still moves. */
    void commands()
    {
        const auto [size, commands, expected] = currentRow<QSize, QString, QString>();
        for (const bool bWaits : {true, false}) {
            show(size);
            for (const QChar c : commands) {
                if (!bWaits)
                    command(c.toLatin1());
                else
                    press(c.toLatin1());
            }
            settle();
            QCOMPARE(percent(), expected);
            QVERIFY(qAbs(qRound(view()->transform().m11() * 100) - percent().chopped(1).toInt()) <= 1);
            m_pWidget->clearPreview();
        }
    }

    void buttonsAreOffWhileItMoves()
    {
        show(QSize(100, 100));
        QPushButton *pZoomIn = bar()->button(ImgPreviewToolBar::ZoomInButton);
        QTest::mouseClick(pZoomIn, Qt::LeftButton);
        QVERIFY(isMoving());
        QTest::mouseClick(pZoomIn, Qt::LeftButton); // does nothing
        turnWheel(view()->viewport(), QPoint(400, 300));
        QTRY_VERIFY(!isMoving()); // by its own timer
        QCOMPARE(percent(), QStringLiteral("125%"));
        // A new file ends what moves.
        command('r');
        show(QSize(50, 50), 2);
        QVERIFY(!isMoving());
        QVERIFY(!item()->isTurned());
        command('+');
        m_pWidget->clearPreview();
        QVERIFY(!isMoving());
    }

    void destroyedWhileItMoves()
    {
        show(QSize(100, 100));
        command('r');
        QVERIFY(isMoving());
        sendMouse(view()->viewport(), QEvent::MouseButtonPress, QPoint(400, 300));
        m_pWidget.reset();
    }

    void wheelKeepsThePointUnderTheCursor()
    {
        const std::tuple<QSize, QPoint, const char *> rows[] = {
            {{2000, 1500}, {400, 300}, ""}, // in the middle
            {{2000, 1500}, {30, 40}, ""},   // in a corner
            {{300, 300}, {700, 500}, ""},   // beside the picture
            {{2000, 1500}, {500, 200}, "r"}, {{2000, 1500}, {500, 200}, "rm"}, {{900, 700}, {601, 177}, "+++"}};
        for (const auto &[size, cursor, pFirst] : rows) {
            show(size);
            for (const char *pCommand = pFirst; *pCommand != 0; ++pCommand)
                command(*pCommand);
            settle();
            const QPoint place = cursor;
            const auto underCursor = [this, place] {
                return item()->mapFromScene(view()->mapToScene(place));
            };
            const QPointF before = underCursor();
            const int nPercent = percent().chopped(1).toInt();
            for (int i = 0; i < 30; ++i) {
                turnWheel(view()->viewport(), cursor, i < 20 ? 120 : -120);
                const QPointF moved = underCursor() - before;
                QVERIFY2(moved.manhattanLength() < 1e-3, qPrintable(QString::number(moved.manhattanLength())));
            }
            QVERIFY(qAbs(percent().chopped(1).toInt() - (nPercent + 30)) <= 1);
            m_pWidget->clearPreview();
        }
    }

    void fitBringsADraggedPictureBack()
    {
        show(QSize(1600, 400));
        drag(view()->viewport(), QPoint(400, 300), QPoint(460, 330));
        QVERIFY2((item()->pos() - QPointF(120, 60)).manhattanLength() < 4, "a drag moves with the cursor");
        const QPointF dragged = item()->pos();
        hover(view()->viewport(), QPoint(100, 100));
        QCOMPARE(item()->pos(), dragged); // the button was released
        command('f');
        settle();
        QCOMPARE(item()->pos(), QPointF());
        // The picture goes while the button is held.
        sendMouse(view()->viewport(), QEvent::MouseButtonPress, QPoint(400, 300));
        m_pWidget->clearPreview();
        sendMouse(view()->viewport(), QEvent::MouseMove, QPoint(410, 310));
        show(QSize(100, 100), 2);
        sendMouse(view()->viewport(), QEvent::MouseMove, QPoint(420, 320));
        QCOMPARE(item()->pos(), QPointF());
        sendMouse(view()->viewport(), QEvent::MouseButtonRelease, QPoint(420, 320));
    }

    void topStripDragsTheWindow()
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

    /** Files that are no pictures of their own have no buttons that change the picture. */
    void reducedRow()
    {
        for (const auto &[nType, bFull] : {std::pair(10LL, true), {131LL, true}, {940LL, false}, {7LL, false}}) {
            host().addFile(1, nType, QStringLiteral("/1.x"));
            load(1, ImgPreviewWidget::OpenHostRendition);
            finishWorkers();
            for (int i = 0; i < ImgPreviewToolBar::ButtonCount; ++i) {
                const bool bExtra = i >= ImgPreviewToolBar::RotateButton && i <= ImgPreviewToolBar::CommentButton;
                QCOMPARE(bar()->button(ImgPreviewToolBar::Button(i))->isVisibleTo(bar()), bFull || !bExtra);
            }
        }
    }

    void toolTipsNameTheKeys()
    {
        show(QSize(10, 10));
        QCOMPARE(bar()->button(ImgPreviewToolBar::ZoomInButton)->toolTip(), QStringLiteral("Zoom In(Ctrl+=)"));
        QCOMPARE(bar()->button(ImgPreviewToolBar::RotateButton)->toolTip(), QStringLiteral("Rotate"));
        host().shortcuts.keys.clear(); // changed in the host's settings while the preview is open
        show(QSize(10, 10));
        QCOMPARE(bar()->button(ImgPreviewToolBar::ZoomInButton)->toolTip(), QStringLiteral("Zoom In"));
    }

    void doubleClicks()
    {
        show(QSize(300, 300));
        QSignalSpy clicks(m_pWidget.get(), &BasePreviewWidget::signal_PreviewWidgetDoubleClicked);
        const auto doubleClick = [this] {
            QTest::mouseDClick(view()->viewport(), Qt::LeftButton, {}, QPoint(400, 300));
        };
        // A double click on the bar is none on the picture, also on a button that is off.
        bar()->setButtonsEnabled(false);
        QTest::mouseDClick(bar()->button(ImgPreviewToolBar::RotateButton), Qt::LeftButton);
        QTest::mouseDClick(bar(), Qt::LeftButton, {}, QPoint(400, 25));
        m_pWidget->setDoubleClickEnabled(false);
        doubleClick();
        QCOMPARE(clicks.count() + notices(), 0);
        m_pWidget->setDoubleClickEnabled(true);
        doubleClick();
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(notices(), 0);
        const auto pGate = host().addSlowPicture(2, Png, QStringLiteral("/2.png"));
        load(2);
        doubleClick();
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(notices(), 1);
        pGate->open();
        finishWorkers();
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
    QString percent() const
    {
        for (const QLabel *pLabel : bar()->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (pLabel->text().endsWith(QLatin1Char('%')))
                return pLabel->text();
        }
        return {};
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_image_widget)
#include "tst_image_widget.moc"
