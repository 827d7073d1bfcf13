// Measures one weather refresh: locating from the network address, asking the forecast, reading
// the answer and keeping it on disk, against a local server that answers as Open-Meteo does for
// 5 days (120 hours). Then leaves the service idle and measures what it spends until the next
// refresh would be due. Prints one table.
//   build/bench/weather/bench_weather [refreshes] [idle seconds]
#include "LocalHttpServer.h"
#include "MemoryPreferences.h"

#include "app/SettingsStore.h"
#include "weather/WeatherService.h"
#include "weather/WeatherSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <sys/resource.h>

using namespace norva;

namespace {

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// An answer of Open-Meteo's shape and length for 5 days: units, 120 hours, 5 days.
QByteArray forecastAnswer()
{
    QJsonArray times, temperatures, codes, days;
    const QDateTime start(QDate(2026, 11, 18), QTime(0, 0), Qt::UTC);
    for (int hour = 0; hour < 120; ++hour) {
        times.append(start.addSecs(hour * 3600).toString(QStringLiteral("yyyy-MM-dd'T'HH:mm")));
        temperatures.append(double(hour % 17) / 3.0 + 1.1);
        codes.append(QJsonArray{0, 1, 2, 3, 61, 80}.at(hour % 6));
        days.append(hour % 24 >= 8 && hour % 24 < 17 ? 1 : 0);
    }
    QJsonArray dates, dayCodes, maxima, minima;
    for (int day = 0; day < 5; ++day) {
        dates.append(start.date().addDays(day).toString(Qt::ISODate));
        dayCodes.append(61);
        maxima.append(9.4 + day);
        minima.append(2.1 - day);
    }
    const QJsonObject answer{
        {"latitude", 52.52},
        {"longitude", 13.419998},
        {"generationtime_ms", 0.0641},
        {"utc_offset_seconds", 3600},
        {"timezone", "Europe/Berlin"},
        {"timezone_abbreviation", "GMT+1"},
        {"elevation", 38.0},
        {"current_units", QJsonObject{{"time", "iso8601"},
                                      {"interval", "seconds"},
                                      {"temperature_2m", "°C"},
                                      {"is_day", ""},
                                      {"weather_code", "wmo code"}}},
        {"current", QJsonObject{{"time", "2026-11-18T11:00"},
                                {"interval", 900},
                                {"temperature_2m", 7.4},
                                {"is_day", 1},
                                {"weather_code", 3}}},
        {"hourly_units",
         QJsonObject{
             {"time", "iso8601"}, {"temperature_2m", "°C"}, {"weather_code", "wmo code"}, {"is_day", ""}}},
        {"hourly",
         QJsonObject{
             {"time", times}, {"temperature_2m", temperatures}, {"weather_code", codes}, {"is_day", days}}},
        {"daily_units", QJsonObject{{"time", "iso8601"},
                                    {"weather_code", "wmo code"},
                                    {"temperature_2m_max", "°C"},
                                    {"temperature_2m_min", "°C"}}},
        {"daily", QJsonObject{{"time", dates},
                              {"weather_code", dayCodes},
                              {"temperature_2m_max", maxima},
                              {"temperature_2m_min", minima}}}};
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int refreshes = argc > 1 ? QByteArray(argv[1]).toInt() : 50;
    const int idleSeconds = argc > 2 ? QByteArray(argv[2]).toInt() : 30;
    const QByteArray forecast = forecastAnswer();
    const QByteArray located =
        R"({"ip":"192.0.2.1","network":"192.0.2.0/24","version":"IPv4","city":"Berlin",)"
        R"("region":"Land Berlin","country":"DE","country_name":"Germany",)"
        R"("latitude":52.5196,"longitude":13.4069,"timezone":"Europe/Berlin","utc_offset":"+0100"})";
    test::LocalHttpServer server([&](const test::LocalHttpServer::Request& request) {
        return test::LocalHttpServer::Response{200, request.path == QLatin1String("/v1/forecast") ? forecast
                                                                                                  : located};
    });
    test::MemoryPreferences prefs;
    SettingsStore settings(prefs);
    const QString base = server.address().toString();
    settings.write(base, WeatherSettings::kForecastAddressKey);
    settings.write(base + QStringLiteral("/where"), WeatherSettings::kLocationAddressKey);
    WeatherSettings weatherSettings(settings);
    QTemporaryDir folder;
    WeatherService weather(systemClock(), weatherSettings, TemperatureUnit::celsius,
                           folder.filePath("weather.json"));

    const auto waitForRefresh = [&] {
        QEventLoop loop;
        QObject::connect(&weather, &WeatherService::changed, &loop, [&] {
            if (!weather.isLoading())
                loop.quit();
        });
        loop.exec();
    };
    weather.start(); // the first refresh warms up the network stack
    waitForRefresh();

    const qint64 bytesBefore = weather.http().bytesReceived();
    const double cpuBefore = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    for (int i = 0; i < refreshes; ++i) {
        weather.refresh();
        waitForRefresh();
    }
    const double cpuPerRefresh = (cpuSeconds() - cpuBefore) / refreshes;
    const double wallPerRefresh = wall.elapsed() / double(refreshes);
    const double bytesPerRefresh = double(weather.http().bytesReceived() - bytesBefore) / refreshes;

    // Between refreshes: nothing but the armed 15-minute timer.
    const double idleBefore = cpuSeconds();
    QTimer::singleShot(idleSeconds * 1000, &app, &QCoreApplication::quit);
    app.exec();
    const double idleCpu = cpuSeconds() - idleBefore;

    std::printf("| measure | value |\n|---|---|\n");
    std::printf("| refreshes measured | %d |\n", refreshes);
    std::printf("| CPU per refresh (locate, forecast, read, keep on disk) | %.2f ms |\n",
                cpuPerRefresh * 1000);
    std::printf("| wall time per refresh on loopback | %.2f ms |\n", wallPerRefresh);
    std::printf("| answer bytes per refresh (location + forecast bodies) | %.0f |\n", bytesPerRefresh);
    std::printf("| of which the forecast answer | %lld |\n", static_cast<long long>(forecast.size()));
    std::printf("| requests the server saw | %lld |\n", static_cast<long long>(server.requests().size()));
    std::printf("| CPU over %d s idle after a refresh | %.1f ms |\n", idleSeconds, idleCpu * 1000);
    return 0;
}
