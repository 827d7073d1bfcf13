#include "media/AlbumWashMaker.h"

namespace norva {

QImage AlbumWashMaker::wash(const QImage& artwork)
{
    if (artwork.isNull())
        return {};
    const QImage coarse = artwork.scaled(coarseSize, coarseSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return coarse.scaled(washSize, washSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace norva
