#pragma once

#include <QString>

namespace norva {

// One line of time-synced lyrics: when it is sung (seconds from the track's start) and its words.
struct LyricLine {
    double time = 0.0;
    QString text;

    bool operator==(const LyricLine&) const = default;
};

} // namespace norva
