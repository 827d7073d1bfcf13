#pragma once

#include "shell/FeatureModule.h"
#include "weather/WeatherPlacePicker.h"
#include "weather/WeatherSamples.h"
#include "weather/WeatherService.h"
#include "weather/WeatherSettings.h"

#include <memory>

namespace norva {

class Shell;

// The weather as Norva runs it: its preferences, the service with the desktop's unit and its kept
// forecast in Norva's data folder, the Weather page and its place picker. The demo shows a sample
// forecast and asks no service.
class WeatherModule : public FeatureModule {
    Q_OBJECT
public:
    explicit WeatherModule(Shell& shell);
    ~WeatherModule() override;

    void start() override;
    void stop() override { m_service->stop(); }
    QList<FeaturePage> pages() const override;
    // "weather" and "weatherPlaces", the names the weather's QML uses.
    QList<QObject*> qmlObjects() const override;

    // The demo's weather: a mild day in Lisbon in the desktop's own time, and a few places to find.
    static WeatherSamples samples();

private:
    Shell& m_shell;
    std::unique_ptr<WeatherSettings> m_settings;
    std::unique_ptr<WeatherService> m_service;
    std::unique_ptr<WeatherPlacePicker> m_picker;
};

} // namespace norva
