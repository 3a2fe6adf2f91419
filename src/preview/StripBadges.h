#pragma once

#include <QRect>
#include <QString>

class QPainter;

/** What the strip draws for files without a thumbnail, in theme colours. GUI thread only. */
namespace StripBadges {

/** The file itself is gone: a mark in the middle of the item, on a filled box. */
void paintMissing(QPainter *pPainter, const QRect &itemRect, const QRect &box);

/** A light card with the suffix of a picture's path. */
void paintLarge(QPainter *pPainter, const QRect &box, const QString &path);

/** A box in the accent colour with the suffix of the path. */
void paintSmall(QPainter *pPainter, const QRect &box, const QString &path);

} // namespace StripBadges
