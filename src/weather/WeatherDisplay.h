#pragma once

#include "weather/Forecast.h"

#include <QDateTime>
#include <QString>
#include <QVariantList>

// How the weather's numbers and moments read on the tile, the page and the closed notch.
namespace norva::WeatherDisplay {

// Whole degrees with a degree sign ("21°", "-3°"); never "-0°".
QString temperatureText(double temperature);
// "Updated just now", "Updated 12 min ago", "Updated 3 h ago", "Updated 2 days ago".
QString ageText(const QDateTime& fetchedAt, const QDateTime& now);
// The hours as the page and tile draw them: "Now" for the one under way, else "14:00".
QVariantList hourRows(const QList<HourForecast>& hours, const QDateTime& now);
// The days: "Today", then short weekday names ("Tue").
QVariantList dayRows(const QList<DayForecast>& days, const QDate& today);

} // namespace norva::WeatherDisplay
