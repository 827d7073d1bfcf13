#pragma once

#include "LocalHttpServer.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "WeatherAnswers.h"

#include "app/SettingsStore.h"
#include "weather/WeatherService.h"
#include "weather/WeatherSettings.h"

#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

#include <memory>

namespace norva::test {

// A weather service whose four services answer from one local HTTP server: the forecast at
// "/v1/forecast", the geocoder at "/v1/search" and the two location services at "/where" and
// "/where-else". Each path answers what the test put in `answers`, or 404.
struct WeatherRig {
    ManualClock clock;
    MemoryPreferences prefs;
    SettingsStore settings{prefs};
    WeatherSettings weatherSettings{settings};
    QTemporaryDir folder;
    QHash<QString, LocalHttpServer::Response> answers;
    LocalHttpServer server{[this](const LocalHttpServer::Request& request) {
        return answers.value(request.path, LocalHttpServer::Response{404, "{}"});
    }};
    std::unique_ptr<WeatherService> weather;

    explicit WeatherRig(TemperatureUnit desktopUnit = TemperatureUnit::celsius)
    {
        const QString base = server.address().toString();
        settings.write(base, WeatherSettings::kForecastAddressKey);
        settings.write(base, WeatherSettings::kGeocodingAddressKey);
        settings.write(base + QStringLiteral("/where"), WeatherSettings::kLocationAddressKey);
        settings.write(base + QStringLiteral("/where-else"), WeatherSettings::kLocationFallbackAddressKey);
        answers.insert(QStringLiteral("/v1/forecast"), {200, WeatherAnswers::berlin});
        answers.insert(QStringLiteral("/where"), {200, WeatherAnswers::located});
        make(desktopUnit);
    }

    // The kept forecast is written off the main thread: let it land before the folder goes.
    ~WeatherRig()
    {
        weather.reset();
        QThreadPool::globalInstance()->waitForDone();
    }

    void make(TemperatureUnit desktopUnit = TemperatureUnit::celsius)
    {
        weather.reset();
        weather = std::make_unique<WeatherService>(clock, weatherSettings, desktopUnit, keptPath());
    }

    QString keptPath() const { return folder.filePath(QStringLiteral("weather.json")); }

    void pinBerlin()
    {
        settings.write(52.52, WeatherSettings::kPlaceLatitudeKey);
        settings.write(13.405, WeatherSettings::kPlaceLongitudeKey);
        settings.write(QStringLiteral("Berlin"), WeatherSettings::kPlaceNameKey);
    }

    QStringList paths() const
    {
        QStringList list;
        for (const auto& request : server.requests())
            list << request.path;
        return list;
    }

    bool settled() const
    {
        return QTest::qWaitFor([this] { return !weather->isLoading(); }, 5000);
    }
};

} // namespace norva::test
