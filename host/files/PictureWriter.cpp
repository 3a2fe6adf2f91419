#include "files/PictureWriter.h"

#include <QBuffer>
#include <QImageWriter>

bool writePicture(QIODevice *pDevice, const QImage &image, const QByteArray &format, int nQuality)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(nQuality);
    return buffer.open(QIODevice::WriteOnly) && writer.write(image) && pDevice->write(buffer.data()) == buffer.size();
}
