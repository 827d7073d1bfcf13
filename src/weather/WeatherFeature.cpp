#include "weather/WeatherFeature.h"

#include "weather/KeptForecast.h"
#include "weather/WeatherPlatform.h"

namespace norva {

WeatherFeature::WeatherFeature(Clock& clock, SettingsStore& settings)
    : m_service(std::make_unique<WeatherService>(clock, settings, Platform::systemTemperatureUnit(),
                                                 KeptForecast::defaultPath())),
      m_picker(std::make_unique<WeatherPlacePicker>(*m_service, clock))
{}

QList<std::pair<QString, QObject*>> WeatherFeature::qmlObjects() const
{
    return {{QStringLiteral("weather"), m_service.get()}, {QStringLiteral("weatherPlaces"), m_picker.get()}};
}

} // namespace norva
