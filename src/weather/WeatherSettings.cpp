#include "weather/WeatherSettings.h"

#include "app/HttpClient.h"
#include "app/SettingsStore.h"

namespace norva::WeatherSettings {
namespace {

QUrl addressOf(const SettingsStore& settings, const QString& key, const QString& fallback)
{
    const auto stored = settings.storedText(key, QStringLiteral("a web address"));
    if (stored) {
        if (const auto usable = HttpClient::usableAddress(*stored))
            return *usable;
    }
    return QUrl(fallback);
}

} // namespace

Addresses addresses(const SettingsStore& settings)
{
    return {addressOf(settings, forecastAddressKey, defaultForecastAddress),
            addressOf(settings, geocodingAddressKey, defaultGeocodingAddress),
            addressOf(settings, locationAddressKey, defaultLocationAddress),
            addressOf(settings, locationFallbackAddressKey, defaultLocationFallbackAddress)};
}

std::optional<GeoPlace> pinnedPlace(const SettingsStore& settings)
{
    const auto latitude = settings.storedNumber(placeLatitudeKey);
    const auto longitude = settings.storedNumber(placeLongitudeKey);
    const auto name = settings.storedText(placeNameKey);
    if (!latitude || !longitude || !name || !GeoPlace::isPosition(*latitude, *longitude))
        return std::nullopt;
    return GeoPlace{*name, *latitude, *longitude};
}

void pin(SettingsStore& settings, const GeoPlace& place)
{
    settings.write(place.latitude, placeLatitudeKey);
    settings.write(place.longitude, placeLongitudeKey);
    settings.write(place.name, placeNameKey);
}

void unpin(SettingsStore& settings)
{
    for (const QString& key : {placeLatitudeKey, placeLongitudeKey, placeNameKey})
        settings.write(std::nullopt, key);
}

std::optional<TemperatureUnit> chosenUnit(const SettingsStore& settings)
{
    const auto word = settings.storedText(unitKey, QStringLiteral("celsius or fahrenheit"));
    return word ? unitFromWord(*word) : std::nullopt;
}

TemperatureUnit unit(const SettingsStore& settings, TemperatureUnit desktop)
{
    return chosenUnit(settings).value_or(desktop);
}

void chooseUnit(SettingsStore& settings, std::optional<TemperatureUnit> unit)
{
    settings.write(unit ? std::optional<QVariant>(unitWord(*unit)) : std::nullopt, unitKey);
}

bool showsOnClosedNotch(const SettingsStore& settings)
{
    return settings.flag(closedNotchKey, false);
}

} // namespace norva::WeatherSettings
