#include "TestMain.h"
#include "WeatherAnswers.h"

#include "weather/Forecast.h"
#include "weather/GeoPlace.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherDisplay.h"

#include <QtTest>

using namespace norva;
namespace Answers = norva::test::WeatherAnswers;

namespace {
const QDateTime kNow(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC); // 11:00 in Berlin
}

// What Norva reads out of Open-Meteo's, the geocoder's and the location services' answers.
class WeatherReadingsTest : public QObject {
    Q_OBJECT
private slots:
    void conditionReadsAndDraws_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("isDay");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("glyph");
        QTest::newRow("0 clear by day") << 0 << true << QStringLiteral("Clear") << "clearDay";
        QTest::newRow("0 clear by night") << 0 << false << QStringLiteral("Clear") << "clearNight";
        QTest::newRow("1 reads partly cloudy, keeps the clear sky")
            << 1 << true << QStringLiteral("Partly cloudy") << "clearDay";
        QTest::newRow("1 at night") << 1 << false << QStringLiteral("Partly cloudy") << "clearNight";
        QTest::newRow("2 partly cloudy with the cloud")
            << 2 << true << QStringLiteral("Partly cloudy") << "cloud";
        QTest::newRow("3 cloudy") << 3 << false << QStringLiteral("Cloudy") << "cloud";
        QTest::newRow("45 fog") << 45 << true << QStringLiteral("Fog") << "fog";
        QTest::newRow("48 fog") << 48 << true << QStringLiteral("Fog") << "fog";
        QTest::newRow("51 drizzle") << 51 << true << QStringLiteral("Drizzle") << "rain";
        QTest::newRow("57 drizzle") << 57 << true << QStringLiteral("Drizzle") << "rain";
        QTest::newRow("60 is no WMO code, yet rain's glyph")
            << 60 << true << QStringLiteral("\u2014") << "rain";
        QTest::newRow("61 rain") << 61 << true << QStringLiteral("Rain") << "rain";
        QTest::newRow("67 rain") << 67 << true << QStringLiteral("Rain") << "rain";
        QTest::newRow("68 beyond rain") << 68 << true << QStringLiteral("\u2014") << "cloud";
        QTest::newRow("71 snow") << 71 << true << QStringLiteral("Snow") << "snow";
        QTest::newRow("77 snow") << 77 << true << QStringLiteral("Snow") << "snow";
        QTest::newRow("74 snow's glyph only") << 74 << true << QStringLiteral("\u2014") << "snow";
        QTest::newRow("80 showers") << 80 << true << QStringLiteral("Showers") << "rain";
        QTest::newRow("82 showers") << 82 << true << QStringLiteral("Showers") << "rain";
        QTest::newRow("85 snow showers") << 85 << true << QStringLiteral("Snow showers") << "snow";
        QTest::newRow("86 snow showers") << 86 << true << QStringLiteral("Snow showers") << "snow";
        QTest::newRow("95 thunderstorm") << 95 << true << QStringLiteral("Thunderstorm") << "thunder";
        QTest::newRow("99 thunderstorm") << 99 << false << QStringLiteral("Thunderstorm") << "thunder";
        QTest::newRow("97 thunder's glyph only") << 97 << true << QStringLiteral("\u2014") << "thunder";
        QTest::newRow("-1 unknown") << -1 << true << QStringLiteral("\u2014") << "cloud";
        QTest::newRow("100 unknown") << 100 << true << QStringLiteral("\u2014") << "cloud";
    }
    void conditionReadsAndDraws()
    {
        QFETCH(int, code);
        QFETCH(bool, isDay);
        QTEST(WeatherCondition::describe(code), "text");
        QTEST(WeatherCondition::glyph(code, isDay), "glyph");
    }

    void forecastIsReadFromIntegersAndDoubles()
    {
        const ForecastOutcome outcome = Forecast::fromAnswer(Answers::berlin);
        QVERIFY(outcome.forecast);
        const Forecast& forecast = *outcome.forecast;
        QCOMPARE(forecast.current, (CurrentReading{7.4, true, 3}));
        QCOMPARE(forecast.utcOffsetSeconds, 3600);
        QCOMPARE(forecast.hours.size(), 8);
        QCOMPARE(forecast.hours.at(3).temperature, 9.0);
        QCOMPARE(forecast.hours.at(2).code, 61);
        QCOMPARE(forecast.hours.at(6).isDay, false);
        QCOMPARE(forecast.hours.at(1).time,
                 QDateTime(QDate(2026, 11, 18), QTime(11, 0), Qt::OffsetFromUTC, 3600));
        QCOMPARE(forecast.days.size(), 4);
        QCOMPARE(forecast.days.at(2), (DayForecast{QDate(2026, 11, 19), 71, 3.2, -1}));
    }

    void answersThatGiveNoForecast_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("failure");
        QTest::newRow("no current object") << Answers::noCurrent << "Open-Meteo sent no current conditions";
        QTest::newRow("current without a temperature")
            << QByteArray(R"({"current": {"weather_code": 3, "is_day": 1}})")
            << "Open-Meteo sent no current conditions";
        QTest::newRow("current temperature null")
            << QByteArray(R"({"current": {"temperature_2m": null, "weather_code": 3}})")
            << "Open-Meteo sent no current conditions";
        QTest::newRow("garbage") << QByteArray("<html>502 Bad Gateway</html>")
                                 << "Open-Meteo sent nothing readable";
        QTest::newRow("an array") << QByteArray("[1, 2]") << "Open-Meteo sent nothing readable";
        QTest::newRow("empty") << QByteArray() << "Open-Meteo sent nothing readable";
    }
    void answersThatGiveNoForecast()
    {
        QFETCH(QByteArray, body);
        const ForecastOutcome outcome = Forecast::fromAnswer(body);
        QVERIFY(!outcome.forecast);
        QTEST(outcome.failure, "failure");
    }

    void emptyArraysGiveNowWithoutHoursOrDays()
    {
        const ForecastOutcome outcome = Forecast::fromAnswer(Answers::emptyArrays);
        QVERIFY(outcome.forecast);
        QCOMPARE(outcome.forecast->current, (CurrentReading{-2, false, 71}));
        QVERIFY(outcome.forecast->hours.isEmpty());
        QVERIFY(outcome.forecast->days.isEmpty());
    }

    void unevenOrHoleyArraysKeepOnlyWholeEntries()
    {
        const QByteArray body = R"({"current": {"temperature_2m": 1, "is_day": 1, "weather_code": 0},
            "hourly": {"time": ["2026-11-18T10:00", "2026-11-18T11:00", "2026-11-18T12:00"],
                       "temperature_2m": [1, null, 3], "weather_code": [0, 0, "x"], "is_day": [1, 1]},
            "daily": {"time": ["2026-11-18", "not a day"], "weather_code": [0, 0],
                      "temperature_2m_max": [5, 6], "temperature_2m_min": [1, 2]}})";
        const ForecastOutcome outcome = Forecast::fromAnswer(body);
        QVERIFY(outcome.forecast);
        QCOMPARE(outcome.forecast->hours.size(),
                 1); // the second has no temperature, the third is past is_day's end
        QCOMPARE(outcome.forecast->hours.first().temperature, 1.0);
        QCOMPARE(outcome.forecast->days.size(), 1);
    }

    void nextHoursStartAtTheHourUnderWay()
    {
        const Forecast forecast = *Forecast::fromAnswer(Answers::berlin).forecast;
        // 11:40 in Berlin: the 11:00 hour is under way, 10:00 is over.
        const QList<HourForecast> next = forecast.nextHours(kNow.addSecs(40 * 60), 3);
        QCOMPARE(next.size(), 3);
        QCOMPARE(next.first().time.time(), QTime(11, 0));
        QCOMPARE(next.last().time.time(), QTime(13, 0));
        QCOMPARE(forecast.nextHours(kNow.addSecs(6 * 3600 + 1), 6).size(), 1); // only 17:00 is left
        // Days start at Berlin's today, whatever day it is in UTC.
        QCOMPARE(forecast.daysFrom(kNow).first().date, QDate(2026, 11, 18));
        QCOMPARE(forecast.daysFrom(QDateTime(QDate(2026, 11, 18), QTime(23, 30), Qt::UTC)).first().date,
                 QDate(2026, 11, 19));
    }

    void hoursAndDaysReadForThePage()
    {
        const Forecast forecast = *Forecast::fromAnswer(Answers::berlin).forecast;
        const QVariantList hours = WeatherDisplay::hourRows(forecast.nextHours(kNow, 2), kNow);
        QCOMPARE(hours.at(0).toMap().value("label").toString(), QStringLiteral("Now"));
        QCOMPARE(hours.at(1).toMap().value("label").toString(), QStringLiteral("12:00"));
        QCOMPARE(hours.at(1).toMap().value("glyph").toString(), QStringLiteral("rain"));
        const QVariantList days = WeatherDisplay::dayRows(forecast.daysFrom(kNow), QDate(2026, 11, 18));
        QCOMPARE(days.size(), 3);
        QCOMPARE(days.at(0).toMap().value("label").toString(), QStringLiteral("Today"));
        QCOMPARE(days.at(1).toMap().value("label").toString(), QStringLiteral("Thu"));
        QCOMPARE(days.at(2).toMap().value("minimum").toString(), QStringLiteral("-3\u00B0"));
    }

    void temperaturesAndAgesRead_data()
    {
        QTest::addColumn<double>("temperature");
        QTest::addColumn<QString>("text");
        QTest::newRow("rounds up") << 7.5 << "8\u00B0";
        QTest::newRow("rounds down") << 7.4 << "7\u00B0";
        QTest::newRow("below zero") << -3.6 << "-4\u00B0";
        QTest::newRow("never minus zero") << -0.4 << "0\u00B0";
    }
    void temperaturesAndAgesRead()
    {
        QFETCH(double, temperature);
        QTEST(WeatherDisplay::temperatureText(temperature), "text");
    }

    void ageReads_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("just now") << 90 << "Updated just now";
        QTest::newRow("minutes") << 14 * 60 << "Updated 14 min ago";
        QTest::newRow("hours") << 3 * 3600 + 59 * 60 << "Updated 3 h ago";
        QTest::newRow("a day") << 30 * 3600 << "Updated a day ago";
        QTest::newRow("days") << 3 * 86400 << "Updated 3 days ago";
        QTest::newRow("a clock set back") << -600 << "Updated just now";
    }
    void ageReads()
    {
        QFETCH(int, seconds);
        QTEST(WeatherDisplay::ageText(kNow, kNow.addSecs(seconds)), "text");
    }

    void geocoderResultsBecomePlaces()
    {
        const auto places = GeoPlace::parseGeoPlaces(Answers::geocoded);
        QVERIFY(places);
        QCOMPARE(places->size(), 2);
        QCOMPARE(places->at(0), (GeoPlace{"Berlin, Land Berlin, Germany", 52.52437, 13.41053}));
        QCOMPARE(places->at(1).name, QStringLiteral("Berlin, New Hampshire, United States"));
        // No "results" key is how the geocoder says it found nothing.
        QCOMPARE(GeoPlace::parseGeoPlaces(R"({"generationtime_ms": 0.2})"),
                 std::optional<QList<GeoPlace>>(QList<GeoPlace>{}));
        QCOMPARE(GeoPlace::parseGeoPlaces("not json"), std::nullopt);
        // A result without a position is left out; a repeated part of the name is said once.
        const auto partial = GeoPlace::parseGeoPlaces(
            R"({"results": [{"name": "Nowhere"}, {"name": "Monaco", "admin1": "Monaco", "country": "Monaco", "latitude": 43.73, "longitude": 7.42}]})");
        QCOMPARE(*partial, (QList<GeoPlace>{{"Monaco", 43.73, 7.42}}));
    }

    void locationAnswersGivePositions_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("found");
        QTest::addColumn<QString>("city");
        QTest::addColumn<double>("latitude");
        QTest::newRow("numbers") << Answers::located << true << "Lisbon" << 38.7223;
        QTest::newRow("numbers as text") << Answers::locatedAsText << true << "Porto" << 41.1496;
        QTest::newRow("short keys and cityName")
            << QByteArray(R"({"lat": 1.5, "lon": 2, "cityName": "Here"})") << true << "Here" << 1.5;
        QTest::newRow("an error answer") << Answers::rateLimited << false << "" << 0.0;
        QTest::newRow("a latitude out of range")
            << QByteArray(R"({"latitude": 91, "longitude": 0})") << false << "" << 0.0;
        QTest::newRow("garbage") << QByteArray("\x01\x02") << false << "" << 0.0;
    }
    void locationAnswersGivePositions()
    {
        QFETCH(QByteArray, body);
        const auto place = GeoPlace::fromLocationAnswer(body);
        QTEST(place.has_value(), "found");
        if (place) {
            QTEST(place->name, "city");
            QTEST(place->latitude, "latitude");
        }
    }
};

NORVA_TEST(WeatherReadingsTest)
#include "tst_WeatherReadings.moc"
