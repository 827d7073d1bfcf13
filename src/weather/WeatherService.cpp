#include "weather/WeatherService.h"

#include "app/Log.h"
#include "weather/KeptForecast.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherDisplay.h"
#include "weather/WeatherTexts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace norva {
namespace {

namespace T = WeatherTexts;

const QString kForecastService = QStringLiteral("Open-Meteo");
const QString kGeocodingCount = QStringLiteral("6");
const QString kForecastDays = QStringLiteral("5");

// Four decimals place a point within about 11 m, closer than any forecast grid.
QString coordinateText(double value)
{
    QString text = QString::number(std::round(value * 1e4) / 1e4, 'f', 4);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

// Why a request gave no usable answer, in the log's words.
QString whyNot(const QString& service, const HttpAnswer& answer)
{
    if (answer.timedOut)
        return service + QStringLiteral(" did not answer in time");
    if (!answer.answered())
        return service + QStringLiteral(" could not be reached: ") + answer.failure;
    return service + QStringLiteral(" answered ") + QString::number(answer.status);
}

void logFailure(const QString& what, const QString& cause)
{
    logLine(T::logPrefix + what + QStringLiteral(" (") + cause + QLatin1Char(')'));
}

} // namespace

WeatherService::WeatherService(Clock& clock, WeatherSettings& settings, TemperatureUnit desktopUnit,
                               QString keptPath, QObject* parent)
    : QObject(parent), m_clock(clock), m_settings(settings), m_desktopUnit(desktopUnit),
      m_keptPath(std::move(keptPath)), m_http(clock)
{
    m_wanted = readWanted();
    m_isManualPlace = m_wanted.pinned.has_value();
    m_placeName = m_wanted.pinned ? m_wanted.pinned->name : QString();
    connect(&m_settings, &WeatherSettings::placeChanged, this, &WeatherService::followPlaceAndUnit);
    connect(&m_settings, &WeatherSettings::unitChanged, this, &WeatherService::followPlaceAndUnit);
    connect(&m_settings, &WeatherSettings::closedNotchChanged, this, &WeatherService::changed);
    // "Now" and "Today" read the clock, so the rows are read again at every change, as each word
    // the page shows is; rows that read the same stay as they are.
    connect(this, &WeatherService::changed, this, &WeatherService::refreshRows);
    // The services' addresses need no following: each request reads its address as it is made, so
    // one under way finishes where it went and the next goes to the new address.
}

WeatherService::Wanted WeatherService::readWanted() const
{
    return {m_settings.pinnedPlace(), m_settings.chosenUnit().value_or(m_desktopUnit)};
}

TemperatureUnit WeatherService::unit() const
{
    return m_wanted.unit;
}

void WeatherService::start()
{
    restoreKept();
    // The system clock's coarse timer keeps within the minute of slack a 15-minute refresh allows.
    m_timer = m_clock.every(refreshInterval, [this] { refresh(); });
    if (!m_lastFetch || m_clock.secondsSince(*m_lastFetch) >= refreshInterval.count())
        refresh();
}

void WeatherService::stop()
{
    m_timer.cancel();
    ++m_generation; // answers still on their way are dropped
    if (m_status == Status::loading) {
        m_status = m_weather ? Status::ready : Status::idle;
        emit changed();
    }
}

// The kept forecast shows only for the place and unit still wanted; otherwise the start fetches.
void WeatherService::restoreKept()
{
    const auto kept = KeptForecast::load(m_keptPath, m_clock.now());
    if (!kept || kept->unit != m_wanted.unit || (m_wanted.pinned && *m_wanted.pinned != kept->place))
        return;
    const ForecastOutcome outcome = Forecast::fromAnswer(kept->answer);
    if (!outcome.forecast)
        return;
    m_lastFetch = kept->fetchedAt;
    showForecast(*outcome.forecast, kept->place.name, m_wanted.pinned.has_value(), kept->fetchedAt);
}

// A place pinned or a unit chosen anywhere (the page, the settings window, a hand edit of the
// preferences) is asked for at once once the service runs; the place's three keys change one by
// one, so only a change of what is wanted counts.
void WeatherService::followPlaceAndUnit()
{
    if (m_writing)
        return; // the place being written is applied once the writes are done
    const Wanted wanted = readWanted();
    if (wanted == m_wanted) {
        emit changed(); // the unit's label reads the choice, which may say the same unit anew
        return;
    }
    m_wanted = wanted;
    emit changed();
    if (m_samples)
        showSample();
    else if (m_timer.isArmed())
        refresh();
}

void WeatherService::refresh()
{
    if (m_samples) {
        showSample();
        return;
    }
    begin(!m_wanted.pinned.has_value());
}

void WeatherService::showSamples(WeatherSamples samples)
{
    stop();
    m_samples = std::move(samples);
    showSample();
}

void WeatherService::showSample()
{
    const GeoPlace& place = m_samplePin ? *m_samplePin : m_samples->place;
    const QDateTime now = m_clock.now();
    m_status = Status::ready;
    showForecast(m_samples->forecast(now, m_wanted.unit), place.name, m_samplePin.has_value(), now);
}

void WeatherService::begin(bool locating)
{
    const quint64 generation = ++m_generation;
    m_status = Status::loading;
    m_locating = locating;
    emit changed();
    if (locating)
        locate(generation);
    else
        fetch(generation, *m_wanted.pinned, true);
}

void WeatherService::locate(quint64 generation)
{
    askLocationService(generation, 0, {});
}

// The first location service, and the second when the first gives no position.
void WeatherService::askLocationService(quint64 generation, int index, QStringList reasons)
{
    const auto addresses = m_settings.addresses();
    const QUrl address = index == 0 ? addresses.location : addresses.locationFallback;
    m_http.get(address, locationTimeout,
               [this, generation, index, address, reasons](const HttpAnswer& answer) mutable {
                   if (generation != m_generation)
                       return;
                   const QString service = address.host();
                   const auto place = answer.ok() ? GeoPlace::fromLocationAnswer(answer.body) : std::nullopt;
                   if (place) {
                       m_locating = false;
                       fetch(generation, *place, false);
                       return;
                   }
                   reasons << (answer.ok() ? service + QStringLiteral(" gave no position")
                                           : whyNot(service, answer));
                   if (index == 0) {
                       askLocationService(generation, 1, reasons);
                       return;
                   }
                   m_locating = false;
                   noteFailure(T::cannotPlace, T::locatingFailed, reasons.join(QStringLiteral("; ")));
               });
}

void WeatherService::fetch(quint64 generation, const GeoPlace& place, bool manual)
{
    const QUrl service = m_settings.addresses().forecast;
    const auto address = HttpClient::address(
        service, QStringLiteral("/v1/forecast"),
        {{QStringLiteral("latitude"), coordinateText(place.latitude)},
         {QStringLiteral("longitude"), coordinateText(place.longitude)},
         {QStringLiteral("current"), QStringLiteral("temperature_2m,is_day,weather_code")},
         {QStringLiteral("hourly"), QStringLiteral("temperature_2m,weather_code,is_day")},
         {QStringLiteral("daily"), QStringLiteral("weather_code,temperature_2m_max,temperature_2m_min")},
         {QStringLiteral("timezone"), QStringLiteral("auto")},
         {QStringLiteral("forecast_days"), kForecastDays},
         {QStringLiteral("temperature_unit"), unitWord(m_wanted.unit)}});
    if (!address) {
        noteFailure(T::forecastMissing, T::forecastAddressFailed,
                    service.toString() + QStringLiteral(" is not a web address"));
        return;
    }
    m_http.get(*address, forecastTimeout, [this, generation, place, manual](const HttpAnswer& answer) {
        if (generation != m_generation)
            return;
        if (!answer.ok()) {
            noteFailure(T::forecastMissing, T::forecastFailed, whyNot(kForecastService, answer));
            return;
        }
        const ForecastOutcome outcome = Forecast::fromAnswer(answer.body);
        if (!outcome.forecast) {
            noteFailure(T::forecastMissing, T::forecastFailed, outcome.failure);
            return;
        }
        applyAnswer(place, manual, *outcome.forecast, answer.body);
    });
}

void WeatherService::applyAnswer(const GeoPlace& place, bool manual, const Forecast& forecast,
                                 const QByteArray& body)
{
    const QDateTime now = m_clock.now();
    m_lastFetch = now;
    m_status = Status::ready;
    m_failure.clear();
    m_failureCause.clear();
    showForecast(forecast, place.name, manual, now);
    KeptForecast::save(m_keptPath, KeptForecast{now, place, m_wanted.unit, body}, this);
}

void WeatherService::showForecast(const Forecast& forecast, const QString& placeName, bool manual,
                                  const QDateTime& fetchedAt)
{
    const QDateTime now = m_clock.now();
    m_forecast = forecast;
    m_weather = forecast.current;
    m_nextHours = forecast.nextHours(now, hoursShown);
    m_dayForecasts = forecast.daysFrom(now);
    m_weekForecasts = forecast.days;
    m_placeName = placeName.isEmpty() ? T::nearbyPlace : placeName;
    m_isManualPlace = manual;
    m_lastFetch = fetchedAt;
    emit changed();
}

// Records the user text and the logged cause; what was shown before stays, with its age.
void WeatherService::noteFailure(const QString& userText, const QString& what, const QString& cause)
{
    logFailure(what, cause);
    m_status = Status::failed;
    m_failure = userText;
    m_failureCause = cause;
    // The hours and days move on with the clock even while no new forecast comes.
    if (m_forecast) {
        const QDateTime now = m_clock.now();
        m_nextHours = m_forecast->nextHours(now, hoursShown);
        m_dayForecasts = m_forecast->daysFrom(now);
    }
    emit changed();
}

void WeatherService::searchPlaces(const QString& query, PlacesDone done)
{
    const QString name = query.trimmed();
    if (name.isEmpty()) {
        done(QList<GeoPlace>{});
        return;
    }
    logLine(T::logPrefix + T::searchingOpening + name + QLatin1Char('"'));
    if (m_samples) {
        QList<GeoPlace> found;
        std::copy_if(
            m_samples->places.cbegin(), m_samples->places.cend(), std::back_inserter(found),
            [&name](const GeoPlace& place) { return place.name.contains(name, Qt::CaseInsensitive); });
        done(found);
        return;
    }
    const QUrl service = m_settings.addresses().geocoding;
    const auto address = HttpClient::address(service, QStringLiteral("/v1/search"),
                                             {{QStringLiteral("name"), name},
                                              {QStringLiteral("count"), kGeocodingCount},
                                              {QStringLiteral("language"), QStringLiteral("en")},
                                              {QStringLiteral("format"), QStringLiteral("json")}});
    if (!address) {
        logFailure(T::searchFailed, service.toString() + QStringLiteral(" is not a web address"));
        done(std::nullopt);
        return;
    }
    m_http.get(*address, geocodingTimeout, [done = std::move(done)](const HttpAnswer& answer) {
        if (!answer.ok()) {
            logFailure(T::searchFailed, whyNot(QStringLiteral("the geocoder"), answer));
            done(std::nullopt);
            return;
        }
        const auto places = GeoPlace::parseGeoPlaces(answer.body);
        if (!places)
            logFailure(T::searchFailed, T::geocoderUnreadable);
        done(places);
    });
}

void WeatherService::usePlace(const GeoPlace& place)
{
    if (m_samples) {
        m_samplePin = place;
        showSample();
        return;
    }
    m_writing = true;
    m_settings.pin(place);
    m_writing = false;
    m_wanted = readWanted();
    m_placeName = place.name;
    m_isManualPlace = true;
    refresh();
}

void WeatherService::useAutomaticLocation()
{
    if (m_samples) {
        m_samplePin.reset();
        showSample();
        return;
    }
    m_writing = true;
    m_settings.unpin();
    m_writing = false;
    m_wanted = readWanted();
    m_isManualPlace = false;
    refresh();
}

// ---- for QML ----

QString WeatherService::temperatureText() const
{
    return m_weather ? WeatherDisplay::temperatureText(m_weather->temperature) : QString();
}

QString WeatherService::conditionText() const
{
    return m_weather ? WeatherCondition::describe(m_weather->code) : QString();
}

QString WeatherService::glyphName() const
{
    return m_weather ? WeatherCondition::glyph(m_weather->code, m_weather->isDay) : QString();
}

QString WeatherService::statusText() const
{
    if (m_status == Status::loading)
        return m_locating ? T::locating : T::loading;
    if (m_status == Status::failed)
        return m_failure;
    return m_lastFetch ? WeatherDisplay::ageText(*m_lastFetch, m_clock.now()) : QString();
}

QString WeatherService::ageText() const
{
    return m_lastFetch ? WeatherDisplay::ageText(*m_lastFetch, m_clock.now()) : QString();
}

bool WeatherService::isOld() const
{
    return m_lastFetch && m_clock.secondsSince(*m_lastFetch) >= oldAfter.count();
}

void WeatherService::refreshRows()
{
    const QDateTime now = m_clock.now();
    m_hours.setRows(WeatherDisplay::hourRows(m_nextHours, now));
    const QDate today = now.toOffsetFromUtc(m_forecast ? m_forecast->utcOffsetSeconds : 0).date();
    m_days.setRows(WeatherDisplay::dayRows(m_dayForecasts, today));
}

QString WeatherService::unitChoice() const
{
    const auto chosen = m_settings.chosenUnit();
    return chosen ? unitWord(*chosen) : QStringLiteral("system");
}

void WeatherService::setUnitChoice(const QString& choice)
{
    m_settings.chooseUnit(unitFromWord(choice));
}

QString WeatherService::unitLabel() const
{
    const QString symbol =
        unit() == TemperatureUnit::fahrenheit ? QStringLiteral("\u00B0F") : QStringLiteral("\u00B0C");
    return m_settings.chosenUnit() ? symbol : symbol + QStringLiteral(" (system)");
}

void WeatherService::nextUnitChoice()
{
    const auto chosen = m_settings.chosenUnit();
    if (!chosen)
        setUnitChoice(unitWord(TemperatureUnit::celsius));
    else if (*chosen == TemperatureUnit::celsius)
        setUnitChoice(unitWord(TemperatureUnit::fahrenheit));
    else
        setUnitChoice(QStringLiteral("system"));
}

bool WeatherService::showOnClosedNotch() const
{
    return m_settings.closedNotch();
}

void WeatherService::setShowOnClosedNotch(bool on)
{
    if (on != showOnClosedNotch())
        m_settings.setClosedNotch(on);
}

} // namespace norva
