#include "weather/KeptForecast.h"

#include "app/AtomicFile.h"
#include "app/Background.h"
#include "app/JsonNumber.h"
#include "app/Log.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace norva {
namespace {

const QString kFetchedAt = QStringLiteral("fetchedAt");
const QString kPlaceName = QStringLiteral("placeName");
const QString kLatitude = QStringLiteral("latitude");
const QString kLongitude = QStringLiteral("longitude");
const QString kUnit = QStringLiteral("unit");
const QString kAnswer = QStringLiteral("answer");

} // namespace

QString KeptForecast::pathIn(const QString& dataFolder)
{
    return dataFolder + QStringLiteral("/weather.json");
}

QByteArray KeptForecast::toJson() const
{
    const QJsonObject object{{kFetchedAt, fetchedAt.toUTC().toString(Qt::ISODateWithMs)},
                             {kPlaceName, place.name},
                             {kLatitude, place.latitude},
                             {kLongitude, place.longitude},
                             {kUnit, unitWord(unit)},
                             {kAnswer, QJsonDocument::fromJson(answer).object()}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<KeptForecast> KeptForecast::fromJson(const QByteArray& bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const QDateTime fetchedAt = QDateTime::fromString(object.value(kFetchedAt).toString(), Qt::ISODateWithMs);
    const auto latitude = jsonNumber(object.value(kLatitude));
    const auto longitude = jsonNumber(object.value(kLongitude));
    const auto unit = unitFromWord(object.value(kUnit).toString());
    const QJsonObject answer = object.value(kAnswer).toObject();
    if (!fetchedAt.isValid() || !latitude || !longitude || !unit || answer.isEmpty())
        return std::nullopt;
    return KeptForecast{fetchedAt,
                        {object.value(kPlaceName).toString(), *latitude, *longitude},
                        *unit,
                        QJsonDocument(answer).toJson(QJsonDocument::Compact)};
}

std::optional<KeptForecast> KeptForecast::load(const QString& path, const QDateTime& now)
{
    QFile file(path);
    if (!file.exists())
        return std::nullopt;
    if (!file.open(QIODevice::ReadOnly)) {
        logLine(QStringLiteral("Norva Weather: reading the kept forecast failed (") + file.errorString() +
                QLatin1Char(')'));
        return std::nullopt;
    }
    auto kept = fromJson(file.readAll());
    file.close();
    if (kept)
        return kept;
    // Set aside rather than overwritten by the next fetch: whatever it holds stays readable.
    const QString aside = unreadableCopyName(path, now);
    const bool setAside = QFile::rename(path, aside);
    logLine(
        QStringLiteral("Norva Weather: reading the kept forecast failed (") + path +
        QStringLiteral(" is not a forecast Norva wrote; ") +
        (setAside ? QStringLiteral("it is kept as ") + aside : QStringLiteral("it could not be set aside")) +
        QLatin1Char(')'));
    return std::nullopt;
}

void KeptForecast::save(const QString& path, const KeptForecast& kept, QObject* context)
{
    const QByteArray bytes = kept.toJson();
    runOffMain<std::optional<QString>>(
        context, [path, bytes] { return writeFileAtomically(path, bytes); },
        [](std::optional<QString> failure) {
            if (failure)
                logLine(QStringLiteral("Norva Weather: keeping the forecast failed (") + *failure +
                        QLatin1Char(')'));
        });
}

} // namespace norva
