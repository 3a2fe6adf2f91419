#pragma once

#include "library/LabelRecord.h"

#include <QColor>
#include <QIcon>

class QMenu;
class QWidget;

/** The colours of labels, readable in both themes. GUI thread only. */
namespace LabelColors {

/** The colours to choose from. */
QVector<QColor> palette();

/** The colour a label is shown in: the user's, or one of the palette that stays the same. */
QColor colorOf(const LabelRecord &label);

/** A round spot of this colour. */
QIcon spot(const QColor &color);

/** A menu of the palette; its actions carry the colour (0xRRGGBB) as data. Owned by the parent. */
QMenu *makeMenu(QWidget *pParent);

} // namespace LabelColors
