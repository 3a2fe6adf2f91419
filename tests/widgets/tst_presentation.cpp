#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "image/TSLargePreviewView.h"
#include "media/PPtPreviewToolBar.h"
#include "media/PPtPreviewWidget.h"
#include "theme/TSSkinSetting.h"

#include <QGraphicsScene>
#include <QImageWriter>
#include <QLabel>

using Sizes = QVector<QSize>;
using Bar = PPtPreviewToolBar;

/** The page widget on its own: pages, zoom, late and missing frames, sharper renditions. */
class tst_presentation : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void firstPage()
    {
        QSignalSpy starts(m_widget, &PPtPreviewWidget::signal_start_load_ppt_frame);
        QSignalSpy ends(m_widget, &PPtPreviewWidget::signal_ppt_frame_read_end);
        QCOMPARE(labels(), QStringLiteral("1/14 85%"));
        const char *const tips[] = {"Fit to Window", "Fit to Width", "Actual Size", "Prev",
                                    "Next",          "Zoom Out",     "Zoom In"};
        const char *const keys[] = {"(Ctrl+0)", "(Ctrl+2)", "(Ctrl+1)", "", "", "(Ctrl+-)", "(Ctrl+=)"};
        for (int i = 0; i < Bar::ButtonCount; ++i)
            QCOMPARE(button(i)->toolTip(), QLatin1String(tips[i]));
        load(Sizes(5, QSize(400, 300)), false);
        QVERIFY(starts.count() == 1 && !item()->isVisible() && data()->isLoadingFor(1, m_widget));
        finishWorkers();
        QVERIFY(ends.count() == 1 && item()->isVisible() && !data()->isLoading());
        QCOMPARE(labels(), QStringLiteral("1/5 100%"));
        QCOMPARE(item()->drawMode(), int(CResourceItem::DrawPage));
        QVERIFY(isShown(0));
        for (int i = 0; i < Bar::ButtonCount; ++i)
            QCOMPARE(button(i)->toolTip(), QLatin1String(tips[i]) + QLatin1String(keys[i]));
    }

    void commands_data()
    {
        const auto row = columns<QSize, int, QString, QString>("page", "count", "commands", "expected");
        const QSize small(80, 60);
        const std::tuple<QSize, int, const char *, const char *> rows[] = {
            {{1600, 400}, 1, "", "1/1 50%"},   {{1600, 400}, 1, "w", "1/1 50%"},
            {{400, 1200}, 1, "", "1/1 50%"},   {{400, 1200}, 1, "w", "1/1 200%"},
            {{800, 600}, 1, "+f", "1/1 100%"}, {{1600, 60}, 1, "1", "1/1 100%"},
            {{1600, 60}, 1, "++f", "1/1 50%"}, {{941, 60}, 1, "+", "1/1 100%"},
            {{941, 60}, 1, "-", "1/1 75%"},    {small, 1, "-----", "1/1 5%"},
            {small, 1, "-------+", "1/1 25%"}, {small, 1, "+++++++++++++", "1/1 800%"},
            {small, 1, "++++++-", "1/1 250%"}, {small, 1, "iio", "1/1 103%"},
            {small, 1, "-----iooo", "1/1 5%"}, {small, 1, "><", "1/1 100%"},
            {small, 3, ">>>", "3/3 100%"},     {small, 3, "><<>", "2/3 100%"},
            {{1600, 60}, 3, "++>", "2/3 50%"}, {small, 2000, ">>", "3/2000 100%"}};
        for (const auto &[page, nCount, pCommands, pExpected] : rows) {
            const QString sizes = QStringLiteral("%1x%2 of %3 ").arg(page.width()).arg(page.height()).arg(nCount);
            row(QString(sizes + QLatin1String(pCommands)), page, nCount, pCommands, pExpected);
        }
    }

    void commands()
    {
        const auto [page, count, commands, expected] = currentRow<QSize, int, QString, QString>();
        load(Sizes(count, page));
        for (const QChar c : commands) {
            command(c);
            finishWorkers();
        }
        QCOMPARE(labels(), expected);
        QVERIFY(isShown(labels().section(u'/', 0, 0).toInt() - 1));
        QCOMPARE(item()->pictureSize(), page);
    }

    /** The columns beside it take a page that is seen whole no part of it; one that was zoomed stays as it is. */
    void fittedAgain()
    {
        load({QSize(1600, 400)});
        const std::pair<QSize, const char *> sizes[] = {
            {{800, 600}, "1/1 50%"}, {{400, 600}, "1/1 25%"}, {{800, 600}, "1/1 50%"}};
        for (const auto &[size, pExpected] : sizes) {
            m_widget->resize(size);
            QCOMPARE(labels(), QLatin1String(pExpected));
        }
        command(u'+');
        m_widget->resize(400, 600);
        QCOMPARE(labels(), QStringLiteral("1/1 75%"));
    }

    /** So large a page that the next one is asked for as it would be shown if it were like it. */
    void unlikePages()
    {
        const Sizes sizes{QSize(5000, 4000), QSize(300, 400), QSize(80, 60)};
        load(sizes);
        for (int nPage = 1; nPage < sizes.size(); ++nPage) {
            command(u'>');
            for (int i = 0; i < 3; ++i)
                finishWorkers();
            QCOMPARE(item()->pictureSize(), sizes.at(nPage));
        }
    }

    /** Pages that are passed by are not rendered one after the other, and the last one wanted is shown. */
    void keyStorm()
    {
        load(Sizes(100, QSize(80, 60)));
        host().renderer.renderGate.close();
        for (int i = 0; i < 60; ++i)
            m_widget->slot_rightBtnClicked();
        QTRY_COMPARE(host().renderer.renderGate.waiting(), 1);
        QCOMPARE(labels(), QStringLiteral("1/100 100%")); // follows the frame
        for (int i = 0; i < 10; ++i)
            m_widget->slot_leftBtnClicked();
        host().renderer.renderGate.open();
        QTRY_VERIFY(!data()->isLoading() && isShown(50));
        QCOMPARE(labels(), QStringLiteral("51/100 100%"));
        QCOMPARE(host().renderer.rendered().size(), 3 + moreForScreen());
    }

    /** The file is left and shown again before its page has come: not the page that was asked for then. */
    void shownAgainDuringALoad()
    {
        load(Sizes(4, QSize(80, 60)));
        host().renderer.renderGate.close();
        m_widget->slot_rightBtnClicked();
        QTRY_COMPARE(host().renderer.renderGate.waiting(), 1);
        m_widget->clearPreview();
        QVector<bool> seen;
        connect(m_widget, &PPtPreviewWidget::signal_ppt_frame_read_end, this, [&] { seen.append(isShown(0)); });
        m_widget->loadPresentation(QStringLiteral("/1.pptx"));
        host().renderer.renderGate.open();
        QTRY_VERIFY(!data()->isLoading() && m_widget->isPageShown());
        QCOMPARE(seen, QVector<bool>{true});
    }

    void unrenderable_data()
    {
        const auto row = columns<int, bool>("pages", "renderer");
        row("no renderer", 4, false);
        row("no pages", 0, true);
        row("broken pages", 4, true);
    }

    void unrenderable()
    {
        const auto [pages, renderer] = currentRow<int, bool>();
        host().base.renderer = renderer ? &host().renderer : nullptr;
        attachHost();
        host().renderer.setBrokenPages(1, {0, 2});
        load(Sizes(pages, QSize(80, 60)));
        QVERIFY(item()->isVisible() && item()->drawMode() == CResourceItem::DrawStill);
        QCOMPARE(item()->pictureSize(), QSize(500, 500));
        TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
        for (const auto theme : {TSSkinSetting::LightTheme, TSSkinSetting::DarkTheme}) {
            pSkin->SetTheme(theme);
            QCOMPARE(colorAt({200, 100}), pSkin->GetPlaceholderBackgroundColor());
        }
        // Only where there are pages can they be turned.
        QCOMPARE(button(Bar::NextButton)->isVisible(), pages > 0 && renderer);
        m_widget->slot_setCover();
        finishWorkers();
        QVERIFY(host().desk.requests.isEmpty());
        for (int nPage = 1; button(Bar::NextButton)->isVisible() && nPage < 4; ++nPage) {
            command(u'>');
            finishWorkers();
            QCOMPARE(labels(), QStringLiteral("%1/4 100%").arg(nPage + 1));
            QVERIFY(isShown(nPage == 2 ? 1 : nPage)); // the page before stays, and a notice says why
            QCOMPARE(m_widget->findChildren<CNotificationFloatingWidget *>().size(), nPage < 2 ? 0 : 1);
        }
    }

    void sharper_data()
    {
        // asked: beyond the page itself
        const auto row = columns<QSize, QString, QSize, QSize>("page", "commands", "asked", "pixels");
        row("smaller", QSize(400, 300), "--", QSize(), QSize(400, 300));
        QTest::newRow("800") << QSize(400, 300) << QStringLiteral("+++++++++++") << QSize(3200, 2400)
                             << QSize(2500, 1875);
        row("to and fro", QSize(400, 300), "++++1", QSize(), QSize(400, 300));
        row("odd sides", QSize(333, 187), "+", QSize(417, 234), QSize(416, 234));
    }

    void sharper()
    {
        const auto [page, commands, asked, pixels] = currentRow<QSize, QString, QSize, QSize>();
        host().renderer.setLargestSide(2500); // this one gives less than it is asked for, and is not asked again
        load({page, page});
        QCOMPARE(host().renderer.rendered().size(), 1 + moreForScreen());
        QVERIFY(qAbs(item()->originalSize().width() - dense(page).width()) <= 1);
        if (moreForScreen() > 0)
            return; // the rows count the pixels of a plain screen
        item()->setPos(7, 5);
        for (const QChar c : commands)
            command(c);
        const QRectF box = item()->sceneBoundingRect();
        const QString label = labels();
        for (int i = 0; i < 2; ++i) {
            QTest::qWait(200);
            finishWorkers();
        }
        QCOMPARE(host().renderer.rendered().mid(1).join(u' '),
                 asked.isEmpty() ? QString() : QStringLiteral("1:0 %1x%2").arg(asked.width()).arg(asked.height()));
        QCOMPARE(item()->originalSize(), pixels);
        // Nothing has moved.
        QCOMPARE(item()->sceneBoundingRect(), box);
        QCOMPARE(labels(), label);
    }

    void sharperComesTooLate()
    {
        load(Sizes(3, QSize(400, 300)));
        host().renderer.renderGate.close();
        command(u'+');
        QTRY_COMPARE(host().renderer.renderGate.waiting(), 1);
        QVERIFY(!data()->isLoading()); // nobody has to wait for it
        command(u'>');
        QTRY_COMPARE(host().renderer.renderGate.waiting(), 2);
        host().renderer.renderGate.open();
        finishWorkers();
        QCOMPARE(labels(), QStringLiteral("2/3 100%"));
        QVERIFY(isShown(1));
        QCOMPARE(item()->originalSize(), dense({400, 300}));
    }

    void cover()
    {
        load(Sizes(3, QSize(40, 30)));
        int nChanged = 0;
        m_widget->setCoverChangedHook([&nChanged] { ++nChanged; });
        host().desk.reply = Reply::OnDemand;
        command(u'>');
        finishWorkers();
        m_widget->slot_setCover();
        command(u'>'); // it is of the page that was shown when it was asked for
        finishWorkers();
        QCOMPARE(host().desk.requests.size(), 1);
        const ActionRequest request = host().desk.requests.first();
        QCOMPARE(request.fileIds, QVector<qint64>{1});
        // Where Qt comes without the format, the page is handed on as it was saved.
        const bool bWritesWebP = QImageWriter::supportedImageFormats().contains("webp");
        QCOMPARE(request.path.endsWith(QStringLiteral(".webp")), bWritesWebP);
        const int nHue = QImage(request.path).pixelColor(20, 15).hsvHue();
        QVERIFY(qAbs(nHue - FakeRenderer::pageColor(1).hsvHue()) < 5);
        host().desk.answer(0);
        QCOMPARE(nChanged, 1);
        host().desk.reply = Reply::RefuseZero;
        m_widget->slot_setCover();
        finishWorkers();
        QVERIFY(log().hasLine(QStringLiteral("preview ppt set cover action id <= 0")));
    }

    void endsAtAnyMoment_data()
    {
        columns<int, int>("moment", "end");
        const char *const moments[] = {"first page", "page turn", "animation", "sharper"};
        const char *const ends[] = {"widget", "host's data", "preview", "file"};
        for (int nMoment = 0; nMoment < 4; ++nMoment) {
            for (int nEnd = 0; nEnd < 4; ++nEnd)
                QTest::addRow("%s, %s", moments[nMoment], ends[nEnd]) << nMoment << nEnd;
        }
    }

    void endsAtAnyMoment()
    {
        const auto [moment, end] = currentRow<int, int>();
        load(Sizes(moment > 0 ? 3 : 0, QSize(400, 300)));
        host().renderer.renderGate.close();
        if (moment == 0)
            load(Sizes(3, QSize(400, 300)), false);
        else if (moment == 1)
            m_widget->slot_rightBtnClicked();
        else
            m_widget->slot_ZoomInBtnClicked();
        if (moment != 2)
            QTRY_COMPARE(host().renderer.renderGate.waiting(), 1);
        if (end == 1)
            host().renderer.renderGate.open(); // letting go of the host waits for it
        if (end == 0)
            delete m_widget;
        else if (end == 1)
            data()->clearPreviewData();
        else
            end == 2 ? m_widget->clearPreview() : data()->setCurrentFile(2);
        const QString before = m_widget ? labels() : QString();
        host().renderer.renderGate.open();
        for (int i = 0; i < 3; ++i)
            finishWorkers();
        // A page that nobody waits for any more changes nothing, but its load has ended.
        QVERIFY(!data()->isLoading());
        QVERIFY(end < 2 || moment > 1 || labels() == before);
        QVERIFY(end != 2 || item() == nullptr);
    }

protected:
    void init() override
    {
        PluginTest::init();
        m_widget = new PPtPreviewWidget(nullptr);
        m_widget->resize(800, 600);
        m_widget->show();
    }
    void cleanup() override
    {
        delete m_widget;
        PluginTest::cleanup();
    }

private:
    /** As the hub: the document is open before its first page is asked for. */
    void load(const Sizes &sizes, bool bWaits = true)
    {
        host().addFile(1, 193, QStringLiteral("/1.pptx"));
        host().addFile(2, 193, QStringLiteral("/2.pptx"));
        host().renderer.setDocument(1, sizes);
        openFiles({1, 2}, 1);
        data()->openPresentation(1, QStringLiteral("/1.pptx"));
        m_widget->loadPresentation(QStringLiteral("/1.pptx"));
        for (int i = 0; bWaits && i < 2; ++i) // the page, and what a dense screen wants of it
            finishWorkers();
    }
    TSLargePreviewView *view() const { return m_widget->findChild<TSLargePreviewView *>(); }
    CResourceItem *item() const { return dynamic_cast<CResourceItem *>(view()->scene()->items().value(0)); }
    CircleBtn *button(int nButton) const { return m_widget->findChild<Bar *>()->button(Bar::Button(nButton)); }
    /** Page and percent. */
    QString labels() const
    {
        QStringList texts;
        for (const QLabel *pLabel : m_widget->findChild<Bar *>()->findChildren<QLabel *>())
            texts.prepend(pLabel->text());
        return texts.join(QLatin1Char(' '));
    }
    QColor colorAt(const QPoint &pos) const
    {
        return view()->grab().toImage().pixelColor(pos * m_widget->devicePixelRatioF());
    }
    bool isShown(int nPage) const { return colorAt(view()->rect().center()) == FakeRenderer::pageColor(nPage); }
    QSize dense(const QSize &size) const
    {
        const double fRatio = m_widget->devicePixelRatioF();
        return {qCeil(size.width() * fRatio), qCeil(size.height() * fRatio)};
    }
    int moreForScreen() const { return m_widget->devicePixelRatioF() > 1.0 ? 1 : 0; }
    /** > and <: pages, f: fit, w: fit to width, 1: actual size, + and -, i and o: wheel in and out. */
    void command(QChar c)
    {
        static const QHash<QChar, int> buttons{{u'f', Bar::FitToWindowButton}, {u'w', Bar::FitToWidthButton},
                                               {u'1', Bar::ActualSizeButton},  {u'<', Bar::PreviousButton},
                                               {u'>', Bar::NextButton},        {u'-', Bar::ZoomOutButton},
                                               {u'+', Bar::ZoomInButton}};
        if (!buttons.contains(c))
            return turnWheel(view()->viewport(), QPoint(100, 100), c == u'i' ? 120 : -120);
        button(buttons.value(c))->click();
        const QString before = labels();
        const bool bMoving = !button(Bar::NextButton)->isEnabled();
        for (int i = 0; i < Bar::ButtonCount; ++i)
            QCOMPARE(button(i)->isEnabled(), !bMoving);
        if (bMoving)
            command(u'i'); // the wheel waits
        QCOMPARE(labels(), before);
        for (int i = 0; bMoving && i < 10; ++i)
            m_widget->slot_PreviewTimerout();
        QVERIFY(button(Bar::NextButton)->isEnabled());
    }

    QPointer<PPtPreviewWidget> m_widget;
};

BIGIMGPREVIEW_TEST_MAIN(tst_presentation)
#include "tst_presentation.moc"
