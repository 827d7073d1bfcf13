#pragma once

#include "weather/Forecast.h"
#include "weather/GeoPlace.h"
#include "weather/TemperatureUnit.h"

#include <QDateTime>
#include <QList>

#include <functional>

namespace norva {

// What the weather shows in the demo instead of asking any service: a place, its forecast made
// for the moment and the unit asked, and the places a search can find.
struct WeatherSamples {
    GeoPlace place;
    std::function<Forecast(const QDateTime& now, TemperatureUnit unit)> forecast;
    QList<GeoPlace> places;
};

} // namespace norva
