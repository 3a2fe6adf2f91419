#pragma once

#include <QByteArray>

class QIODevice;
class QImage;

/**
 * Encodes a picture as "png" or "jpg" and writes it to an open device; false when either fails. A quality of -1 is the
 * format's own. The codec sees memory only: on a device that fails it would lose what it holds. Any thread.
 */
bool writePicture(QIODevice *pDevice, const QImage &image, const QByteArray &format, int nQuality);
