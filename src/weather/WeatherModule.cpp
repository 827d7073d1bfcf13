#include "weather/WeatherModule.h"

#include "shell/Shell.h"
#include "weather/KeptForecast.h"
#include "weather/WeatherPlatform.h"

#include <cmath>
#include <numbers>

namespace norva {
namespace {

constexpr int kSampleHours = 24;
constexpr double kSampleMean = 17.0; // °C, the day's temperatures swing around it
constexpr double kSampleSwing = 4.5;
constexpr int kWarmestHour = 15;

double inUnit(double celsius, TemperatureUnit unit)
{
    return unit == TemperatureUnit::fahrenheit ? celsius * 9.0 / 5.0 + 32.0 : celsius;
}

// Warmest in the afternoon, coolest before dawn, to the tenth of a degree as Open-Meteo answers.
double sampleTemperature(int hourOfDay, TemperatureUnit unit)
{
    const double angle = 2.0 * std::numbers::pi * (hourOfDay - kWarmestHour) / 24.0;
    return std::round(inUnit(kSampleMean + kSampleSwing * std::cos(angle), unit) * 10.0) / 10.0;
}

// A clear morning that clouds over, with a shower in the evening.
int sampleCode(int hourOfDay)
{
    if (hourOfDay >= 18 && hourOfDay < 20)
        return 80;
    if (hourOfDay >= 14 && hourOfDay < 18)
        return 2;
    return hourOfDay >= 8 && hourOfDay < 14 ? 0 : 1;
}

Forecast sampleForecast(const QDateTime& now, TemperatureUnit unit)
{
    // The desktop's own time stands for the place's, so the hours read as the clock on the wall.
    const QDateTime local = now.toLocalTime();
    Forecast forecast;
    forecast.utcOffsetSeconds = local.offsetFromUtc();
    const QDateTime thisHour(local.date(), QTime(local.time().hour(), 0), Qt::OffsetFromUTC,
                             forecast.utcOffsetSeconds);
    for (int i = 0; i < kSampleHours; ++i) {
        const QDateTime hour = thisHour.addSecs(i * 3600);
        const int hourOfDay = hour.time().hour();
        forecast.hours.append({hour, sampleTemperature(hourOfDay, unit), sampleCode(hourOfDay),
                               hourOfDay >= 7 && hourOfDay < 20});
    }
    const HourForecast& current = forecast.hours.first();
    forecast.current = {current.temperature, current.isDay, current.code};
    const QList<std::tuple<int, double, double>> days = {
        {2, 21.5, 12.5}, {3, 19.0, 13.0}, {61, 16.5, 11.0}, {0, 22.0, 12.0}, {1, 23.5, 14.0}};
    for (int i = 0; i < days.size(); ++i) {
        const auto& [code, maximum, minimum] = days.at(i);
        forecast.days.append({local.date().addDays(i), code, inUnit(maximum, unit), inUnit(minimum, unit)});
    }
    return forecast;
}

} // namespace

WeatherModule::WeatherModule(Shell& shell)
    : m_shell(shell), m_settings(std::make_unique<WeatherSettings>(shell.settings())),
      m_service(std::make_unique<WeatherService>(shell.clock(), *m_settings,
                                                 Platform::systemTemperatureUnit(),
                                                 KeptForecast::pathIn(shell.dataFolder()))),
      m_picker(std::make_unique<WeatherPlacePicker>(*m_service, shell.clock()))
{}

WeatherModule::~WeatherModule() = default;

void WeatherModule::start()
{
    if (m_shell.demo().on)
        m_service->showSamples(samples());
    else
        m_service->start();
}

QList<FeaturePage> WeatherModule::pages() const
{
    return {{QStringLiteral("weather"), QStringLiteral("Weather"), QStringLiteral("WeatherPage.qml"),
             QStringLiteral("The forecast for your places will be here."), 70}};
}

QList<QObject*> WeatherModule::qmlObjects() const
{
    return {m_service.get(), m_picker.get()};
}

WeatherSamples WeatherModule::samples()
{
    return {{QStringLiteral("Lisbon, Portugal"), 38.7223, -9.1393},
            sampleForecast,
            {{QStringLiteral("Lisbon, Portugal"), 38.7223, -9.1393},
             {QStringLiteral("Porto, Portugal"), 41.1496, -8.611},
             {QStringLiteral("Reykjavík, Iceland"), 64.1355, -21.8954},
             {QStringLiteral("Oslo, Norway"), 59.9127, 10.7461},
             {QStringLiteral("Berlin, Germany"), 52.5244, 13.4105},
             {QStringLiteral("Kyoto, Japan"), 35.0211, 135.7538}}};
}

} // namespace norva
