#include "weather/GeoPlace.h"

#include "app/JsonNumber.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace norva {
namespace {

constexpr double kMaxLatitude = 90;
constexpr double kMaxLongitude = 180;

std::optional<double> firstNumber(const QJsonObject& object, std::initializer_list<const char*> keys)
{
    for (const char* key : keys) {
        if (const auto value = jsonNumber(object.value(QLatin1String(key))))
            return value;
    }
    return std::nullopt;
}

QString displayName(const QJsonObject& result)
{
    QStringList parts;
    for (const char* key : {"name", "admin1", "country"}) {
        const QString part = result.value(QLatin1String(key)).toString().trimmed();
        if (!part.isEmpty() && !parts.contains(part))
            parts << part;
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace

bool GeoPlace::isPosition(double latitude, double longitude)
{
    return std::isfinite(latitude) && std::isfinite(longitude) && std::abs(latitude) <= kMaxLatitude &&
           std::abs(longitude) <= kMaxLongitude;
}

std::optional<QList<GeoPlace>> GeoPlace::parseGeoPlaces(const QByteArray& body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject())
        return std::nullopt;
    QList<GeoPlace> places;
    for (const QJsonValue& value : document.object().value(QStringLiteral("results")).toArray()) {
        const QJsonObject result = value.toObject();
        const auto latitude = firstNumber(result, {"latitude"});
        const auto longitude = firstNumber(result, {"longitude"});
        const QString name = displayName(result);
        if (latitude && longitude && isPosition(*latitude, *longitude) && !name.isEmpty())
            places.append({name, *latitude, *longitude});
    }
    return places;
}

std::optional<GeoPlace> GeoPlace::fromLocationAnswer(const QByteArray& body)
{
    const QJsonObject answer = QJsonDocument::fromJson(body).object();
    const auto latitude = firstNumber(answer, {"latitude", "lat"});
    const auto longitude = firstNumber(answer, {"longitude", "lon"});
    if (!latitude || !longitude || !isPosition(*latitude, *longitude))
        return std::nullopt;
    QString city = answer.value(QStringLiteral("city")).toString().trimmed();
    if (city.isEmpty())
        city = answer.value(QStringLiteral("cityName")).toString().trimmed();
    return GeoPlace{city, *latitude, *longitude};
}

} // namespace norva
