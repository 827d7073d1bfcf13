#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace norva {

// A place the forecast can be asked for: what to call it and where it is.
struct GeoPlace {
    QString name;
    double latitude = 0;
    double longitude = 0;
    bool operator==(const GeoPlace&) const = default;

    // The geocoder's "results" as places named "Town, Region, Country" (parts that repeat or are
    // missing left out). An answer with no "results" is no places; nothing when it is not JSON.
    static std::optional<QList<GeoPlace>> parseGeoPlaces(const QByteArray& body);

    // A network-address location service's answer: "latitude"/"longitude" (or "lat"/"lon"),
    // numbers or numbers in text, and "city" (or "cityName"). Nothing without a position.
    static std::optional<GeoPlace> fromLocationAnswer(const QByteArray& body);

    // Whether both coordinates are real ones.
    static bool isPosition(double latitude, double longitude);
};

} // namespace norva
