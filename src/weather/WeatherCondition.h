#pragma once

#include <QString>

namespace norva {

// What a WMO weather interpretation code (as Open-Meteo reports it) reads as, and which glyph
// draws it. The glyph groups are coarser than the texts: code 1 reads "Partly cloudy" yet keeps
// the clear sky, and a code that is no WMO code at all may still fall in a glyph's range.
namespace WeatherCondition {

QString describe(int code);
// "clearDay", "clearNight", "cloud", "fog", "rain", "snow" or "thunder".
QString glyph(int code, bool isDay);

} // namespace WeatherCondition
} // namespace norva
