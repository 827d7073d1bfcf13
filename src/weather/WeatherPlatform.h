#pragma once

#include "weather/TemperatureUnit.h"

namespace norva::Platform {

// The unit the desktop asks temperatures in: on Linux the locale's measurement system
// (LC_MEASUREMENT, through LC_ALL and LANG), on macOS "AppleTemperatureUnit".
TemperatureUnit systemTemperatureUnit();

} // namespace norva::Platform
