#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>

/** Writes the file anew, with the folders above it. */
inline bool writeFile(const QString &path, const QByteArray &content = QByteArrayLiteral("x"))
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/** What stands in the file; nothing where it cannot be read. */
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** A picture of one colour. */
inline QImage plainImage(const QSize &size, const QColor &color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(size, format);
    image.fill(color);
    return image;
}
