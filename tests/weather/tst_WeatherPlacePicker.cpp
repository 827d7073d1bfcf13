#include "LogCapture.h"
#include "TestMain.h"
#include "WeatherRig.h"

#include "weather/WeatherPlacePicker.h"

#include <QtTest>

using namespace norva;
using norva::test::LocalHttpServer;
using norva::test::LogCapture;
using norva::test::WeatherRig;
namespace Answers = norva::test::WeatherAnswers;

// The place picker's search as the person types, against a local stand-in for the geocoder.
class WeatherPlacePickerTest : public QObject {
    Q_OBJECT
private slots:
    void typingSearchesOnceAfterAPause()
    {
        LogCapture log;
        WeatherRig rig;
        rig.answers.insert("/v1/search", {200, Answers::geocoded});
        WeatherPlacePicker picker(*rig.weather, rig.clock);
        picker.setQuery("Be");
        picker.setQuery("Ber");
        picker.setQuery("São Paulo & Berlin");
        QCOMPARE(picker.message(), QStringLiteral("Searching\u2026"));
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(picker.results().size(), 2);
        QCOMPARE(rig.server.requests().size(), 1);
        QCOMPARE(
            rig.server.requests().first().target,
            QByteArray("/v1/search?name=S%C3%A3o%20Paulo%20%26%20Berlin&count=6&language=en&format=json"));
        QCOMPARE(log.lines(), QStringList{"Norva Weather: searching places for \"São Paulo & Berlin\""});
        QCOMPARE(picker.message(), QString());
        QCOMPARE(picker.resultRows()->get(1).value("name").toString(),
                 QStringLiteral("Berlin, New Hampshire, United States"));
    }

    void onlyTheLatestQueryIsShown()
    {
        WeatherRig rig;
        WeatherPlacePicker picker(*rig.weather, rig.clock);
        // The first query's answer is slow: it comes only after the second query's.
        rig.server.setHandler([](const LocalHttpServer::Request& request) -> LocalHttpServer::Response {
            if (request.query.queryItemValue("name") == QLatin1String("Par"))
                return {
                    200,
                    R"({"results": [{"name": "Parma", "country": "Italy", "latitude": 44.8, "longitude": 10.33}]})",
                    true};
            return {
                200,
                R"({"results": [{"name": "Paris", "country": "France", "latitude": 48.85, "longitude": 2.35}]})"};
        });
        picker.setQuery("Par");
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(rig.server.requests().size(), 1);
        picker.setQuery("Paris");
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(picker.results().size(), 1);
        QCOMPARE(picker.results().first().name, QStringLiteral("Paris, France"));
        rig.server.release();
        QTest::qWait(100);
        QCOMPARE(picker.results().first().name, QStringLiteral("Paris, France"));
    }

    void searchOutcomesReadCalmly_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("logged");
        QTest::newRow("nothing found") << 200 << QByteArray(R"({"generationtime_ms": 0.1})")
                                       << "No place matches \u201CAtlantis\u201D." << QString();
        QTest::newRow("empty results") << 200 << QByteArray(R"({"results": []})")
                                       << "No place matches \u201CAtlantis\u201D." << QString();
        QTest::newRow("garbage")
            << 200 << QByteArray("Service Unavailable") << "The place search didn't come back."
            << QStringLiteral("Norva Weather: searching places failed (the geocoder sent nothing readable)");
        QTest::newRow("server error")
            << 503 << QByteArray("{}") << "The place search didn't come back."
            << QStringLiteral("Norva Weather: searching places failed (the geocoder answered 503)");
    }
    void searchOutcomesReadCalmly()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        QFETCH(QString, logged);
        LogCapture log;
        WeatherRig rig;
        rig.answers.insert("/v1/search", {status, body});
        WeatherPlacePicker picker(*rig.weather, rig.clock);
        picker.setQuery("Atlantis");
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(picker.message(), message);
        QVERIFY(picker.results().isEmpty());
        QCOMPARE(log.count("searching places failed"), logged.isEmpty() ? 0 : 1);
        if (!logged.isEmpty())
            QVERIFY(log.lines().contains(logged));
    }

    void silentGeocoderTimesOutAfterEightSeconds()
    {
        LogCapture log;
        WeatherRig rig;
        rig.answers.insert("/v1/search", {200, {}, false, true});
        WeatherPlacePicker picker(*rig.weather, rig.clock);
        picker.setQuery("Lima");
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(rig.server.requests().size(), 1);
        rig.clock.advance(Seconds(7.9));
        QTest::qWait(20);
        QCOMPARE(picker.message(), QStringLiteral("Searching\u2026"));
        rig.clock.advance(Seconds(0.1));
        QTRY_COMPARE(picker.message(), QStringLiteral("The place search didn't come back."));
        QVERIFY(log.lines().contains(
            "Norva Weather: searching places failed (the geocoder did not answer in time)"));
    }

    void pinningAResultUsesIt()
    {
        WeatherRig rig;
        rig.answers.insert("/v1/search", {200, Answers::geocoded});
        WeatherPlacePicker picker(*rig.weather, rig.clock);
        picker.setQuery("Berlin");
        rig.clock.advance(WeatherPlacePicker::typingPause);
        QTRY_COMPARE(picker.results().size(), 2);
        picker.pin(0);
        QCOMPARE(picker.query(), QString());
        QVERIFY(picker.results().isEmpty());
        QVERIFY(rig.settled());
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Berlin, Land Berlin, Germany"));
        QVERIFY(rig.server.requests().last().target.startsWith(
            "/v1/forecast?latitude=52.5244&longitude=13.4105&"));
        picker.pin(5); // out of range: nothing happens
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Berlin, Land Berlin, Germany"));
    }
};

NORVA_TEST(WeatherPlacePickerTest)
#include "tst_WeatherPlacePicker.moc"
