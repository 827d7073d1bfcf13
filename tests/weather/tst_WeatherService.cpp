#include "LogCapture.h"
#include "TestMain.h"
#include "WeatherRig.h"

#include "app/AtomicFile.h"
#include "shell/Shell.h"
#include "weather/KeptForecast.h"
#include "weather/WeatherDisplay.h"
#include "weather/WeatherModule.h"

#include <QFile>
#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using norva::test::LocalHttpServer;
using norva::test::LogCapture;
using norva::test::WeatherRig;
namespace Answers = norva::test::WeatherAnswers;

namespace {

const QByteArray kLisbonRequest =
    "/v1/forecast?latitude=38.7223&longitude=-9.1393&current=temperature_2m,is_day,weather_code"
    "&hourly=temperature_2m,weather_code,is_day&daily=weather_code,temperature_2m_max,temperature_2m_min"
    "&timezone=auto&forecast_days=5&temperature_unit=";

void keep(WeatherRig& rig, const QDateTime& fetchedAt, const GeoPlace& place = {"Lisbon", 38.7223, -9.1393})
{
    QFile file(rig.keptPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(KeptForecast{fetchedAt, place, TemperatureUnit::celsius, Answers::berlin}.toJson());
}

} // namespace

// The weather service against a local stand-in for Open-Meteo and the location services.
class WeatherServiceTest : public QObject {
    Q_OBJECT
private slots:
    void forecastIsAskedWithExactlyItsKeysInOrder_data()
    {
        QTest::addColumn<int>("desktop");
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QByteArray>("unit");
        QTest::newRow("desktop metric, no choice")
            << int(TemperatureUnit::celsius) << "" << QByteArray("celsius");
        QTest::newRow("desktop imperial, no choice")
            << int(TemperatureUnit::fahrenheit) << "" << QByteArray("fahrenheit");
        QTest::newRow("Norva's choice wins")
            << int(TemperatureUnit::celsius) << "fahrenheit" << QByteArray("fahrenheit");
        QTest::newRow("an unknown choice follows the desktop")
            << int(TemperatureUnit::fahrenheit) << "kelvin" << QByteArray("fahrenheit");
    }
    void forecastIsAskedWithExactlyItsKeysInOrder()
    {
        QFETCH(int, desktop);
        QFETCH(QString, choice);
        QFETCH(QByteArray, unit);
        WeatherRig rig{TemperatureUnit(desktop)};
        if (!choice.isEmpty()) {
            rig.settings.write(choice, WeatherSettings::kUnitKey);
            rig.make(TemperatureUnit(desktop));
        }
        rig.weather->start();
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths(), (QStringList{"/where", "/v1/forecast"}));
        QCOMPARE(rig.server.requests().at(1).target, kLisbonRequest + unit);
        QCOMPARE(rig.weather->status(), WeatherService::Status::ready);
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Lisbon"));
        QCOMPARE(rig.weather->isManualPlace(), false);
        QCOMPARE(rig.weather->weather(), std::optional<CurrentReading>(CurrentReading{7.4, true, 3}));
        QCOMPARE(rig.weather->lastFetch(), std::optional<QDateTime>(rig.clock.now()));
    }

    void pinnedPlaceIsNotLocated()
    {
        WeatherRig rig;
        rig.pinBerlin();
        rig.make();
        rig.weather->start();
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths(), QStringList{"/v1/forecast"});
        QVERIFY(
            rig.server.requests().first().target.startsWith("/v1/forecast?latitude=52.52&longitude=13.405&"));
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Berlin"));
        QVERIFY(rig.weather->isManualPlace());
        // The page's lists: hours from Berlin's 11:00 on, days from Berlin's today on.
        QCOMPARE(rig.weather->nextHours().size(), WeatherService::hoursShown);
        QCOMPARE(rig.weather->nextHours().first().time.time(), QTime(11, 0));
        QCOMPARE(rig.weather->dayForecasts().size(), 3);
        QCOMPARE(rig.weather->weekForecasts().size(), 4);
    }

    void locationServicesFallBackOneAfterTheOther_data()
    {
        QTest::addColumn<int>("firstStatus");
        QTest::addColumn<QByteArray>("firstBody");
        QTest::addColumn<QString>("firstReason");
        QTest::newRow("first answers 429") << 429 << Answers::rateLimited << "127.0.0.1 answered 429";
        QTest::newRow("first gives no position")
            << 200 << Answers::rateLimited << "127.0.0.1 gave no position";
        QTest::newRow("first sends garbage") << 200 << QByteArray("<html>") << "127.0.0.1 gave no position";
    }
    void locationServicesFallBackOneAfterTheOther()
    {
        QFETCH(int, firstStatus);
        QFETCH(QByteArray, firstBody);
        QFETCH(QString, firstReason);
        LogCapture log;
        WeatherRig rig;
        rig.answers.insert("/where", {firstStatus, firstBody});
        rig.answers.insert("/where-else", {200, Answers::locatedAsText});
        rig.weather->start();
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths(), (QStringList{"/where", "/where-else", "/v1/forecast"}));
        QVERIFY(
            rig.server.requests().at(2).target.startsWith("/v1/forecast?latitude=41.1496&longitude=-8.611&"));
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Porto"));
        QCOMPARE(rig.weather->status(), WeatherService::Status::ready);
        QCOMPARE(log.count("Norva Weather: "), 0);

        // Then both fail: the forecast is not asked, and the person is told to pin a city.
        rig.answers.insert("/where-else", {500, "{}"});
        rig.weather->refresh();
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths().mid(3), (QStringList{"/where", "/where-else"}));
        QCOMPARE(rig.weather->status(), WeatherService::Status::failed);
        QCOMPARE(rig.weather->failure(), QStringLiteral("Norva couldn't place you. Pin your city."));
        QCOMPARE(log.lines(), QStringList{"Norva Weather: placing this computer from the network failed (" +
                                          firstReason + "; 127.0.0.1 answered 500)"});
        QCOMPARE(rig.weather->failureCause(), firstReason + "; 127.0.0.1 answered 500");
        // What was shown before stays.
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Porto"));
        QVERIFY(rig.weather->hasReading());
    }

    void silentServicesTimeOutOnNorvasClock()
    {
        LogCapture log;
        WeatherRig rig;
        rig.answers.insert("/where", {200, {}, false, true}); // never answers
        rig.answers.insert("/where-else", {200, Answers::located});
        rig.answers.insert("/v1/forecast", {200, {}, false, true});
        rig.weather->start();
        QTRY_COMPARE(rig.server.requests().size(), 1);
        rig.clock.advance(WeatherService::locationTimeout - Seconds(0.5));
        QTest::qWait(20);
        QCOMPARE(rig.server.requests().size(), 1); // still waiting for the first
        rig.clock.advance(Seconds(0.5));
        QTRY_COMPARE(rig.server.requests().size(), 3);
        QCOMPARE(rig.paths(), (QStringList{"/where", "/where-else", "/v1/forecast"}));
        QVERIFY(rig.weather->isLoading());
        rig.clock.advance(WeatherService::forecastTimeout);
        QVERIFY(rig.settled());
        QCOMPARE(rig.weather->failure(), QStringLiteral("The forecast didn't come back."));
        QCOMPARE(
            log.lines(),
            QStringList{"Norva Weather: reading the forecast failed (Open-Meteo did not answer in time)"});
    }

    void badForecastAnswersFailCalmly_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("cause");
        QTest::newRow("no current conditions")
            << 200 << Answers::noCurrent << "Open-Meteo sent no current conditions";
        QTest::newRow("garbage") << 200 << QByteArray("\x89PNG") << "Open-Meteo sent nothing readable";
        QTest::newRow("server error") << 502 << QByteArray("{\"error\":true}") << "Open-Meteo answered 502";
    }
    void badForecastAnswersFailCalmly()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, cause);
        WeatherRig rig;
        rig.pinBerlin();
        rig.make();
        rig.weather->start();
        QVERIFY(rig.settled());
        QCOMPARE(rig.weather->temperatureText(), QStringLiteral("7\u00B0"));

        LogCapture log;
        rig.answers.insert("/v1/forecast", {status, body});
        rig.clock.advance(WeatherService::refreshInterval);
        QTRY_COMPARE(rig.server.requests().size(), 2);
        QVERIFY(rig.settled());
        QCOMPARE(log.lines(), QStringList{"Norva Weather: reading the forecast failed (" + cause + ")"});
        QCOMPARE(rig.weather->status(), WeatherService::Status::failed);
        QCOMPARE(rig.weather->failure(), QStringLiteral("The forecast didn't come back."));
        QCOMPARE(rig.weather->failureCause(), cause);
        // The last good forecast stays, with its age.
        QCOMPARE(rig.weather->temperatureText(), QStringLiteral("7\u00B0"));
        QCOMPARE(rig.weather->lastFetch(), std::optional<QDateTime>(rig.clock.now().addSecs(-900)));
        QCOMPARE(rig.weather->ageText(), QStringLiteral("Updated 15 min ago"));
    }

    void startRefreshesOnlyWhenTheLastFetchIsFifteenMinutesOld_data()
    {
        QTest::addColumn<int>("minutesAgo");
        QTest::addColumn<int>("requests");
        QTest::newRow("14 minutes: waits for the timer") << 14 << 0;
        QTest::newRow("15 minutes: fetches") << 15 << 1;
        QTest::newRow("a day: fetches") << 24 * 60 << 1;
    }
    void startRefreshesOnlyWhenTheLastFetchIsFifteenMinutesOld()
    {
        QFETCH(int, minutesAgo);
        QFETCH(int, requests);
        WeatherRig rig;
        rig.pinBerlin();
        keep(rig, rig.clock.now().addSecs(-60 * minutesAgo), {"Berlin", 52.52, 13.405});
        rig.make();
        rig.weather->start();
        // The kept forecast shows at once, with its age.
        QCOMPARE(rig.weather->temperatureText(), QStringLiteral("7\u00B0"));
        QCOMPARE(rig.weather->ageText(),
                 WeatherDisplay::ageText(rig.clock.now().addSecs(-60 * minutesAgo), rig.clock.now()));
        QCOMPARE(rig.weather->isOld(), minutesAgo >= 180);
        QVERIFY(rig.settled());
        QTest::qWait(30);
        QCOMPARE(rig.server.requests().size(), requests);
        // Then the timer: every 15 minutes, and nothing in between.
        rig.clock.advance(WeatherService::refreshInterval - Seconds(1));
        QTest::qWait(30);
        QCOMPARE(rig.server.requests().size(), requests);
        QCOMPARE(rig.clock.pendingCount(), 1);
        rig.clock.advance(Seconds(1));
        QTRY_COMPARE(rig.server.requests().size(), requests + 1);
        QVERIFY(rig.settled());
        rig.weather->stop();
        QCOMPARE(rig.clock.pendingCount(), 0);
    }

    void keptForecastOfAnotherPlaceOrUnitIsNotShown_data()
    {
        QTest::addColumn<bool>("pinElsewhere");
        QTest::addColumn<QString>("unit");
        QTest::newRow("pinned elsewhere since") << true << "";
        QTest::newRow("unit changed since") << false << "fahrenheit";
    }
    void keptForecastOfAnotherPlaceOrUnitIsNotShown()
    {
        QFETCH(bool, pinElsewhere);
        QFETCH(QString, unit);
        WeatherRig rig;
        keep(rig, rig.clock.now().addSecs(-60));
        if (pinElsewhere)
            rig.pinBerlin();
        if (!unit.isEmpty())
            rig.settings.write(unit, WeatherSettings::kUnitKey);
        rig.make();
        rig.answers.insert("/v1/forecast", {200, {}, true}); // held: the start's fetch stays under way
        rig.weather->start();
        QVERIFY(!rig.weather->hasReading());
        QTRY_VERIFY(rig.paths().contains("/v1/forecast"));
    }

    void goodForecastIsKeptOnDisk()
    {
        WeatherRig rig;
        rig.weather->start();
        QVERIFY(rig.settled());
        QTRY_VERIFY(QFile::exists(rig.keptPath()));
        QFile file(rig.keptPath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const auto kept = KeptForecast::fromJson(file.readAll());
        QVERIFY(kept);
        QCOMPARE(kept->fetchedAt, rig.clock.now());
        QCOMPARE(kept->place, (GeoPlace{"Lisbon", 38.7223, -9.1393}));
        QCOMPARE(Forecast::fromAnswer(kept->answer).forecast, Forecast::fromAnswer(Answers::berlin).forecast);

        // The next start, offline 4 hours later, shows it as old rather than nothing.
        rig.answers.clear();
        rig.clock.advance(Seconds(4 * 3600));
        rig.make();
        rig.weather->start();
        QCOMPARE(rig.weather->temperatureText(), QStringLiteral("7\u00B0"));
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Lisbon"));
        QVERIFY(rig.weather->isOld());
        QCOMPARE(rig.weather->ageText(), QStringLiteral("Updated 4 h ago"));
    }

    void unreadableKeptForecastIsSetAside()
    {
        LogCapture log;
        WeatherRig rig;
        QFile file(rig.keptPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{ half a forecast");
        file.close();
        rig.answers.insert("/v1/forecast", {200, {}, true});
        rig.weather->start();
        QVERIFY(!rig.weather->hasReading());
        const QString aside = unreadableCopyName(rig.keptPath(), rig.clock.now());
        QVERIFY(QFile::exists(aside));
        QCOMPARE(log.lines().first(), "Norva Weather: reading the kept forecast failed (" + rig.keptPath() +
                                          " is not a forecast Norva wrote; it is kept as " + aside + ")");
    }

    void pinningAndGoingBackToAutomatic()
    {
        WeatherRig rig;
        rig.weather->start();
        QVERIFY(rig.settled());
        rig.weather->usePlace({"Reykjavík, Iceland", 64.13548, -21.89541});
        QCOMPARE(rig.prefs.value(WeatherSettings::kPlaceLatitudeKey), std::optional<QVariant>(64.13548));
        QCOMPARE(rig.prefs.value(WeatherSettings::kPlaceLongitudeKey), std::optional<QVariant>(-21.89541));
        QCOMPARE(rig.prefs.value(WeatherSettings::kPlaceNameKey),
                 std::optional<QVariant>(QStringLiteral("Reykjavík, Iceland")));
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths(),
                 (QStringList{"/where", "/v1/forecast", "/v1/forecast"})); // asked once, not located
        QVERIFY(rig.server.requests().last().target.startsWith(
            "/v1/forecast?latitude=64.1355&longitude=-21.8954&"));
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Reykjavík, Iceland"));
        QVERIFY(rig.weather->isManualPlace());

        rig.weather->useAutomaticLocation();
        for (const QString& key : {WeatherSettings::kPlaceLatitudeKey, WeatherSettings::kPlaceLongitudeKey,
                                   WeatherSettings::kPlaceNameKey})
            QCOMPARE(rig.prefs.value(key), std::nullopt);
        QVERIFY(rig.settled());
        QCOMPARE(rig.paths().mid(3), (QStringList{"/where", "/v1/forecast"}));
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Lisbon"));
        QVERIFY(!rig.weather->isManualPlace());
    }

    void answerForAnEarlierPlaceIsDropped()
    {
        WeatherRig rig;
        rig.answers.insert("/v1/forecast", {200, Answers::berlin, true}); // Lisbon's answer waits
        rig.weather->start();
        QTRY_COMPARE(rig.server.requests().size(), 2);
        rig.answers.insert("/v1/forecast", {200, Answers::emptyArrays});
        rig.weather->usePlace({"Oslo", 59.91, 10.75});
        QVERIFY(rig.settled());
        rig.server.release();
        QTest::qWait(50);
        QCOMPARE(rig.weather->placeName(), QStringLiteral("Oslo"));
        QCOMPARE(rig.weather->temperatureText(), QStringLiteral("-2\u00B0"));
    }

    void changingTheUnitAsksAgain()
    {
        WeatherRig rig;
        rig.pinBerlin();
        rig.make();
        rig.weather->start();
        QVERIFY(rig.settled());
        rig.weather->setUnitChoice(QStringLiteral("fahrenheit"));
        QCOMPARE(rig.weather->unitChoice(), QStringLiteral("fahrenheit"));
        QTRY_COMPARE(rig.server.requests().size(), 2);
        QVERIFY(rig.server.requests().last().target.endsWith("&temperature_unit=fahrenheit"));
        rig.weather->setUnitChoice(QStringLiteral("system"));
        QCOMPARE(rig.prefs.value(WeatherSettings::kUnitKey), std::nullopt);
        QTRY_COMPARE(rig.server.requests().size(), 3);
        QVERIFY(rig.server.requests().last().target.endsWith("&temperature_unit=celsius"));
    }

    // Each preference edited outside Norva (by hand, or from the settings window) is told by its
    // own signal and followed at once: a new place or unit is asked for now, a new address serves
    // the next request. The weather starts pinned to Berlin; "next" is the 15-minute refresh and a
    // search for "Oslo".
    void preferencesEditedOutsideAreFollowed_data()
    {
        QTest::addColumn<QVariantMap>("edits"); // an invalid value removes the key; "BASE" is the server
        QTest::addColumn<QStringList>("told");
        QTest::addColumn<QStringList>("atOnce"); // the requests' starts, in order
        QTest::addColumn<QStringList>("next");
        QTest::addColumn<QString>("unit"); // every forecast asked after the edit is in this unit
        QTest::addColumn<QString>("place");
        QTest::addColumn<bool>("closedFace");

        const QString berlin = "/v1/forecast?latitude=52.52&longitude=13.405&";
        const QString lisbon = "/v1/forecast?latitude=38.7223&longitude=-9.1393&";
        const QString reykjavik = "/v1/forecast?latitude=64.1355&longitude=-21.8954&";
        const QString oslo = "/v1/search?name=Oslo&";
        const QVariantMap unpinned{{WeatherSettings::kPlaceLatitudeKey, QVariant()},
                                   {WeatherSettings::kPlaceLongitudeKey, QVariant()},
                                   {WeatherSettings::kPlaceNameKey, QVariant()}};
        QTest::newRow("a place pinned")
            << QVariantMap{{WeatherSettings::kPlaceLatitudeKey, 64.13548},
                           {WeatherSettings::kPlaceLongitudeKey, -21.89541},
                           {WeatherSettings::kPlaceNameKey, "Reykjavík"}}
            << QStringList{"placeChanged"} << QStringList{reykjavik} << QStringList{reykjavik, oslo}
            << "celsius" << QStringLiteral("Reykjavík") << false;
        QTest::newRow("the place unpinned")
            << unpinned << QStringList{"placeChanged"} << QStringList{"/where", lisbon}
            << QStringList{"/where", lisbon, oslo} << "celsius" << QStringLiteral("Lisbon") << false;
        QTest::newRow("a latitude past the pole is no place")
            << QVariantMap{{WeatherSettings::kPlaceLatitudeKey, 95.0}} << QStringList{"placeChanged"}
            << QStringList{"/where", lisbon} << QStringList{"/where", lisbon, oslo} << "celsius"
            << QStringLiteral("Lisbon") << false;
        QTest::newRow("a unit chosen")
            << QVariantMap{{WeatherSettings::kUnitKey, "fahrenheit"}} << QStringList{"unitChanged"}
            << QStringList{berlin} << QStringList{berlin, oslo} << "fahrenheit" << QStringLiteral("Berlin")
            << false;
        QTest::newRow("an unknown unit follows the desktop")
            << QVariantMap{{WeatherSettings::kUnitKey, "kelvin"}} << QStringList{"unitChanged"}
            << QStringList{} << QStringList{berlin, oslo} << "celsius" << QStringLiteral("Berlin") << false;
        QTest::newRow("the forecast moved")
            << QVariantMap{{WeatherSettings::kForecastAddressKey, "BASE/moved"}}
            << QStringList{"addressesChanged"} << QStringList{} << QStringList{"/moved" + berlin, oslo}
            << "celsius" << QStringLiteral("Berlin") << false;
        QTest::newRow("the geocoder moved")
            << QVariantMap{{WeatherSettings::kGeocodingAddressKey, "BASE/moved/"}}
            << QStringList{"addressesChanged"} << QStringList{} << QStringList{berlin, "/moved" + oslo}
            << "celsius" << QStringLiteral("Berlin") << false;
        QVariantMap locatedElsewhere = unpinned;
        locatedElsewhere.insert(WeatherSettings::kLocationAddressKey, "BASE/moved/where");
        locatedElsewhere.insert(WeatherSettings::kLocationFallbackAddressKey, "not an address");
        QTest::newRow("the place unpinned and located elsewhere in one save")
            << locatedElsewhere << QStringList{"addressesChanged", "placeChanged"}
            << QStringList{"/moved/where", lisbon} << QStringList{"/moved/where", lisbon, oslo} << "celsius"
            << QStringLiteral("Lisbon") << false;
        QTest::newRow("the closed notch switched on")
            << QVariantMap{{WeatherSettings::kClosedNotchKey, true}} << QStringList{"closedNotchChanged"}
            << QStringList{} << QStringList{berlin, oslo} << "celsius" << QStringLiteral("Berlin") << true;
    }
    void preferencesEditedOutsideAreFollowed()
    {
        QFETCH(QVariantMap, edits);
        QFETCH(QStringList, atOnce);
        QFETCH(QStringList, next);
        QFETCH(QString, unit);
        WeatherRig rig;
        for (const QString path : {"/moved/v1/forecast", "/moved/v1/search", "/moved/where"})
            rig.answers.insert(path, rig.answers.value(path.mid(6), {200, Answers::geocoded}));
        rig.pinBerlin();
        rig.make();
        rig.weather->start();
        QVERIFY(rig.settled());
        const qsizetype before = rig.server.requests().size();
        const QMetaObject& meta = WeatherSettings::staticMetaObject;
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            if (meta.method(i).methodType() == QMetaMethod::Signal)
                spies.push_back(std::make_unique<QSignalSpy>(&rig.weatherSettings, meta.method(i)));
        }
        for (auto edit = edits.begin(); edit != edits.end(); ++edit) {
            if (edit->typeId() == QMetaType::QString)
                edit.value() = edit->toString().replace("BASE", rig.server.address().toString());
        }

        rig.prefs.outsideChanges(edits);
        QStringList signalsTold;
        for (const auto& spy : spies) {
            if (!spy->isEmpty())
                signalsTold << QString::fromLatin1(spy->signal()).section('(', 0, 0);
        }
        QTEST(signalsTold, "told");
        QVERIFY(rig.settled());
        QTEST(rig.weather->placeName(), "place");
        QTEST(rig.weather->closedFaceReady(), "closedFace");
        const auto asked = [&rig](qsizetype from) {
            QStringList targets;
            for (const auto& request : rig.server.requests().mid(from))
                targets << QString::fromUtf8(request.target);
            return targets;
        };
        const auto compareStarts = [&unit](const QStringList& targets, const QStringList& starts) {
            QCOMPARE(targets.size(), starts.size());
            for (qsizetype i = 0; i < starts.size(); ++i) {
                QVERIFY2(targets.at(i).startsWith(starts.at(i)), qPrintable(targets.at(i)));
                if (targets.at(i).contains("/v1/forecast?"))
                    QVERIFY(targets.at(i).endsWith("&temperature_unit=" + unit));
            }
        };
        compareStarts(asked(before), atOnce);
        if (QTest::currentTestFailed())
            return;

        const qsizetype beforeNext = rig.server.requests().size();
        rig.clock.advance(WeatherService::refreshInterval);
        QVERIFY(rig.settled());
        bool searched = false;
        rig.weather->searchPlaces("Oslo", [&searched](const auto&) { searched = true; });
        QTRY_VERIFY(searched);
        compareStarts(asked(beforeNext), next);
    }

    // The demo shows its samples on the page, the tile and the closed notch, and asks nothing of
    // the services even where the preferences point them at a server that would answer.
    void demoShowsSamplesAndAsksNoService()
    {
        WeatherRig rig; // its server answers every service
        auto prefs = std::make_unique<test::MemoryPreferences>();
        for (const QString& key :
             {WeatherSettings::kForecastAddressKey, WeatherSettings::kGeocodingAddressKey,
              WeatherSettings::kLocationAddressKey, WeatherSettings::kLocationFallbackAddressKey})
            prefs->setValue(key, rig.prefs.value(key));
        prefs->setValue(WeatherSettings::kUnitKey, QStringLiteral("fahrenheit"));
        test::MemoryPreferences& stored = *prefs;
        Shell shell(std::move(prefs), rig.clock, Shell::Demo{true, {}});
        shell.add<WeatherModule>();
        const QStringList keys = stored.keys();
        shell.start();
        WeatherService* weather = nullptr;
        for (QObject* object : shell.qmlObjects()) {
            if (auto* service = qobject_cast<WeatherService*>(object))
                weather = service;
        }
        QVERIFY(weather);
        QCOMPARE(weather->status(), WeatherService::Status::ready);
        QCOMPARE(weather->placeName(), QStringLiteral("Lisbon, Portugal"));
        QCOMPARE(weather->nextHours().size(), WeatherService::hoursShown);
        QCOMPARE(weather->dayForecasts().size(), 5);
        QVERIFY(weather->weather()->temperature > 50); // asked in Fahrenheit

        rig.clock.advance(WeatherService::refreshInterval);
        QVERIFY(!weather->isLoading());
        QList<GeoPlace> found;
        weather->searchPlaces("oslo",
                              [&found](const auto& places) { found = places.value_or(QList<GeoPlace>{}); });
        QCOMPARE(found.size(), 1);
        weather->usePlace(found.first());
        QCOMPARE(weather->placeName(), QStringLiteral("Oslo, Norway"));
        QVERIFY(weather->isManualPlace());
        weather->useAutomaticLocation();
        QCOMPARE(weather->placeName(), QStringLiteral("Lisbon, Portugal"));
        QTest::qWait(50);
        QCOMPARE(rig.server.requests().size(), 0);
        QCOMPARE(stored.keys(), keys); // no place pinned among the person's preferences
    }

    void addressesThatAreNotWebAddressesFallBackToThePublicServices()
    {
        WeatherRig rig;
        rig.settings.write(QStringLiteral("ftp://example.org"), WeatherSettings::kForecastAddressKey);
        rig.settings.write(QStringLiteral("not an address"), WeatherSettings::kLocationAddressKey);
        rig.prefs.setValue(WeatherSettings::kGeocodingAddressKey, std::nullopt);
        const auto addresses = rig.weatherSettings.addresses();
        QCOMPARE(addresses.forecast, QUrl("https://api.open-meteo.com"));
        QCOMPARE(addresses.geocoding, QUrl("https://geocoding-api.open-meteo.com"));
        QCOMPARE(addresses.location, QUrl("https://ipapi.co/json/"));
        QCOMPARE(addresses.locationFallback, QUrl(rig.server.address().toString() + "/where-else"));
    }
};

NORVA_TEST(WeatherServiceTest)
#include "tst_WeatherService.moc"
