#include "OpenPreview.h"

#include <QAbstractButton>
#include <QApplication>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QStackedWidget>
#include <QWindow>
#include <QtTest>

namespace {

constexpr int PicturePage = 0;
constexpr QSizeF PlaceholderSize(500, 500);

template <typename Widget = QWidget>
Widget *childOfClass(QWidget *pParent, const char *pClassName)
{
    const auto children = pParent != nullptr ? pParent->findChildren<Widget *>() : QList<Widget *>();
    for (Widget *pChild : children) {
        if (pChild->inherits(pClassName))
            return pChild;
    }
    return nullptr;
}

QPoint inWindow(const QPoint &viewPosition)
{
    QWidget *pViewport = OpenPreview::view()->viewport();
    return pViewport->mapTo(pViewport->window(), viewPosition);
}

} // namespace

namespace OpenPreview {

QWidget *dialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *pWindow : windows) {
        if (pWindow->isVisible() && pWindow->inherits("PreviewSpaceDialog"))
            return pWindow;
    }
    return nullptr;
}

QStackedWidget *hub()
{
    return childOfClass<QStackedWidget>(dialog(), "MiddleResourcePreviewWidget");
}

QGraphicsView *view()
{
    return childOfClass<QGraphicsView>(childOfClass(dialog(), "ImgPreviewWidget"), "TSLargePreviewView");
}

QGraphicsItem *picture()
{
    const QGraphicsView *pView = view();
    return pView != nullptr ? pView->items().value(0) : nullptr;
}

bool isPictureShown()
{
    return hub() != nullptr && hub()->currentIndex() == PicturePage && picture() != nullptr && picture()->isVisible();
}

bool isPlaceholder()
{
    return isPictureShown() && picture()->boundingRect().size() == PlaceholderSize;
}

QColor colorAt(double fX, double fY)
{
    if (!isPictureShown())
        return {};
    const QRectF shown = view()->mapFromScene(picture()->sceneBoundingRect()).boundingRect();
    const QPointF place(shown.x() + fX * shown.width(), shown.y() + fY * shown.height());
    return dialog()->grab().toImage().pixelColor(inWindow(place.toPoint()));
}

bool isAbout(const QColor &color, const QColor &expected, int nTolerance)
{
    return color.isValid() && qAbs(color.red() - expected.red()) <= nTolerance &&
           qAbs(color.green() - expected.green()) <= nTolerance && qAbs(color.blue() - expected.blue()) <= nTolerance;
}

QAbstractButton *button(const char *pAccessibleName)
{
    const auto buttons = dialog() != nullptr ? dialog()->findChildren<QAbstractButton *>() : QList<QAbstractButton *>();
    for (QAbstractButton *pButton : buttons) {
        if (pButton->accessibleName() == QLatin1String(pAccessibleName))
            return pButton;
    }
    return nullptr;
}

bool makeActive(QWidget *pWindow)
{
    const auto isActive = [pWindow] {
        if (!pWindow->isActiveWindow())
            pWindow->activateWindow();
        return pWindow->isActiveWindow();
    };
    return pWindow != nullptr && QTest::qWaitFor(isActive, PatienceMsec);
}

void key(Qt::Key key)
{
    QWindow *pWindow = QGuiApplication::focusWindow();
    QVERIFY2(pWindow != nullptr, "no window has the focus");
    sendKey(pWindow, key);
}

void sendKey(QWindow *pWindow, Qt::Key key)
{
    // Not QTest::keyClick: it lets events pass in between, and releases the key on a window that may be gone by then.
    const QPointer<QWindow> pTarget(pWindow);
    const char cText = QTest::keyToAscii(key);
    const QString text = cText != 0 ? QString(QLatin1Char(cText)) : QString();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        if (pTarget != nullptr)
            qt_handleKeyEvent(pTarget, type, key, Qt::NoModifier, text, false);
    }
}

void click(QWidget *pTarget)
{
    QVERIFY(pTarget != nullptr);
    QWidget *pWindow = pTarget->window();
    QTest::mouseClick(pWindow->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      pTarget->mapTo(pWindow, pTarget->rect().center()));
}

void doubleClick(QWidget *pTarget, const QPoint &place)
{
    QWidget *pWindow = pTarget->window();
    QTest::mouseDClick(pWindow->windowHandle(), Qt::LeftButton, Qt::NoModifier, pTarget->mapTo(pWindow, place));
}

bool waitForPicture()
{
    return QTest::qWaitFor([] { return isPictureShown(); }, PatienceMsec) && makeActive(dialog());
}

bool waitUntilClosed()
{
    return QTest::qWaitFor([] { return dialog() == nullptr; }, PatienceMsec);
}

bool leave()
{
    const auto isClosed = [] {
        if (dialog() != nullptr && makeActive(dialog()))
            key(Qt::Key_Escape);
        return dialog() == nullptr;
    };
    return QTest::qWaitFor(isClosed, PatienceMsec);
}

} // namespace OpenPreview
