#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"
#include "weather/GeoPlace.h"

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class WeatherService;

// The place picker of the weather page: searches as the person types (after a short pause, so a
// word typed quickly is one search), shows only the answer to the latest query, pins a result,
// or goes back to the automatic place.
class WeatherPlacePicker : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY changed)
    Q_PROPERTY(norva::RowsModel* results READ resultRows CONSTANT)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    static WeatherPlacePicker* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<WeatherPlacePicker>();
    }
    static constexpr Seconds typingPause{0.3};

    WeatherPlacePicker(WeatherService& weather, Clock& clock, QObject* parent = nullptr);

    QString query() const { return m_query; }
    void setQuery(const QString& query);
    const QList<GeoPlace>& results() const { return m_results; }
    RowsModel* resultRows() { return &m_resultRows; }
    QString message() const { return m_message; }

    // Pins the result at `index` and clears the search.
    Q_INVOKABLE void pin(int index);
    Q_INVOKABLE void useAutomatic();
    Q_INVOKABLE void clear();

signals:
    void changed();

private:
    void search();
    void show(QList<GeoPlace> results, QString message);

    WeatherService& m_weather;
    Clock& m_clock;
    ScheduledWork m_pause;
    QString m_query;
    quint64 m_token = 0; // the latest search; older answers are dropped
    QList<GeoPlace> m_results;
    QString m_message;
    RowsModel m_resultRows{QString(), this}; // places have no id of their own: laid over by position
};

} // namespace norva
