#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QString>

#include <optional>

namespace norva {

// What Norva draws from one album cover, made once per cover off the main thread: a large cover
// (a 3000-pixel scan beside a file) takes tens of milliseconds to decode, and the notch must not
// stop moving meanwhile. The picture is kept small; the page and the closed notch get PNG sources
// of the sizes they draw, so the QML never decodes the original either.
struct PreparedArtwork {
    QImage picture;      // at most pictureSize a side; null when the bytes hold no bitmap
    QString pageSource;  // the music page's cover, a PNG data URL
    QString coverSource; // the closed notch's cover: a rounded square, a PNG data URL
    std::optional<QColor> accent;
    QImage wash;
    QString washSource;

    bool hasBitmap() const { return !picture.isNull(); }

    // Pure; run it off the main thread.
    static PreparedArtwork from(const QByteArray& bytes);

    static constexpr int pictureSize = 512;
    static constexpr int pageSize = 224;             // the page draws 112 points, sharp at twice that
    static constexpr int coverSize = 48;             // the closed notch draws 20 points
    static constexpr double coverCornerShare = 0.25; // the closed cover's corner radius, of its side
};

} // namespace norva
