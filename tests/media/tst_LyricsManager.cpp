#include "LocalHttpServer.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "TestMain.h"

#include "media/LyricsManager.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using namespace norva;
using norva::test::LocalHttpServer;
using norva::test::ManualClock;
using State = LyricsManager::State;

namespace {

QByteArray json(const QJsonValue& value)
{
    return value.isArray() ? QJsonDocument(value.toArray()).toJson()
                           : QJsonDocument(value.toObject()).toJson();
}

QJsonObject answer(const QString& synced, const QString& plain = {}, QJsonValue duration = 200)
{
    QJsonObject object{{QStringLiteral("syncedLyrics"), synced}, {QStringLiteral("plainLyrics"), plain}};
    if (!duration.isUndefined())
        object.insert(QStringLiteral("duration"), duration);
    return object;
}

LocalHttpServer::Response notFound()
{
    return {404, "{\"code\":404,\"name\":\"TrackNotFound\"}"};
}

} // namespace

class LyricsManagerTest : public QObject {
    Q_OBJECT

    struct Rig {
        ManualClock clock;
        LocalHttpServer server;
        LyricsManager lyrics{clock};
        explicit Rig(LocalHttpServer::Handler handler) : server(std::move(handler))
        {
            lyrics.setBaseAddress(server.address());
        }
        bool settled()
        {
            return QTest::qWaitFor([this] { return lyrics.state() != State::loading; }, 5000);
        }
    };

private slots:
    void lrcIsParsed_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QList<double>>("times");
        QTest::addColumn<QStringList>("words");
        QTest::newRow("tenths") << "[01:02.5] Hi" << QList<double>{62.5} << QStringList{"Hi"};
        QTest::newRow("hundredths") << "[01:02.50]Hi" << QList<double>{62.5} << QStringList{"Hi"};
        QTest::newRow("thousandths") << "[01:02.500]Hi" << QList<double>{62.5} << QStringList{"Hi"};
        QTest::newRow("colon before the fraction")
            << "[01:02:25]Hi" << QList<double>{62.25} << QStringList{"Hi"};
        QTest::newRow("one-digit minutes") << "[1:02] Hi " << QList<double>{62} << QStringList{"Hi"};
        QTest::newRow("repeated refrain")
            << "[00:10.00][00:50.00] Chorus" << QList<double>{10, 50} << QStringList{"Chorus", "Chorus"};
        QTest::newRow("sorted by time, untagged lines skipped")
            << "[ar:Band]\n[00:20.00]Second\r\nno tag here\n[00:05.00]First\n"
            << QList<double>{5, 20} << QStringList{"First", "Second"};
        QTest::newRow("empty text keeps its moment") << "[00:03.00]\n" << QList<double>{3} << QStringList{""};
        QTest::newRow("three-digit minutes are not a tag")
            << "[100:02.00]x" << QList<double>{} << QStringList{};
    }
    void lrcIsParsed()
    {
        QFETCH(QString, text);
        QFETCH(QList<double>, times);
        QFETCH(QStringList, words);
        const QList<LyricLine> lines = LyricsManager::parseLRC(text);
        QCOMPARE(lines.size(), times.size());
        for (int i = 0; i < lines.size(); ++i) {
            QCOMPARE(lines[i].time, times[i]);
            QCOMPARE(lines[i].text, words[i]);
        }
    }

    void titlesAreSanitized_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("sanitized"); // empty: none
        QTest::newRow("live and remastered") << "Song (Live) - Remastered 2011"
                                             << "Song";
        QTest::newRow("square brackets") << "Song [Explicit]"
                                         << "Song";
        QTest::newRow("featured artist") << "Song - feat. Someone"
                                         << "Song";
        QTest::newRow("ft without dot") << "Song - ft Someone"
                                        << "Song";
        QTest::newRow("with") << "Song - with Friends"
                              << "Song";
        QTest::newRow("radio edit") << "Song - Radio Edit"
                                    << "Song";
        QTest::newRow("a dash that names no version stays") << "Rock - Paper"
                                                            << "";
        QTest::newRow("unchanged gives none") << "Plain Song"
                                              << "";
        QTest::newRow("nothing left gives none") << "(Intro)"
                                                 << "";
    }
    void titlesAreSanitized()
    {
        QFETCH(QString, title);
        QTEST(LyricsManager::sanitizedTitle(title).value_or(QString()), "sanitized");
    }

    void searchAttemptsAreNotRepeated()
    {
        using Attempt = LyricsManager::SearchAttempt;
        QCOMPARE(LyricsManager::searchAttempts(QStringLiteral("Song (Live)"), QStringLiteral("Band")),
                 (QList<Attempt>{{"Song (Live)", "Band"}, {"Song", "Band"}}));
        QCOMPARE(LyricsManager::searchAttempts(QStringLiteral("Song"), QStringLiteral("Band")),
                 (QList<Attempt>{{"Song", "Band"}}));
    }

    void bestResultIsPicked_data()
    {
        QTest::addColumn<QJsonArray>("results");
        QTest::addColumn<double>("duration"); // -1: unknown
        QTest::addColumn<int>("picked");      // index into results, -1: none
        QTest::newRow("only the one within 8 s")
            << QJsonArray{answer("[00:01]a", {}, 180), answer("[00:01]b", {}, 200)} << 195.0 << 1;
        QTest::newRow("closest wins")
            << QJsonArray{answer("[00:01]a", {}, 190), answer("[00:01]b", {}, 196.5)} << 195.0 << 1;
        QTest::newRow("a tie keeps the first")
            << QJsonArray{answer("[00:01]a", {}, 193), answer("[00:01]b", {}, 197)} << 195.0 << 0;
        QTest::newRow("exactly 8 s away is kept") << QJsonArray{answer("", "words", 187)} << 195.0 << 0;
        QTest::newRow("without a duration it is dropped")
            << QJsonArray{answer("[00:01]a", {}, QJsonValue::Undefined)} << 195.0 << -1;
        QTest::newRow("empty lyrics are dropped")
            << QJsonArray{answer("", "", 195), answer("", "words", 199)} << 195.0 << 1;
        QTest::newRow("unknown duration takes the first with lyrics")
            << QJsonArray{answer("", "", 10), answer("", "w", 500), answer("[00:01]x", {}, 195)} << -1.0 << 1;
        QTest::newRow("nothing") << QJsonArray{} << 195.0 << -1;
    }
    void bestResultIsPicked()
    {
        QFETCH(QJsonArray, results);
        QFETCH(double, duration);
        QFETCH(int, picked);
        const auto pick =
            LyricsManager::pickBest(results, duration < 0 ? std::nullopt : std::optional<double>(duration));
        QCOMPARE(pick.has_value(), picked >= 0);
        if (pick)
            QCOMPARE(*pick, results.at(picked).toObject());
    }

    void exactLookupCarriesTheTrackAndHeaders()
    {
        Rig rig([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, json(answer("[00:01.00]One\n[00:02.00]Two"))};
        });
        rig.lyrics.load(QStringLiteral("Song & Dance"), QStringLiteral("Bänd"), QStringLiteral("A+B"), 214.6);
        QCOMPARE(rig.lyrics.state(), State::loading);
        QCOMPARE(rig.lyrics.message(), QStringLiteral("Loading lyrics…"));
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::synced);
        QCOMPARE(rig.lyrics.lines().size(), 2);
        QCOMPARE(rig.lyrics.lineIndexAt(1.5), 0);
        QCOMPARE(rig.lyrics.lineIndexAt(0.5), -1);
        QCOMPARE(rig.server.requests().size(), 1);
        const auto& request = rig.server.requests().first();
        QCOMPARE(request.path, QStringLiteral("/api/get"));
        QCOMPARE(request.query.queryItemValue(QStringLiteral("track_name"), QUrl::FullyDecoded),
                 QStringLiteral("Song & Dance"));
        QCOMPARE(request.query.queryItemValue(QStringLiteral("artist_name"), QUrl::FullyDecoded),
                 QStringLiteral("Bänd"));
        QCOMPARE(request.query.queryItemValue(QStringLiteral("album_name"), QUrl::FullyDecoded),
                 QStringLiteral("A+B"));
        QCOMPARE(request.query.queryItemValue(QStringLiteral("duration")), QStringLiteral("215"));
        QVERIFY(request.headers.value("user-agent").startsWith("Norva/"));
    }

    void unknownOrWildDurationIsLeftOut_data()
    {
        QTest::addColumn<double>("duration");
        QTest::newRow("unknown") << -1.0;
        QTest::newRow("infinite") << qInf();
        QTest::newRow("too large") << 1e12;
    }
    void unknownOrWildDurationIsLeftOut()
    {
        QFETCH(double, duration);
        Rig rig([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, json(answer("", "x"))};
        });
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {},
                        duration == -1.0 ? std::nullopt : std::optional<double>(duration));
        QVERIFY(rig.settled());
        QVERIFY(!rig.server.requests().first().query.hasQueryItem(QStringLiteral("duration")));
        QCOMPARE(rig.lyrics.state(), State::plain);
    }

    void searchFollowsAMissWithTheSanitizedTitle()
    {
        Rig rig([](const LocalHttpServer::Request& request) -> LocalHttpServer::Response {
            if (request.path == QLatin1String("/api/get"))
                return notFound();
            if (request.query.queryItemValue(QStringLiteral("track_name"), QUrl::FullyDecoded) ==
                QLatin1String("Song"))
                return {200, json(QJsonArray{answer("[00:01.00]Found", {}, 300),
                                             answer("[00:01.00]Right", {}, 201)})};
            return {200, "[]"};
        });
        rig.lyrics.load(QStringLiteral("Song (Live) - Remastered 2011"), QStringLiteral("Band"),
                        QStringLiteral("LP"), 200);
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::synced);
        QCOMPARE(rig.lyrics.lines().first().text, QStringLiteral("Right"));
        QStringList paths;
        for (const auto& request : rig.server.requests())
            paths << request.path + QLatin1Char(' ') +
                         request.query.queryItemValue(QStringLiteral("track_name"), QUrl::FullyDecoded);
        QCOMPARE(paths, (QStringList{"/api/get Song (Live) - Remastered 2011",
                                     "/api/search Song (Live) - Remastered 2011", "/api/search Song"}));
        QVERIFY(!rig.server.requests().last().query.hasQueryItem(QStringLiteral("album_name")));
    }

    void emptyExactAnswerAndNoPickIsNotFoundAndCached()
    {
        Rig rig([](const LocalHttpServer::Request& request) -> LocalHttpServer::Response {
            if (request.path == QLatin1String("/api/get"))
                return {200, json(answer("[ar:only tags]", ""))};
            return {200, "this is not json"};
        });
        rig.lyrics.load(QStringLiteral("Song"), QStringLiteral("Band"), {}, 200);
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::notFound);
        QCOMPARE(rig.lyrics.message(), QStringLiteral("No lyrics found"));
        QCOMPARE(rig.server.requests().size(), 2);
        rig.lyrics.load(QStringLiteral("Other"), QStringLiteral("Band"), {}, 200);
        QVERIFY(rig.settled());
        rig.lyrics.load(QStringLiteral("Song"), QStringLiteral("Band"), {}, 200);
        QCOMPARE(rig.lyrics.state(), State::notFound);
        QCOMPARE(rig.server.requests().size(), 4); // the return to "Song" cost nothing
    }

    void sameTrackAgainDoesNothing()
    {
        Rig rig([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, json(answer("", "w"))};
        });
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QVERIFY(rig.settled());
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QCOMPARE(rig.server.requests().size(), 1);
    }

    void failureWaits45SecondsUnlessRetried()
    {
        test::LogCapture log;
        Rig rig([](const LocalHttpServer::Request&) { return LocalHttpServer::Response{500, "{}"}; });
        rig.clock.setNow(QDateTime(QDate(2026, 11, 18), QTime(12, 0), Qt::UTC));
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::failed);
        QCOMPARE(log.count(QStringLiteral("Norva music: fetching lyrics failed (LRCLIB answered 500)")), 1);
        QCOMPARE(rig.lyrics.retryAfter(), QDateTime(QDate(2026, 11, 18), QTime(12, 0, 45), Qt::UTC));
        rig.lyrics.clear();
        rig.clock.advance(Seconds(44.9));
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QCOMPARE(rig.lyrics.state(), State::failed);
        QCOMPARE(rig.server.requests().size(), 1);
        rig.lyrics.retry(); // the person's retry asks at once, and a new failure starts a new wait
        QVERIFY(rig.settled());
        QCOMPARE(rig.server.requests().size(), 2);
        QCOMPARE(rig.lyrics.retryAfter(), rig.clock.now().addSecs(45));
        rig.lyrics.clear();
        rig.clock.advance(Seconds(45));
        rig.server.setHandler([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, json(answer("[00:01]x"))};
        });
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::synced);
        QCOMPARE(rig.server.requests().size(), 3);
    }

    void unreachableServiceIsTransient()
    {
        test::LogCapture log;
        ManualClock clock;
        LyricsManager lyrics(clock);
        QTcpServer closed;
        closed.listen(QHostAddress::LocalHost, 0);
        const quint16 port = closed.serverPort();
        closed.close(); // nobody listens there now
        lyrics.setBaseAddress(QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port)));
        lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QTRY_COMPARE(lyrics.state(), State::failed);
        QVERIFY(log.contains(QStringLiteral("Norva music: fetching lyrics failed (")));
    }

    void silentServiceTimesOut()
    {
        test::LogCapture log;
        Rig rig([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, {}, false, true};
        });
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QTRY_COMPARE(rig.server.requests().size(), 1);
        rig.clock.advance(LyricsManager::requestTimeout - Seconds(0.1));
        QCOMPARE(rig.lyrics.state(), State::loading);
        rig.clock.advance(Seconds(0.1));
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::failed);
        QVERIFY(log.contains(
            QStringLiteral("Norva music: fetching lyrics failed (LRCLIB did not answer in time)")));
    }

    void answerForAnOldTrackIsDropped()
    {
        Rig rig([](const LocalHttpServer::Request& request) -> LocalHttpServer::Response {
            if (request.query.queryItemValue(QStringLiteral("track_name")) == QLatin1String("Old"))
                return {200, json(answer("", "old words")), true};
            return {200, json(answer("", "new words"))};
        });
        rig.lyrics.load(QStringLiteral("Old"), QStringLiteral("A"), {}, 100);
        QTRY_COMPARE(rig.server.requests().size(), 1);
        rig.lyrics.load(QStringLiteral("New"), QStringLiteral("A"), {}, 100);
        QVERIFY(rig.settled());
        rig.server.release();
        QTest::qWait(100);
        QCOMPARE(rig.lyrics.plainText(), QStringLiteral("new words"));
    }

    void offlineMakesNoRequestAndRecoversOnline()
    {
        Rig rig([](const LocalHttpServer::Request&) {
            return LocalHttpServer::Response{200, json(answer("", "w"))};
        });
        rig.lyrics.setOffline(true);
        rig.lyrics.load(QStringLiteral("S"), QStringLiteral("A"), {}, 100);
        QCOMPARE(rig.lyrics.state(), State::failed);
        QTest::qWait(50);
        QCOMPARE(rig.server.requests().size(), 0);
        rig.lyrics.setOffline(false);
        QVERIFY(rig.settled());
        QCOMPARE(rig.lyrics.state(), State::plain);
    }
};

NORVA_TEST(LyricsManagerTest)
#include "tst_LyricsManager.moc"
