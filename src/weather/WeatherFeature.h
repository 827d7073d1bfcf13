#pragma once

#include "app/Clock.h"
#include "weather/WeatherPlacePicker.h"
#include "weather/WeatherService.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <utility>

namespace norva {

class SettingsStore;

// The weather as the application runs it: the service with the desktop's unit and its kept
// forecast in Norva's data folder, and the page's place picker. The demo shows the weather too
// (it reads nothing of the person's own beyond the network's idea of where they are).
class WeatherFeature {
public:
    WeatherFeature(Clock& clock, SettingsStore& settings);

    void start() { m_service->start(); }
    void stop() { m_service->stop(); }
    WeatherService& service() { return *m_service; }
    // The objects QML reads, by the names the weather's QML uses ("weather", "weatherPlaces").
    QList<std::pair<QString, QObject*>> qmlObjects() const;

private:
    std::unique_ptr<WeatherService> m_service;
    std::unique_ptr<WeatherPlacePicker> m_picker;
};

} // namespace norva
