#include "weather/WeatherDisplay.h"

#include "weather/WeatherCondition.h"

#include <QLocale>

#include <cmath>

namespace norva::WeatherDisplay {
namespace {

constexpr qint64 kMinute = 60;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;
constexpr qint64 kJustNow = 2 * kMinute;

} // namespace

QString temperatureText(double temperature)
{
    const long rounded = std::lround(temperature);
    return QString::number(rounded == 0 ? 0 : rounded) + QStringLiteral("\u00B0");
}

QString ageText(const QDateTime& fetchedAt, const QDateTime& now)
{
    const qint64 seconds = std::max<qint64>(0, fetchedAt.secsTo(now));
    if (seconds < kJustNow)
        return QStringLiteral("Updated just now");
    if (seconds < kHour)
        return QStringLiteral("Updated %1 min ago").arg(seconds / kMinute);
    if (seconds < kDay)
        return QStringLiteral("Updated %1 h ago").arg(seconds / kHour);
    const qint64 days = seconds / kDay;
    return days == 1 ? QStringLiteral("Updated a day ago") : QStringLiteral("Updated %1 days ago").arg(days);
}

QVariantList hourRows(const QList<HourForecast>& hours, const QDateTime& now)
{
    QVariantList rows;
    for (const HourForecast& hour : hours) {
        const bool underWay = hour.time <= now;
        rows.append(QVariantMap{
            {QStringLiteral("time"), hour.time.toString(Qt::ISODate)},
            {QStringLiteral("label"),
             underWay ? QStringLiteral("Now") : hour.time.time().toString(QStringLiteral("HH:mm"))},
            {QStringLiteral("temperature"), temperatureText(hour.temperature)},
            {QStringLiteral("glyph"), WeatherCondition::glyph(hour.code, hour.isDay)},
            {QStringLiteral("text"), WeatherCondition::describe(hour.code)}});
    }
    return rows;
}

QVariantList dayRows(const QList<DayForecast>& days, const QDate& today)
{
    const QLocale english(QLocale::English);
    QVariantList rows;
    for (const DayForecast& day : days) {
        rows.append(
            QVariantMap{{QStringLiteral("date"), day.date.toString(Qt::ISODate)},
                        {QStringLiteral("label"),
                         day.date == today ? QStringLiteral("Today")
                                           : english.dayName(day.date.dayOfWeek(), QLocale::ShortFormat)},
                        {QStringLiteral("maximum"), temperatureText(day.maximum)},
                        {QStringLiteral("minimum"), temperatureText(day.minimum)},
                        {QStringLiteral("glyph"), WeatherCondition::glyph(day.code, true)},
                        {QStringLiteral("text"), WeatherCondition::describe(day.code)}});
    }
    return rows;
}

} // namespace norva::WeatherDisplay
