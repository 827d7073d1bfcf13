#pragma once

#include <QColor>
#include <QImage>

#include <optional>

namespace norva {

// Reads an accent colour out of an album cover: the average of its lively pixels, so that a grey
// border or a black background does not wash the colour out. Pure; run it off the main thread.
class AlbumTintReader {
public:
    // None when the artwork has no bitmap.
    static std::optional<QColor> accentColor(const QImage& artwork);
    // The accent, darkened so white text stays readable over it.
    static QColor tint(const QColor& accent);

    static constexpr int sampleSize = 24; // the cover is sampled at this many pixels a side
};

} // namespace norva
