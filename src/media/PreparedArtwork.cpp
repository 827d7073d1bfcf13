#include "media/PreparedArtwork.h"

#include "app/DataUrl.h"
#include "media/AlbumTintReader.h"
#include "media/AlbumWashMaker.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace norva {
namespace {

// The picture shrunk so its longer side is at most `side`; a smaller one is left as it is.
QImage atMost(const QImage& image, int side)
{
    if (image.width() <= side && image.height() <= side)
        return image;
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

// The middle square of the picture at `side` pixels, its corners rounded and see-through. The
// rounding is drawn here, once per cover, rather than masked in the scene on every frame.
QImage roundedSquare(const QImage& image, int side, double cornerShare)
{
    const int shorter = std::min(image.width(), image.height());
    const QImage square =
        image.copy((image.width() - shorter) / 2, (image.height() - shorter) / 2, shorter, shorter)
            .scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage rounded(side, side, QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath corners;
    corners.addRoundedRect(QRectF(0, 0, side, side), side * cornerShare, side * cornerShare);
    painter.setClipPath(corners);
    painter.drawImage(0, 0, square);
    return rounded;
}

QImage decoded(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // JPEG scales while it decodes: a large scan costs a fraction of its full decode.
    const QSize size = reader.size();
    if (size.isValid() &&
        (size.width() > PreparedArtwork::pictureSize || size.height() > PreparedArtwork::pictureSize))
        reader.setScaledSize(
            size.scaled(PreparedArtwork::pictureSize, PreparedArtwork::pictureSize, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

PreparedArtwork PreparedArtwork::from(const QByteArray& bytes)
{
    PreparedArtwork art;
    if (bytes.isEmpty())
        return art;
    art.picture = atMost(decoded(bytes), pictureSize);
    if (art.picture.isNull())
        return art;
    art.pageSource = pngDataUrl(atMost(art.picture, pageSize));
    art.coverSource = pngDataUrl(roundedSquare(art.picture, coverSize, coverCornerShare));
    art.accent = AlbumTintReader::accentColor(art.picture);
    art.wash = AlbumWashMaker::wash(art.picture);
    if (!art.wash.isNull())
        art.washSource = pngDataUrl(art.wash);
    return art;
}

} // namespace norva
