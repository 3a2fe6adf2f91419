#pragma once

#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "image/ImgPreviewToolBar.h"
#include "image/ImgPreviewWidget.h"
#include "image/TSLargePreviewView.h"

#include <QGraphicsScene>

/** Base of the tests of the picture widget: a fresh one for each function, and its commands by letters. */
class ImageWidgetTest : public PluginTest {
protected:
    static constexpr qint64 Png = 10;
    static constexpr QSize ViewSize{800, 600};

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

    TSLargePreviewView *view() const { return m_pWidget->findChild<TSLargePreviewView *>(); }
    CResourceItem *item() const { return dynamic_cast<CResourceItem *>(view()->scene()->items().value(0)); }
    ImgPreviewToolBar *bar() const { return m_pWidget->findChild<ImgPreviewToolBar *>(); }
    int notices() const { return m_pWidget->findChildren<CNotificationFloatingWidget *>().size(); }
    bool isMoving() const { return !bar()->button(ImgPreviewToolBar::FitToWindowButton)->isEnabled(); }

    /** f: fit, w: fit to width, 1: actual size, +, -, r: rotate, m: mirror. */
    void command(char c)
    {
        static const QHash<char, void (ImgPreviewWidget::*)()> commands{
            {'f', &ImgPreviewWidget::slot_fullPreviewBtnClicked},
            {'w', &ImgPreviewWidget::slot_adaptWidthBtnClicked},
            {'1', &ImgPreviewWidget::slot_NormalBtnClicked},
            {'+', &ImgPreviewWidget::slot_ZoomInBtnClicked},
            {'-', &ImgPreviewWidget::slot_ZoomOutBtnClicked},
            {'r', &ImgPreviewWidget::slot_RotateBtnCllicked},
            {'m', &ImgPreviewWidget::slot_HorizonalRotateBtnClicked}};
        QVERIFY(commands.contains(c));
        (m_pWidget.get()->*commands.value(c))();
    }
    /** The same with the button, and waits until it has come to its end. */
    void press(char c)
    {
        using Bar = ImgPreviewToolBar;
        static const QHash<char, Bar::Button> buttons{{'f', Bar::FitToWindowButton}, {'w', Bar::FitToWidthButton},
                                                      {'1', Bar::ActualSizeButton},  {'+', Bar::ZoomInButton},
                                                      {'-', Bar::ZoomOutButton},     {'r', Bar::RotateButton},
                                                      {'m', Bar::FlipButton}};
        QTest::mouseClick(bar()->button(buttons.value(c)), Qt::LeftButton);
        settle();
    }
    /** Lets the ticks of the timer pass at once. */
    void settle()
    {
        for (int i = 0; isMoving() && i < 100; ++i)
            m_pWidget->slot_PreviewTimerout();
        QVERIFY(!isMoving());
    }

    std::unique_ptr<ImgPreviewWidget> m_pWidget;
};
