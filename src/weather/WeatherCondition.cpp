#include "weather/WeatherCondition.h"

namespace norva::WeatherCondition {

QString describe(int code)
{
    switch (code) {
    case 0:
        return QStringLiteral("Clear");
    case 1: // deliberately not "Mainly clear": a sky with some cloud reads as partly cloudy
    case 2:
        return QStringLiteral("Partly cloudy");
    case 3:
        return QStringLiteral("Cloudy");
    case 45:
    case 48:
        return QStringLiteral("Fog");
    case 51:
    case 53:
    case 55:
    case 56:
    case 57:
        return QStringLiteral("Drizzle");
    case 61:
    case 63:
    case 65:
    case 66:
    case 67:
        return QStringLiteral("Rain");
    case 71:
    case 73:
    case 75:
    case 77:
        return QStringLiteral("Snow");
    case 80:
    case 81:
    case 82:
        return QStringLiteral("Showers");
    case 85:
    case 86:
        return QStringLiteral("Snow showers");
    case 95:
    case 96:
    case 99:
        return QStringLiteral("Thunderstorm");
    default:
        return QStringLiteral("\u2014");
    }
}

QString glyph(int code, bool isDay)
{
    if (code == 0 || code == 1)
        return isDay ? QStringLiteral("clearDay") : QStringLiteral("clearNight");
    if (code == 45 || code == 48)
        return QStringLiteral("fog");
    if ((code >= 51 && code <= 67) || (code >= 80 && code <= 82))
        return QStringLiteral("rain");
    if ((code >= 71 && code <= 77) || code == 85 || code == 86)
        return QStringLiteral("snow");
    if (code >= 95 && code <= 99)
        return QStringLiteral("thunder");
    return QStringLiteral("cloud"); // 2, 3 and every code the groups above do not hold
}

} // namespace norva::WeatherCondition
