#pragma once

#include <QString>

#include <optional>

namespace norva {

// The rhythm of focus rounds: 25 minutes of work, a 5 minute break, and after every fourth round
// a 15 minute break that starts a fresh cycle.
namespace FocusRounds {

enum class Phase { work, shortBreak, longBreak };

constexpr int kRoundsPerCycle = 4;
constexpr double kWorkSeconds = 1500;
constexpr double kShortBreakSeconds = 300;
constexpr double kLongBreakSeconds = 900;

// What follows when a phase's countdown completes (advancePomodoro(from:)).
struct Step {
    Phase phase = Phase::work;
    int completedRounds = 0;
    bool clearTargets = false; // a finished cycle forgets the session's focus targets
    bool operator==(const Step&) const = default;
};
Step advance(Phase from, int completedRounds);

double lengthOf(Phase phase);
// "work", "shortBreak", "longBreak": the words kept in the timer's saved state.
QString word(Phase phase);
std::optional<Phase> phaseFromWord(const QString& word);
// The title the closed notch and the timer page show ("Focus", "Short break", "Long break").
QString title(Phase phase);
// What comes next, under the timer: "Then focus, round 3", "Then a fresh cycle, round 1 of 4".
QString nextText(Phase phase, int completedRounds);
// The words for a countdown without rounds.
QString freeCountdownText();

} // namespace FocusRounds
} // namespace norva
