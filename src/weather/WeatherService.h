#pragma once

#include "app/Clock.h"
#include "app/HttpClient.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "weather/Forecast.h"
#include "weather/GeoPlace.h"
#include "weather/TemperatureUnit.h"
#include "weather/WeatherSamples.h"
#include "weather/WeatherSettings.h"

#include <QDateTime>
#include <QObject>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <chrono>
#include <functional>
#include <optional>

namespace norva {

// The current conditions and short forecasts for one place: the one the person pinned, or the
// machine's approximate place found from its network address. Fetches from Open-Meteo every
// 15 minutes and nothing in between; keeps the last good forecast on disk so a start or an
// offline hour shows it with its age. Follows its preferences as they change: a new place or unit
// refreshes at once, a new address serves the next request. All state lives on the main thread.
class WeatherService : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool hasReading READ hasReading NOTIFY changed)
    Q_PROPERTY(QString temperature READ temperatureText NOTIFY changed)
    Q_PROPERTY(QString conditionText READ conditionText NOTIFY changed)
    Q_PROPERTY(QString glyph READ glyphName NOTIFY changed)
    Q_PROPERTY(QString placeName READ placeName NOTIFY changed)
    Q_PROPERTY(bool isManualPlace READ isManualPlace NOTIFY changed)
    Q_PROPERTY(bool loading READ isLoading NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)
    Q_PROPERTY(QString failure READ failure NOTIFY changed)
    Q_PROPERTY(QString ageText READ ageText NOTIFY changed)
    Q_PROPERTY(bool isOld READ isOld NOTIFY changed)
    Q_PROPERTY(norva::RowsModel* hours READ hours CONSTANT)
    Q_PROPERTY(norva::RowsModel* days READ days CONSTANT)
    Q_PROPERTY(QString unitChoice READ unitChoice WRITE setUnitChoice NOTIFY changed)
    Q_PROPERTY(QString unitLabel READ unitLabel NOTIFY changed)
    Q_PROPERTY(bool showOnClosedNotch READ showOnClosedNotch WRITE setShowOnClosedNotch NOTIFY changed)
    Q_PROPERTY(bool closedFaceReady READ closedFaceReady NOTIFY changed)

public:
    static WeatherService* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<WeatherService>(); }
    enum class Status { idle, loading, ready, failed };

    static constexpr Seconds refreshInterval{900.0}; // a fetch every 15 minutes
    static constexpr Seconds forecastTimeout{10.0};
    static constexpr Seconds geocodingTimeout{8.0}; // built with 60 s, then narrowed for typing
    static constexpr Seconds locationTimeout{10.0}; // each location service
    static constexpr Seconds oldAfter{3 * 3600.0};  // a kept forecast this old is shown as old
    static constexpr int hoursShown = 6;

    // `desktopUnit` is the desktop's temperature unit; "weather.unit.v1" overrides it.
    WeatherService(Clock& clock, WeatherSettings& settings, TemperatureUnit desktopUnit, QString keptPath,
                   QObject* parent = nullptr);

    // Reads the kept forecast, arms the 15-minute refresh and refreshes now when the last fetch
    // is 15 minutes old or there was none. stop() disarms the refresh.
    void start();
    void stop();
    // The demo: shows the samples now and at every refresh, pins and searches among them, and
    // asks no service and keeps nothing on disk.
    void showSamples(WeatherSamples samples);
    // Locates first unless a place is pinned, then fetches. A refresh under way is replaced.
    Q_INVOKABLE void refresh();

    using PlacesDone = std::function<void(const std::optional<QList<GeoPlace>>&)>;
    // Asks the geocoder for places named like `query`; nothing when the search failed.
    void searchPlaces(const QString& query, PlacesDone done);
    void usePlace(const GeoPlace& place);
    Q_INVOKABLE void useAutomaticLocation();

    // Published state.
    const std::optional<CurrentReading>& weather() const { return m_weather; }
    const QList<HourForecast>& nextHours() const { return m_nextHours; }
    const QList<DayForecast>& dayForecasts() const { return m_dayForecasts; }
    const QList<DayForecast>& weekForecasts() const { return m_weekForecasts; }
    QString placeName() const { return m_placeName; }
    bool isManualPlace() const { return m_isManualPlace; }
    Status status() const { return m_status; }
    QString failure() const { return m_failure; }
    QString failureCause() const { return m_failureCause; }
    std::optional<QDateTime> lastFetch() const { return m_lastFetch; }
    TemperatureUnit unit() const;
    HttpClient& http() { return m_http; }

    // For QML.
    bool hasReading() const { return m_weather.has_value(); }
    QString temperatureText() const;
    QString conditionText() const;
    QString glyphName() const;
    bool isLoading() const { return m_status == Status::loading; }
    QString statusText() const;
    QString ageText() const;
    bool isOld() const;
    RowsModel* hours() { return &m_hours; }
    RowsModel* days() { return &m_days; }
    QString unitChoice() const; // "system", "celsius" or "fahrenheit"
    void setUnitChoice(const QString& choice);
    // "°C", "°F", or the desktop's unit with "(system)".
    QString unitLabel() const;
    // The unit button: the desktop's unit, then Celsius, then Fahrenheit, and round again.
    Q_INVOKABLE void nextUnitChoice();
    bool showOnClosedNotch() const;
    void setShowOnClosedNotch(bool on);
    // The closed notch has weather to show: it is switched on and there is a reading.
    bool closedFaceReady() const { return showOnClosedNotch() && hasReading(); }

signals:
    void changed();

private:
    struct Wanted { // what the forecast is asked for, from the preferences
        std::optional<GeoPlace> pinned;
        TemperatureUnit unit = TemperatureUnit::celsius;
        bool operator==(const Wanted&) const = default;
    };
    Wanted readWanted() const;
    void followPlaceAndUnit();
    void showSample();
    void begin(bool locating);
    void locate(quint64 generation);
    void askLocationService(quint64 generation, int index, QStringList reasons);
    void fetch(quint64 generation, const GeoPlace& place, bool manual);
    void applyAnswer(const GeoPlace& place, bool manual, const Forecast& forecast, const QByteArray& body);
    void showForecast(const Forecast& forecast, const QString& placeName, bool manual,
                      const QDateTime& fetchedAt);
    void noteFailure(const QString& userText, const QString& what, const QString& cause);
    void restoreKept();
    // Lays the hours and days as they read now over the ones shown.
    void refreshRows();

    Clock& m_clock;
    WeatherSettings& m_settings;
    const TemperatureUnit m_desktopUnit;
    const QString m_keptPath;
    HttpClient m_http;
    ScheduledWork m_timer;
    Wanted m_wanted;
    std::optional<WeatherSamples> m_samples;
    std::optional<GeoPlace> m_samplePin; // the demo's pinned place, never written to the preferences
    bool m_writing = false;              // the service's own writes of the pinned place are under way
    quint64 m_generation = 0;            // answers of an older refresh are dropped
    std::optional<Forecast> m_forecast;

    std::optional<CurrentReading> m_weather;
    QList<HourForecast> m_nextHours;
    QList<DayForecast> m_dayForecasts;
    QList<DayForecast> m_weekForecasts;
    QString m_placeName;
    bool m_isManualPlace = false;
    Status m_status = Status::idle;
    bool m_locating = false;
    QString m_failure;
    QString m_failureCause;
    std::optional<QDateTime> m_lastFetch;
    RowsModel m_hours{QStringLiteral("time"), this}; // an hour keeps its cell as the hours move on
    RowsModel m_days{QStringLiteral("date"), this};
};

} // namespace norva
