#pragma once

#include <QString>

#include <optional>

namespace norva {

enum class TemperatureUnit { celsius, fahrenheit };

// The forecast service's word for the unit ("celsius", "fahrenheit"), which is also how Norva
// stores its own choice in "weather.unit.v1".
inline QString unitWord(TemperatureUnit unit)
{
    return unit == TemperatureUnit::fahrenheit ? QStringLiteral("fahrenheit") : QStringLiteral("celsius");
}

inline std::optional<TemperatureUnit> unitFromWord(const QString& word)
{
    if (word == QLatin1String("celsius"))
        return TemperatureUnit::celsius;
    if (word == QLatin1String("fahrenheit"))
        return TemperatureUnit::fahrenheit;
    return std::nullopt;
}

} // namespace norva
