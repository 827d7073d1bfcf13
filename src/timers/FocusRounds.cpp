#include "timers/FocusRounds.h"

namespace norva::FocusRounds {

Step advance(Phase from, int completedRounds)
{
    switch (from) {
    case Phase::work: {
        const int done = completedRounds + 1;
        return {done % kRoundsPerCycle == 0 ? Phase::longBreak : Phase::shortBreak, done, false};
    }
    case Phase::shortBreak:
        return {Phase::work, completedRounds, false};
    case Phase::longBreak:
        break;
    }
    return {Phase::work, 0, true};
}

double lengthOf(Phase phase)
{
    switch (phase) {
    case Phase::work:
        return kWorkSeconds;
    case Phase::shortBreak:
        return kShortBreakSeconds;
    case Phase::longBreak:
        break;
    }
    return kLongBreakSeconds;
}

QString word(Phase phase)
{
    switch (phase) {
    case Phase::work:
        return QStringLiteral("work");
    case Phase::shortBreak:
        return QStringLiteral("shortBreak");
    case Phase::longBreak:
        break;
    }
    return QStringLiteral("longBreak");
}

std::optional<Phase> phaseFromWord(const QString& word)
{
    for (const Phase phase : {Phase::work, Phase::shortBreak, Phase::longBreak}) {
        if (FocusRounds::word(phase) == word)
            return phase;
    }
    return std::nullopt;
}

QString title(Phase phase)
{
    switch (phase) {
    case Phase::work:
        return QStringLiteral("Focus");
    case Phase::shortBreak:
        return QStringLiteral("Short break");
    case Phase::longBreak:
        break;
    }
    return QStringLiteral("Long break");
}

// The next focus round is the one after the break that follows this phase: a work round that
// closes the cycle leads to a fresh one.
QString nextText(Phase phase, int completedRounds)
{
    const QString freshCycle =
        QStringLiteral("Then a fresh cycle, round 1 of ") + QString::number(kRoundsPerCycle);
    switch (phase) {
    case Phase::work:
        if ((completedRounds + 1) % kRoundsPerCycle == 0)
            return freshCycle;
        return QStringLiteral("Then focus, round ") + QString::number(completedRounds + 2);
    case Phase::shortBreak:
        return QStringLiteral("Then focus, round ") + QString::number(completedRounds + 1);
    case Phase::longBreak:
        break;
    }
    return freshCycle;
}

QString freeCountdownText()
{
    return QStringLiteral("A free countdown, no rounds");
}

} // namespace norva::FocusRounds
