#pragma once

#include "weather/GeoPlace.h"
#include "weather/TemperatureUnit.h"

#include <QObject>
#include <QString>
#include <QUrl>

#include <optional>

namespace norva {

class SettingsStore;

// The weather's own preferences, read and written through the settings store: where each service
// is reached, the pinned place, the unit and whether the closed notch shows the weather. Addresses
// that are absent or not http(s) fall back to the public services, so a person (or a test) can
// point any of them elsewhere. Each preference tells its own changes, Norva's writes and hand
// edits of the preferences alike, so a change elsewhere wakes nobody here.
class WeatherSettings : public QObject {
    Q_OBJECT
public:
    static const QString kForecastAddressKey;         // "weather.forecastAddress.v1"
    static const QString kGeocodingAddressKey;        // "weather.geocodingAddress.v1"
    static const QString kLocationAddressKey;         // "weather.locationAddress.v1"
    static const QString kLocationFallbackAddressKey; // "weather.locationFallbackAddress.v1"
    static const QString kPlaceLatitudeKey;           // "weatherPlaceLat"
    static const QString kPlaceLongitudeKey;          // "weatherPlaceLon"
    static const QString kPlaceNameKey;               // "weatherPlaceName"
    // "celsius" or "fahrenheit" over the desktop's unit; absent (or another word) follows the desktop.
    static const QString kUnitKey; // "weather.unit.v1"
    // The closed notch shows the temperature and its glyph; off when absent.
    static const QString kClosedNotchKey; // "activities.weather.v1"

    // Open-Meteo's forecast and geocoding services (the paths are appended), and two keyless
    // network-address location services that answer JSON with latitude, longitude and city.
    static const QString kDefaultForecastAddress;
    static const QString kDefaultGeocodingAddress;
    static const QString kDefaultLocationAddress;
    static const QString kDefaultLocationFallbackAddress;

    struct Addresses {
        QUrl forecast;
        QUrl geocoding;
        QUrl location;
        QUrl locationFallback;
        bool operator==(const Addresses&) const = default;
    };

    explicit WeatherSettings(SettingsStore& store, QObject* parent = nullptr);

    Addresses addresses() const;
    // The pinned place, when all three keys hold a usable value (a real position and a name).
    std::optional<GeoPlace> pinnedPlace() const;
    void pin(const GeoPlace& place);
    void unpin();
    // Norva's own unit when one is chosen; nothing follows the desktop.
    std::optional<TemperatureUnit> chosenUnit() const;
    void chooseUnit(std::optional<TemperatureUnit> unit);
    bool closedNotch() const;
    void setClosedNotch(bool on);

signals:
    void addressesChanged(); // any of the four services' addresses
    void placeChanged();     // any of the pinned place's three keys
    void unitChanged();
    void closedNotchChanged();

private:
    QUrl addressOf(const QString& key, const QString& fallback) const;

    SettingsStore& m_store;
};

} // namespace norva
