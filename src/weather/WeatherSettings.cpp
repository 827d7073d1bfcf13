#include "weather/WeatherSettings.h"

#include "app/HttpClient.h"
#include "app/SettingsStore.h"

namespace norva {

const QString WeatherSettings::kForecastAddressKey = QStringLiteral("weather.forecastAddress.v1");
const QString WeatherSettings::kGeocodingAddressKey = QStringLiteral("weather.geocodingAddress.v1");
const QString WeatherSettings::kLocationAddressKey = QStringLiteral("weather.locationAddress.v1");
const QString WeatherSettings::kLocationFallbackAddressKey =
    QStringLiteral("weather.locationFallbackAddress.v1");
const QString WeatherSettings::kPlaceLatitudeKey = QStringLiteral("weatherPlaceLat");
const QString WeatherSettings::kPlaceLongitudeKey = QStringLiteral("weatherPlaceLon");
const QString WeatherSettings::kPlaceNameKey = QStringLiteral("weatherPlaceName");
const QString WeatherSettings::kUnitKey = QStringLiteral("weather.unit.v1");
const QString WeatherSettings::kClosedNotchKey = QStringLiteral("activities.weather.v1");

const QString WeatherSettings::kDefaultForecastAddress = QStringLiteral("https://api.open-meteo.com");
const QString WeatherSettings::kDefaultGeocodingAddress =
    QStringLiteral("https://geocoding-api.open-meteo.com");
const QString WeatherSettings::kDefaultLocationAddress = QStringLiteral("https://ipapi.co/json/");
const QString WeatherSettings::kDefaultLocationFallbackAddress =
    QStringLiteral("https://get.geojs.io/v1/ip/geo.json");

WeatherSettings::WeatherSettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    const QStringList addressKeys{kForecastAddressKey, kGeocodingAddressKey, kLocationAddressKey,
                                  kLocationFallbackAddressKey};
    const QStringList placeKeys{kPlaceLatitudeKey, kPlaceLongitudeKey, kPlaceNameKey};
    m_store.follow(addressKeys + placeKeys + QStringList{kUnitKey, kClosedNotchKey}, this,
                   [this, addressKeys, placeKeys](const QString& key) {
                       if (addressKeys.contains(key))
                           emit addressesChanged();
                       else if (placeKeys.contains(key))
                           emit placeChanged();
                       else if (key == kUnitKey)
                           emit unitChanged();
                       else if (key == kClosedNotchKey)
                           emit closedNotchChanged();
                   });
}

QUrl WeatherSettings::addressOf(const QString& key, const QString& fallback) const
{
    if (const auto stored = m_store.storedText(key, QStringLiteral("a web address"))) {
        if (const auto usable = HttpClient::usableAddress(*stored))
            return *usable;
    }
    return QUrl(fallback);
}

WeatherSettings::Addresses WeatherSettings::addresses() const
{
    return {addressOf(kForecastAddressKey, kDefaultForecastAddress),
            addressOf(kGeocodingAddressKey, kDefaultGeocodingAddress),
            addressOf(kLocationAddressKey, kDefaultLocationAddress),
            addressOf(kLocationFallbackAddressKey, kDefaultLocationFallbackAddress)};
}

std::optional<GeoPlace> WeatherSettings::pinnedPlace() const
{
    const auto latitude = m_store.storedNumber(kPlaceLatitudeKey);
    const auto longitude = m_store.storedNumber(kPlaceLongitudeKey);
    const auto name = m_store.storedText(kPlaceNameKey);
    if (!latitude || !longitude || !name || !GeoPlace::isPosition(*latitude, *longitude))
        return std::nullopt;
    return GeoPlace{*name, *latitude, *longitude};
}

void WeatherSettings::pin(const GeoPlace& place)
{
    m_store.write(place.latitude, kPlaceLatitudeKey);
    m_store.write(place.longitude, kPlaceLongitudeKey);
    m_store.write(place.name, kPlaceNameKey);
}

void WeatherSettings::unpin()
{
    for (const QString& key : {kPlaceLatitudeKey, kPlaceLongitudeKey, kPlaceNameKey})
        m_store.write(std::nullopt, key);
}

std::optional<TemperatureUnit> WeatherSettings::chosenUnit() const
{
    const auto word = m_store.storedText(kUnitKey, QStringLiteral("celsius or fahrenheit"));
    return word ? unitFromWord(*word) : std::nullopt;
}

void WeatherSettings::chooseUnit(std::optional<TemperatureUnit> unit)
{
    m_store.write(unit ? std::optional<QVariant>(unitWord(*unit)) : std::nullopt, kUnitKey);
}

bool WeatherSettings::closedNotch() const
{
    return m_store.flag(kClosedNotchKey, false);
}

void WeatherSettings::setClosedNotch(bool on)
{
    m_store.write(on, kClosedNotchKey);
}

} // namespace norva
