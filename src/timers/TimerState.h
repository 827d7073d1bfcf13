#pragma once

#include "timers/FocusRounds.h"

#include <QDateTime>
#include <QJsonObject>
#include <QStringList>

#include <optional>

namespace norva {

// One countdown as the timer keeps it and saves it: a free countdown has no phase. While it runs
// the end instant is what counts (so a restart picks it up where the clock says it is); while
// paused, the time that was left.
struct TimerState {
    std::optional<FocusRounds::Phase> phase;
    int completedRounds = 0;
    double length = 0.0; // seconds of the whole countdown, for its progress
    bool paused = false;
    QDateTime endsAt;         // while running
    double remaining = 0.0;   // while paused
    QStringList focusTargets; // to-do titles chosen for this focus session

    bool operator==(const TimerState&) const = default;

    // Seconds left at `now`, never below zero.
    double remainingAt(const QDateTime& now) const;
    // 0...1 of the length gone by at `now`.
    double progressAt(const QDateTime& now) const;

    QJsonObject toJson() const;
    // Reads a saved state; none when it does not hold a countdown Norva can resume.
    static std::optional<TimerState> fromJson(const QJsonObject& json);
};

} // namespace norva
