#pragma once

#include "weather/GeoPlace.h"
#include "weather/TemperatureUnit.h"

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>

#include <optional>

namespace norva {

// The last good forecast as Open-Meteo sent it, with when and for which place and unit it was
// fetched, kept in "weather.json" so that a start (or an offline hour) shows it with its age
// instead of nothing.
struct KeptForecast {
    QDateTime fetchedAt;
    GeoPlace place;
    TemperatureUnit unit = TemperatureUnit::celsius;
    QByteArray answer;
    bool operator==(const KeptForecast&) const = default;

    static QString pathIn(const QString& dataFolder); // "weather.json" in Norva's data folder

    // Nothing when there is no file; an unreadable one is logged and set aside under a name of
    // its own, so the next save does not overwrite it.
    static std::optional<KeptForecast> load(const QString& path, const QDateTime& now);
    // Writes the file whole, off the main thread; a failure is logged and the next fetch tries again.
    static void save(const QString& path, const KeptForecast& kept, QObject* context);

    QByteArray toJson() const;
    static std::optional<KeptForecast> fromJson(const QByteArray& bytes);
};

} // namespace norva
