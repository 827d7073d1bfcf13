#include "timers/TimerState.h"

#include <QJsonArray>

#include <algorithm>

namespace norva {

double TimerState::remainingAt(const QDateTime& now) const
{
    const double left = paused ? remaining : now.msecsTo(endsAt) / 1000.0;
    return std::max(0.0, left);
}

double TimerState::progressAt(const QDateTime& now) const
{
    if (length <= 0)
        return 1.0;
    return std::clamp(1.0 - remainingAt(now) / length, 0.0, 1.0);
}

QJsonObject TimerState::toJson() const
{
    QJsonObject json{{QStringLiteral("length"), length},
                     {QStringLiteral("paused"), paused},
                     {QStringLiteral("completedRounds"), completedRounds},
                     {QStringLiteral("focusTargets"), QJsonArray::fromStringList(focusTargets)}};
    if (phase)
        json.insert(QStringLiteral("phase"), FocusRounds::word(*phase));
    if (paused)
        json.insert(QStringLiteral("remaining"), remaining);
    else
        json.insert(QStringLiteral("endsAt"), endsAt.toUTC().toString(Qt::ISODateWithMs));
    return json;
}

std::optional<TimerState> TimerState::fromJson(const QJsonObject& json)
{
    TimerState state;
    if (json.contains(QStringLiteral("phase"))) {
        state.phase = FocusRounds::phaseFromWord(json.value(QStringLiteral("phase")).toString());
        if (!state.phase)
            return std::nullopt;
    }
    state.length = json.value(QStringLiteral("length")).toDouble();
    state.paused = json.value(QStringLiteral("paused")).toBool();
    state.completedRounds = std::max(0, json.value(QStringLiteral("completedRounds")).toInt());
    for (const auto& target : json.value(QStringLiteral("focusTargets")).toArray())
        state.focusTargets << target.toString();
    if (state.paused) {
        state.remaining = json.value(QStringLiteral("remaining")).toDouble(-1);
        if (state.remaining < 0)
            return std::nullopt;
    } else {
        state.endsAt =
            QDateTime::fromString(json.value(QStringLiteral("endsAt")).toString(), Qt::ISODateWithMs);
        if (!state.endsAt.isValid())
            return std::nullopt;
    }
    if (state.length <= 0)
        return std::nullopt;
    return state;
}

} // namespace norva
