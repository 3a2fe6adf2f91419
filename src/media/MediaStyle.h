#pragma once

#include <QString>

/** Style sheets of the bars that control video and audio, in the theme's colours. */
namespace MediaStyle {

/** A button that is nothing but its icon. */
QString icon(const QString &iconName);

/** The bar with this object name. */
QString bar(const QString &objectName);

/** A label in the primary (0) or the secondary (1) colour. */
QString label(int nColor);

QString progressSlider();

/** The pop-up that holds the volume slider, and that slider. */
QString soundWindow();
QString soundSlider();

} // namespace MediaStyle
