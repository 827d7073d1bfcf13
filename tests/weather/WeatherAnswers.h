#pragma once

#include <QByteArray>

// Answers shaped like Open-Meteo's and the location services', for the weather tests. The test
// clock starts on 2026-11-18 at 10:00 UTC, which is 11:00 in Berlin (UTC+1).
namespace norva::test::WeatherAnswers {

// Integers and doubles mixed, as Open-Meteo writes them; the 10:00 hour is already over.
inline const QByteArray berlin = R"({
  "latitude": 52.52, "longitude": 13.419998, "utc_offset_seconds": 3600, "timezone": "Europe/Berlin",
  "current": {"time": "2026-11-18T11:00", "interval": 900, "temperature_2m": 7.4, "is_day": 1, "weather_code": 3},
  "hourly": {
    "time": ["2026-11-18T10:00", "2026-11-18T11:00", "2026-11-18T12:00", "2026-11-18T13:00",
             "2026-11-18T14:00", "2026-11-18T15:00", "2026-11-18T16:00", "2026-11-18T17:00"],
    "temperature_2m": [6, 7.4, 8.1, 9, 8.6, 7, 5.5, 4.9],
    "weather_code": [3, 3, 61, 61, 2, 1, 0, 0],
    "is_day": [1, 1, 1, 1, 1, 1, 0, 0]
  },
  "daily": {
    "time": ["2026-11-17", "2026-11-18", "2026-11-19", "2026-11-20"],
    "weather_code": [3, 61, 71, 0],
    "temperature_2m_max": [10, 9.0, 3.2, 5],
    "temperature_2m_min": [4, 2.1, -1, -3.4]
  }
})";

inline const QByteArray noCurrent = R"({"latitude": 52.52, "hourly": {"time": []}, "daily": {"time": []}})";

inline const QByteArray emptyArrays = R"({
  "utc_offset_seconds": 0,
  "current": {"temperature_2m": -2, "is_day": 0, "weather_code": 71},
  "hourly": {"time": [], "temperature_2m": [], "weather_code": [], "is_day": []},
  "daily": {"time": [], "weather_code": [], "temperature_2m_max": [], "temperature_2m_min": []}
})";

inline const QByteArray located =
    R"({"ip": "192.0.2.1", "city": "Lisbon", "latitude": 38.7223, "longitude": -9.1393})";
// The fall-back service writes its numbers as text.
inline const QByteArray locatedAsText = R"({"city": "Porto", "latitude": "41.1496", "longitude": "-8.611"})";
inline const QByteArray rateLimited = R"({"error": true, "reason": "RateLimited"})";

inline const QByteArray geocoded = R"({"results": [
  {"id": 2950159, "name": "Berlin", "latitude": 52.52437, "longitude": 13.41053, "country": "Germany", "admin1": "Land Berlin"},
  {"id": 5083330, "name": "Berlin", "latitude": 44.46867, "longitude": -71.18508, "country": "United States", "admin1": "New Hampshire"}
], "generationtime_ms": 0.5})";

} // namespace norva::test::WeatherAnswers
