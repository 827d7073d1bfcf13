#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>

// A small square picture of one colour as PNG bytes, the way covers and copied images arrive.
inline QByteArray pngBytes(const QColor& colour, int side = 8)
{
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// A picture of the size in the format ("PNG", "JPEG", "WEBP"), as the file a person keeps holds it.
inline QByteArray imageBytes(int width, int height, const char* format = "PNG",
                             const QColor& colour = Qt::darkCyan)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}
