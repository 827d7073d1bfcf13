#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace norva {

// The now-playing record: what one source reports at one moment. A snapshot without a title means
// that nothing plays. Every change of the source yields a fresh snapshot.
struct MediaSnapshot {
    QString title;
    bool hasTrack = false;
    QString artist;
    QString album;
    bool isPlaying = false;
    std::optional<double> elapsed;      // seconds, true at `timestamp`
    std::optional<double> duration;     // seconds
    std::optional<double> playbackRate; // 1.0 is normal speed
    QDateTime timestamp;                // the wall-clock moment at which `elapsed` held
    std::optional<QString> bundleIdentifier;
    QString artworkKey; // changes only when the artwork changes

    // The position to show at `at`: a playing track moves on from its last report at its rate,
    // capped at the duration; a paused one shows its elapsed time as it is.
    std::optional<double> displayElapsed(const QDateTime& at) const;
    // The shown position over the duration, 0 when the duration is unknown or 0.
    double playbackProgress(const QDateTime& at) const;
    // Identifies the track (not its position), so "another track" can be told from "the same one".
    QString trackKey() const;

    bool operator==(const MediaSnapshot&) const = default;
};

} // namespace norva
