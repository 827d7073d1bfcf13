#pragma once

#include <QImage>

namespace norva {

// Makes the music page's background from an album cover: the cover shrunk to a few pixels and
// smoothed back up, which reads as a soft blur of its colours. Pure; run it off the main thread.
class AlbumWashMaker {
public:
    // A null image when the artwork has no bitmap.
    static QImage wash(const QImage& artwork);

    static constexpr int coarseSize = 6; // how few pixels a side carry the colours
    static constexpr int washSize = 96;  // the size the page stretches further
};

} // namespace norva
