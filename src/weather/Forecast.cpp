#include "weather/Forecast.h"

#include "app/JsonNumber.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace norva {
namespace {

// Answer times are the place's wall times: hours in isoHourFormatter's pattern, days in the day pattern.
const QString kIsoHourPattern = QStringLiteral("yyyy-MM-dd'T'HH:mm");
const QString kIsoDayPattern = QStringLiteral("yyyy-MM-dd");
constexpr int kSecondsPerHour = 3600;

// Open-Meteo writes 21 for some values and 21.4 for others; both are a number.
std::optional<double> number(const QJsonValue& value)
{
    return jsonNumber(value);
}

std::optional<int> code(const QJsonValue& value)
{
    const auto read = number(value);
    if (!read || std::abs(*read) > 1e6)
        return std::nullopt;
    return int(std::lround(*read));
}

std::optional<bool> dayFlag(const QJsonValue& value)
{
    if (value.isBool())
        return value.toBool();
    if (const auto read = number(value))
        return *read != 0;
    return std::nullopt;
}

QDateTime placeTime(const QString& text, int offsetSeconds)
{
    const QDateTime wall = QDateTime::fromString(text, kIsoHourPattern);
    if (!wall.isValid())
        return {};
    return QDateTime(wall.date(), wall.time(), Qt::OffsetFromUTC, offsetSeconds);
}

// The length that every one of the parallel arrays reaches.
qsizetype commonLength(const QList<QJsonArray>& arrays)
{
    qsizetype length = arrays.isEmpty() ? 0 : arrays.first().size();
    for (const QJsonArray& array : arrays)
        length = std::min(length, array.size());
    return length;
}

QList<HourForecast> readHours(const QJsonObject& hourly, int offsetSeconds)
{
    const QJsonArray times = hourly.value(QStringLiteral("time")).toArray();
    const QJsonArray temperatures = hourly.value(QStringLiteral("temperature_2m")).toArray();
    const QJsonArray codes = hourly.value(QStringLiteral("weather_code")).toArray();
    const QJsonArray days = hourly.value(QStringLiteral("is_day")).toArray();
    QList<HourForecast> hours;
    const qsizetype length = commonLength({times, temperatures, codes, days});
    for (qsizetype i = 0; i < length; ++i) {
        const QDateTime time = placeTime(times.at(i).toString(), offsetSeconds);
        const auto temperature = number(temperatures.at(i));
        const auto weatherCode = code(codes.at(i));
        const auto isDay = dayFlag(days.at(i));
        if (time.isValid() && temperature && weatherCode && isDay)
            hours.append({time, *temperature, *weatherCode, *isDay});
    }
    return hours;
}

QList<DayForecast> readDays(const QJsonObject& daily)
{
    const QJsonArray dates = daily.value(QStringLiteral("time")).toArray();
    const QJsonArray codes = daily.value(QStringLiteral("weather_code")).toArray();
    const QJsonArray maxima = daily.value(QStringLiteral("temperature_2m_max")).toArray();
    const QJsonArray minima = daily.value(QStringLiteral("temperature_2m_min")).toArray();
    QList<DayForecast> days;
    const qsizetype length = commonLength({dates, codes, maxima, minima});
    for (qsizetype i = 0; i < length; ++i) {
        const QDate date = QDate::fromString(dates.at(i).toString(), kIsoDayPattern);
        const auto weatherCode = code(codes.at(i));
        const auto maximum = number(maxima.at(i));
        const auto minimum = number(minima.at(i));
        if (date.isValid() && weatherCode && maximum && minimum)
            days.append({date, *weatherCode, *maximum, *minimum});
    }
    return days;
}

} // namespace

ForecastOutcome Forecast::fromAnswer(const QByteArray& body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject())
        return {std::nullopt, QStringLiteral("Open-Meteo sent nothing readable")};
    const QJsonObject answer = document.object();
    const QJsonObject current = answer.value(QStringLiteral("current")).toObject();
    const auto temperature = number(current.value(QStringLiteral("temperature_2m")));
    const auto weatherCode = code(current.value(QStringLiteral("weather_code")));
    if (!temperature || !weatherCode)
        return {std::nullopt, QStringLiteral("Open-Meteo sent no current conditions")};
    Forecast forecast;
    forecast.current = {*temperature, dayFlag(current.value(QStringLiteral("is_day"))).value_or(true),
                        *weatherCode};
    forecast.utcOffsetSeconds = int(number(answer.value(QStringLiteral("utc_offset_seconds"))).value_or(0));
    forecast.hours = readHours(answer.value(QStringLiteral("hourly")).toObject(), forecast.utcOffsetSeconds);
    forecast.days = readDays(answer.value(QStringLiteral("daily")).toObject());
    return {forecast, {}};
}

QList<HourForecast> Forecast::nextHours(const QDateTime& now, int count) const
{
    QList<HourForecast> next;
    for (const HourForecast& hour : hours) {
        if (next.size() >= count)
            break;
        // The hour under way counts: it ends after now.
        if (hour.time.addSecs(kSecondsPerHour) > now)
            next.append(hour);
    }
    return next;
}

QList<DayForecast> Forecast::daysFrom(const QDateTime& now) const
{
    const QDate today = now.toOffsetFromUtc(utcOffsetSeconds).date();
    QList<DayForecast> from;
    std::copy_if(days.begin(), days.end(), std::back_inserter(from),
                 [&today](const DayForecast& day) { return day.date >= today; });
    return from;
}

} // namespace norva
