#pragma once

#include "activities/LiveActivity.h"

#include <QString>

#include <optional>

namespace norva {

// The person's side preferences for the closed notch while music plays: what the left and right
// ears show ("artAndRing", "playPause", "equaliser", ... or "none"), as stored in the preferences.
struct ClosedPrefs {
    QString musicLeft = QStringLiteral("artAndRing");
    QString musicRight = QStringLiteral("equaliser");
    bool operator==(const ClosedPrefs&) const = default;
};

// What one ear beside the notch draws.
struct Ear {
    enum class Piece {
        nothing,       // the ear folds away
        music,         // a piece of the music face; `music` names which
        activityMark,  // the shown activity's symbol, with its progress ring
        activityValue, // the shown activity's short value ("24:12", "62%")
    };
    Piece piece = Piece::nothing;
    QString music;
    bool operator==(const Ear&) const = default;
};

// The closed notch's drawing model: which activity shows, what each ear draws, and how many
// activities take turns. Built by LiveActivityCoordinator::layout from the live list.
struct ClosedLayout {
    std::optional<LiveActivity> shown;
    Ear left;
    Ear right;
    int liveCount = 0;        // every live activity, shown or waiting
    int shownPosition = -1;   // position of the shown activity in the live list
    bool rotating = false;    // the shown activity changes every few seconds
    bool musicShares = false; // music keeps the left ear while the activity stands on the right
};

} // namespace norva
