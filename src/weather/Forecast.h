#pragma once

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace norva {

// The conditions now at the place: temperature in the unit asked for, day or night, WMO code.
struct CurrentReading {
    double temperature = 0;
    bool isDay = true;
    int code = 0;
    bool operator==(const CurrentReading&) const = default;
};

// One hour of the forecast; `time` is the hour's start in the place's own time.
struct HourForecast {
    QDateTime time;
    double temperature = 0;
    int code = 0;
    bool isDay = true;
    bool operator==(const HourForecast&) const = default;
};

// One day of the forecast, in the place's own calendar.
struct DayForecast {
    QDate date;
    int code = 0;
    double maximum = 0;
    double minimum = 0;
    bool operator==(const DayForecast&) const = default;
};

struct ForecastOutcome;

// Open-Meteo's answer for one place, as Norva keeps it. Numbers may come as integers or doubles;
// an hour or a day with a value missing is left out rather than shown as zero.
struct Forecast {
    CurrentReading current;
    QList<HourForecast> hours;
    QList<DayForecast> days;
    int utcOffsetSeconds = 0; // the place's offset from UTC when the answer was made

    bool operator==(const Forecast&) const = default;

    // Reads the answer's "current", "hourly" and "daily" objects. No "current" object, or no
    // readable JSON object at all, is a failure with its reason.
    static ForecastOutcome fromAnswer(const QByteArray& body);

    // The hours from the one under way at `now` on, in answer order, at most `count`.
    QList<HourForecast> nextHours(const QDateTime& now, int count) const;
    // The days from the place's today on.
    QList<DayForecast> daysFrom(const QDateTime& now) const;
};

// A forecast, or why the answer gave none ("Open-Meteo sent no current conditions").
struct ForecastOutcome {
    std::optional<Forecast> forecast;
    QString failure;
};

} // namespace norva
