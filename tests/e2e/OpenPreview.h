#pragma once

#include <QColor>
#include <QPoint>
#include <QPointF>

class QAbstractButton;
class QGraphicsItem;
class QGraphicsView;
class QStackedWidget;
class QWidget;
class QWindow;

/**
 * The quick preview on the screen as a user has it: what it shows, and keys and mouse on its window. Knows the built
 * plug-in by class names and accessible names alone.
 */
namespace OpenPreview {

/** Time in which anything a user may wait for must have happened. */
constexpr int PatienceMsec = 10000;

QWidget *dialog();        ///< The visible quick preview; null when there is none.
QStackedWidget *hub();    ///< Its pages; null when it is not open.
QGraphicsView *view();    ///< Where pictures are shown.
QGraphicsItem *picture(); ///< The picture; null while there is none.

bool isPictureShown();
bool isPlaceholder();

/** The colour on the screen at a place of the picture, from (0, 0) at its top left to (1, 1). */
QColor colorAt(double fX, double fY);
bool isAbout(const QColor &color, const QColor &expected, int nTolerance = 24);

QAbstractButton *button(const char *pAccessibleName);

/** Gives the window the focus, also on a display without a window manager. */
bool makeActive(QWidget *pWindow);

/** A key on the window that has the focus. */
void key(Qt::Key key);
void sendKey(QWindow *pWindow, Qt::Key key);
void click(QWidget *pTarget);
void doubleClick(QWidget *pTarget, const QPoint &place);

/** Wait; false when the patience ends first. */
bool waitForPicture();
bool waitUntilClosed();
/** Presses Escape again and again, as a user does whom a notice asked to wait. */
bool leave();

} // namespace OpenPreview
