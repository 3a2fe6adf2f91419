#pragma once

#include <QSize>
#include <QString>

/** Style sheets of icon buttons, built from the theme's icons. */
namespace IconStyle {

/** A borderless preview button; the selected icon shows while the mouse rests on it or holds it down. */
QString previewButton(const QString &normalIcon, const QString &selectedIcon, const QSize &size);

/** A window button: begins "QPushButton{border:0px;" and has a part for the hovered button. */
QString windowButton(const QString &normalIcon, const QString &hoverIcon, const QSize &size);

/** Keeps a button at its size, whatever a style sheet of the host says of buttons in general. */
QString fixedButton(const QSize &size);

/** Tool tips in theme colours, for style sheets that would otherwise hand a transparent background down to them. */
QString toolTip();

} // namespace IconStyle
