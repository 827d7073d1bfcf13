#include "LogCapture.h"
#include "ManualClock.h"
#include "MediaTestSupport.h"
#include "TestMain.h"

#include "media/ScriptingBackend.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;
using Player = ScriptingBackend::Player;

namespace {

// A stand-in osascript: writes down every script it is given and answers from files the test
// leaves next to it (<player>.reply, <player>.error with <player>.status, artwork.reply).
const QByteArray kOsascript = "dir=$(dirname \"$0\")\n"
                              "script=$(cat)\n"
                              "printf '%s\\n---\\n' \"$script\" >> \"$dir/calls.log\"\n"
                              "case \"$script\" in\n"
                              "  *'raw data of artwork'*) name=artwork ;;\n"
                              "  'tell application \"Spotify\"'*'set sep'*) name=spotify ;;\n"
                              "  'tell application \"Music\"'*'set sep'*) name=music ;;\n"
                              "  *) name=command ;;\n"
                              "esac\n"
                              "if [ -e \"$dir/$name.error\" ]; then cat \"$dir/$name.error\" >&2; exit "
                              "\"$(cat \"$dir/$name.status\")\"; fi\n"
                              "[ -e \"$dir/$name.reply\" ] && cat \"$dir/$name.reply\"\n"
                              "exit 0\n";

QByteArray reply(const QStringList& fields)
{
    return fields.join(QChar(0x1f)).toUtf8() + '\n';
}

} // namespace

class ScriptingBackendTest : public QObject {
    Q_OBJECT

    struct Rig {
        QTemporaryDir dir;
        ManualClock clock;
        std::unique_ptr<ScriptingBackend> backend;
        QList<MediaUpdate> updates;
        QList<MusicTrouble> troubles;

        Rig()
        {
            const QString osascript =
                test::writeScript(dir.filePath(QStringLiteral("osascript")), kOsascript);
            backend = std::make_unique<ScriptingBackend>(clock, ScriptRunner(osascript));
        }
        void put(const QString& name, const QByteArray& content) const
        {
            QFile file(dir.filePath(name));
            file.open(QIODevice::WriteOnly | QIODevice::Truncate);
            file.write(content);
        }
        void start()
        {
            backend->start(MediaSink{[this](const MediaUpdate& u) { updates << u; },
                                     {},
                                     [this](const MusicTrouble& t) { troubles << t; }});
        }
        QStringList calls() const
        {
            QStringList list = QString::fromUtf8(test::readAll(dir.filePath(QStringLiteral("calls.log"))))
                                   .split(QStringLiteral("\n---\n"), Qt::SkipEmptyParts);
            return list;
        }
        int callsContaining(const QString& fragment) const { return int(calls().filter(fragment).size()); }
    };

private slots:
    void repliesAreRead_data()
    {
        QTest::addColumn<int>("player");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("hasTrack");
        QTest::addColumn<bool>("playing");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<double>("duration");
        QTest::addColumn<QString>("trackId");
        const QChar sep(0x1f);
        auto join = [sep](QStringList f) { return f.join(sep) + QLatin1Char('\n'); };
        QTest::newRow("Spotify duration in milliseconds")
            << int(Player::spotify)
            << join({"playing", "Song", "Band", "Album", "12.5", "215000", "spotify:track:1",
                     "https://i/a.jpg"})
            << true << true << 12.5 << 215.0 << "spotify:track:1";
        QTest::newRow("Music duration in seconds with a decimal comma")
            << int(Player::music) << join({"paused", "Song", "Band", "Album", "3,25", "215,5", "ABC123"})
            << true << false << 3.25 << 215.5 << "ABC123";
        QTest::newRow("stopped") << int(Player::music) << "stopped\n" << false << false << -1.0 << -1.0 << "";
        QTest::newRow("empty reply") << int(Player::spotify) << "" << false << false << -1.0 << -1.0 << "";
        QTest::newRow("too few fields") << int(Player::spotify) << join({"playing", "Song", "Band"}) << false
                                        << false << -1.0 << -1.0 << "";
    }
    void repliesAreRead()
    {
        QFETCH(int, player);
        QFETCH(QString, reply);
        const auto reading =
            ScriptingBackend::parseReply(Player(player), reply, QDateTime::currentDateTimeUtc());
        QTEST(reading.snapshot.hasTrack, "hasTrack");
        QTEST(reading.snapshot.isPlaying, "playing");
        QTEST(reading.snapshot.elapsed.value_or(-1.0), "elapsed");
        QTEST(reading.snapshot.duration.value_or(-1.0), "duration");
        QTEST(reading.trackId, "trackId");
        if (reading.snapshot.hasTrack) {
            QCOMPARE(reading.snapshot.title, QStringLiteral("Song"));
            QCOMPARE(reading.snapshot.bundleIdentifier.value_or(QString()),
                     ScriptingBackend::bundleIdentifier(Player(player)));
        }
    }

    void pollTakesThePlayingPlayer()
    {
        Rig rig;
        rig.put("spotify.reply", reply({"paused", "Quiet", "A", "B", "1", "100000", "s1", ""}));
        rig.put("music.reply", reply({"playing", "Loud", "C", "D", "2", "200", "m1"}));
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        const MediaSnapshot& s = rig.updates.first().snapshot;
        QCOMPARE(s.title, QStringLiteral("Loud"));
        QCOMPARE(s.bundleIdentifier.value_or(QString()), QStringLiteral("com.apple.Music"));
        QCOMPARE(s.duration.value_or(-1), 200.0);
        QCOMPARE(s.timestamp, rig.clock.now());
    }

    void pollsEveryThreeSeconds()
    {
        Rig rig;
        rig.put("spotify.reply", "stopped\n");
        rig.put("music.reply", "stopped\n");
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        QVERIFY(!rig.updates.first().snapshot.hasTrack); // both stopped: nothing plays, and no trouble
        QVERIFY(rig.troubles.isEmpty());
        rig.clock.advance(Seconds(2.9));
        QTest::qWait(100);
        QCOMPARE(rig.updates.size(), 1);
        rig.clock.advance(Seconds(0.1));
        QTRY_COMPARE(rig.updates.size(), 2);
        QCOMPARE(rig.callsContaining(QStringLiteral("tell application \"Spotify\"\n\tset sep")), 2);
        QCOMPARE(rig.callsContaining(QStringLiteral("tell application \"Music\"\n\tset sep")), 2);
        rig.backend->stop();
        rig.clock.advance(Seconds(10));
        QTest::qWait(100);
        QCOMPARE(rig.updates.size(), 2);
    }

    void refusalAndFailureBecomeTroubles_data()
    {
        QTest::addColumn<QByteArray>("error");
        QTest::addColumn<QByteArray>("status");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text");
        QTest::newRow("not allowed (-1743)")
            << QByteArray("execution error: Not authorized to send Apple events to Spotify. (-1743)\n")
            << QByteArray("1") << int(MusicTrouble::Kind::permission)
            << "Norva isn't allowed to control Spotify. Allow it in System Settings > Privacy & Security > "
               "Automation.";
        QTest::newRow("must still allow (-1744)")
            << QByteArray("execution error: (-1744)\n") << QByteArray("1")
            << int(MusicTrouble::Kind::permission)
            << "Norva isn't allowed to control Spotify. Allow it in System "
               "Settings > Privacy & Security > Automation.";
        QTest::newRow("another error")
            << QByteArray("syntax error: nope (-2740)\n") << QByteArray("2")
            << int(MusicTrouble::Kind::scriptFailed) << "osascript exited with 2: syntax error: nope (-2740)";
    }
    void refusalAndFailureBecomeTroubles()
    {
        QFETCH(QByteArray, error);
        QFETCH(QByteArray, status);
        Rig rig;
        rig.put("spotify.error", error);
        rig.put("spotify.status", status);
        rig.put("music.reply", "stopped\n");
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        QCOMPARE(rig.troubles.size(), 1);
        QTEST(int(rig.troubles.first().kind), "kind");
        QTEST(rig.troubles.first().text(), "text");
        QVERIFY(!rig.updates.first().snapshot.hasTrack);
    }

    void commandsGoToThePlayingPlayerAndPollSoonAfter()
    {
        Rig rig;
        rig.put("spotify.reply", "stopped\n");
        rig.put("music.reply", reply({"playing", "Loud", "C", "D", "2", "200", "m1"}));
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        rig.backend->send(MediaCommand::togglePlayPause);
        QTRY_COMPARE(rig.callsContaining(QStringLiteral("tell application \"Music\" to playpause")), 1);
        // The command's outcome arrives, then a poll follows 0.3 s later without waiting for the timer.
        QTRY_VERIFY(rig.clock.secondsToNext() > 0 && rig.clock.secondsToNext() < 0.31);
        rig.clock.advance(Seconds(0.3));
        QTRY_COMPARE(rig.updates.size(), 2);
        rig.backend->seek(42.25);
        QTRY_COMPARE(
            rig.callsContaining(QStringLiteral("tell application \"Music\" to set player position to 42.25")),
            1);
    }

    void failingSeekIsLogged()
    {
        test::LogCapture log;
        Rig rig;
        rig.put("spotify.reply", reply({"playing", "Song", "A", "B", "1", "100000", "s1", ""}));
        rig.put("command.error", "boom\n");
        rig.put("command.status", "1");
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        rig.backend->seek(10);
        QTRY_VERIFY(
            log.contains(QStringLiteral("Norva music: seeking in Spotify failed (osascript exited with 1)")));
    }

    void musicArtworkIsFetchedOncePerTrack()
    {
        Rig rig;
        const QByteArray png = pngBytes(Qt::blue, 3);
        rig.put("artwork.reply", "«data PNGf" + png.toHex().toUpper() + "»\n");
        rig.put("music.reply", reply({"playing", "Loud", "C", "D", "2", "200", "m1"}));
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 2);
        const MediaUpdate& art = rig.updates.last();
        QVERIFY(art.artworkChanged);
        QCOMPARE(QImage::fromData(art.artworkData).pixelColor(1, 1), QColor(Qt::blue));
        QCOMPARE(art.snapshot.artworkKey, QStringLiteral("Music:m1"));
        rig.clock.advance(Seconds(3));
        QTRY_COMPARE(rig.updates.size(), 3);
        QVERIFY(!rig.updates.last().artworkChanged);
        QCOMPARE(rig.updates.last().snapshot.artworkKey, QStringLiteral("Music:m1"));
        QCOMPARE(rig.callsContaining(QStringLiteral("raw data of artwork")), 1);
    }
};

NORVA_TEST(ScriptingBackendTest)
#include "tst_ScriptingBackend.moc"
