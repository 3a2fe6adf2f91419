#pragma once

#include <QIcon>
#include <QString>

class QAbstractButton;
class QToolButton;
class QWidget;

/** Icons of the present theme for the host's own widgets. GUI thread only. */
namespace HostIcons {

/** The icon of this name in the present theme; null for an unknown name. */
QIcon icon(const QString &name);

/**
 * Loads the libraries that draw icons. To be called before other libraries are loaded on a thread: the first icon would
 * have to wait for all of them.
 */
void loadLibraries();

/** Shows the icon, or the text where the theme has no such icon: a button is never empty. */
void setButtonIcon(QAbstractButton *pButton, const QString &name, const QString &fallbackText);

/** A round tool button with an icon, a tool tip and an accessible name; set its icon with setButtonIcon. */
QToolButton *makeToolButton(const QString &objectName, const QString &toolTip, QWidget *pParent);

/** The style sheet of a window button, which changes its icon under the mouse. */
QString windowButtonStyleSheet(const QString &action);

} // namespace HostIcons
