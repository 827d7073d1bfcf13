#pragma once

#include "shell/FeatureModule.h"
#include "weather/WeatherPlacePicker.h"
#include "weather/WeatherService.h"

#include <memory>

namespace norva {

class Shell;

// The weather as Norva runs it: the service with the desktop's unit and its kept forecast in
// Norva's data folder, the Weather page and its place picker. The demo shows the weather too (it
// reads nothing of the person's own beyond the network's idea of where they are).
class WeatherModule : public FeatureModule {
    Q_OBJECT
public:
    explicit WeatherModule(Shell& shell);
    ~WeatherModule() override;

    void start() override { m_service->start(); }
    void stop() override { m_service->stop(); }
    QList<FeaturePage> pages() const override;
    // "weather" and "weatherPlaces", the names the weather's QML uses.
    QList<QmlObject> qmlObjects() const override;

private:
    std::unique_ptr<WeatherService> m_service;
    std::unique_ptr<WeatherPlacePicker> m_picker;
};

} // namespace norva
