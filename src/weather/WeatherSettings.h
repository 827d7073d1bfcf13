#pragma once

#include "weather/GeoPlace.h"
#include "weather/TemperatureUnit.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace norva {

class SettingsStore;

// The weather's preferences: where each service is reached, the pinned place, the unit and
// whether the closed notch shows the weather. Addresses that are absent or not http(s) fall back
// to the public services, so a person (or a test) can point any of them elsewhere.
namespace WeatherSettings {

inline const QString forecastAddressKey = QStringLiteral("weather.forecastAddress.v1");
inline const QString geocodingAddressKey = QStringLiteral("weather.geocodingAddress.v1");
inline const QString locationAddressKey = QStringLiteral("weather.locationAddress.v1");
inline const QString locationFallbackAddressKey = QStringLiteral("weather.locationFallbackAddress.v1");
inline const QString placeLatitudeKey = QStringLiteral("weatherPlaceLat");
inline const QString placeLongitudeKey = QStringLiteral("weatherPlaceLon");
inline const QString placeNameKey = QStringLiteral("weatherPlaceName");
// Norva's own: "celsius" or "fahrenheit" over the desktop's unit; absent follows the desktop.
inline const QString unitKey = QStringLiteral("weather.unit.v1");
// Norva's own: the closed notch shows the temperature and its glyph (off unless switched on).
inline const QString closedNotchKey = QStringLiteral("activities.weather.v1");

// Open-Meteo's forecast and geocoding services (the paths are appended), and two keyless
// network-address location services that answer JSON with latitude, longitude and city.
inline const QString defaultForecastAddress = QStringLiteral("https://api.open-meteo.com");
inline const QString defaultGeocodingAddress = QStringLiteral("https://geocoding-api.open-meteo.com");
inline const QString defaultLocationAddress = QStringLiteral("https://ipapi.co/json/");
inline const QString defaultLocationFallbackAddress = QStringLiteral("https://get.geojs.io/v1/ip/geo.json");

struct Addresses {
    QUrl forecast;
    QUrl geocoding;
    QUrl location;
    QUrl locationFallback;
    bool operator==(const Addresses&) const = default;
};

Addresses addresses(const SettingsStore& settings);

// The pinned place, when all three keys hold a usable value.
std::optional<GeoPlace> pinnedPlace(const SettingsStore& settings);
void pin(SettingsStore& settings, const GeoPlace& place);
void unpin(SettingsStore& settings);

// The unit to ask for: Norva's own choice when set, else the desktop's.
TemperatureUnit unit(const SettingsStore& settings, TemperatureUnit desktop);
std::optional<TemperatureUnit> chosenUnit(const SettingsStore& settings);
void chooseUnit(SettingsStore& settings, std::optional<TemperatureUnit> unit);

bool showsOnClosedNotch(const SettingsStore& settings);

} // namespace WeatherSettings
} // namespace norva
