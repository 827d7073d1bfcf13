#include "weather/WeatherPlacePicker.h"

#include "weather/WeatherService.h"
#include "weather/WeatherTexts.h"

#include <QPointer>

namespace norva {

WeatherPlacePicker::WeatherPlacePicker(WeatherService& weather, Clock& clock, QObject* parent)
    : QObject(parent), m_weather(weather), m_clock(clock)
{}

void WeatherPlacePicker::setQuery(const QString& query)
{
    if (query == m_query)
        return;
    m_query = query;
    ++m_token; // whatever is on its way answers an older query now
    if (query.trimmed().isEmpty()) {
        m_pause.cancel();
        show({}, {});
        return;
    }
    show(m_results, WeatherTexts::searching);
    m_pause = m_clock.after(typingPause, [this] { search(); });
}

void WeatherPlacePicker::search()
{
    const quint64 token = ++m_token;
    const QString query = m_query.trimmed();
    QPointer<WeatherPlacePicker> guard(this);
    m_weather.searchPlaces(query, [this, guard, token, query](const std::optional<QList<GeoPlace>>& places) {
        if (!guard || token != m_token)
            return;
        if (!places)
            show({}, WeatherTexts::searchMissing);
        else if (places->isEmpty())
            show({}, WeatherTexts::noPlacesOpening + query + WeatherTexts::noPlacesClosing);
        else
            show(*places, {});
    });
}

void WeatherPlacePicker::show(QList<GeoPlace> results, QString message)
{
    if (results == m_results && message == m_message)
        return;
    m_results = std::move(results);
    m_message = std::move(message);
    QVariantList rows;
    for (const GeoPlace& place : std::as_const(m_results))
        rows.append(QVariantMap{{QStringLiteral("name"), place.name}});
    m_resultRows.setRows(rows);
    emit changed();
}

void WeatherPlacePicker::pin(int index)
{
    if (index < 0 || index >= m_results.size())
        return;
    const GeoPlace place = m_results.at(index);
    clear();
    m_weather.usePlace(place);
}

void WeatherPlacePicker::useAutomatic()
{
    clear();
    m_weather.useAutomaticLocation();
}

void WeatherPlacePicker::clear()
{
    m_pause.cancel();
    ++m_token;
    const bool hadQuery = !m_query.isEmpty();
    m_query.clear();
    if (hadQuery)
        emit changed();
    show({}, {});
}

} // namespace norva
