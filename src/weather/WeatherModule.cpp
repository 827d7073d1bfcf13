#include "weather/WeatherModule.h"

#include "shell/Shell.h"
#include "weather/KeptForecast.h"
#include "weather/WeatherPlatform.h"

namespace norva {

WeatherModule::WeatherModule(Shell& shell)
    : m_service(std::make_unique<WeatherService>(
          shell.clock(), shell.settings(), Platform::systemTemperatureUnit(), KeptForecast::defaultPath())),
      m_picker(std::make_unique<WeatherPlacePicker>(*m_service, shell.clock()))
{}

WeatherModule::~WeatherModule() = default;

QList<FeaturePage> WeatherModule::pages() const
{
    return {{QStringLiteral("weather"), QStringLiteral("Weather"), QStringLiteral("WeatherPage.qml"),
             QStringLiteral("The forecast for your places will be here."), 70}};
}

QList<QmlObject> WeatherModule::qmlObjects() const
{
    return {{QStringLiteral("weather"), m_service.get()}, {QStringLiteral("weatherPlaces"), m_picker.get()}};
}

} // namespace norva
