#include "LogCapture.h"
#include "ManualClock.h"
#include "SoundServerRig.h"
#include "TestMain.h"

#include "MediaTestSupport.h"
#include "media/ScriptedOutputVolume.h"
#include "platform/linux/PactlOutputVolume.h"

#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace norva;

namespace {

// The last level and mute that the volume told of.
std::pair<double, bool> lastChange(const QSignalSpy& changes)
{
    if (changes.isEmpty())
        return {-1, false};
    const QList<QVariant>& last = changes.last();
    return {last.at(0).toDouble(), last.at(1).toBool()};
}

// Sets the level and waits for the sound server's answer; the failure text, empty on success.
QString setAndWait(OutputVolume& volume, double level)
{
    std::optional<QString> failure;
    volume.set(level, [&failure](const QString& text) { failure = text; });
    if (!QTest::qWaitFor([&failure] { return failure.has_value(); }, 10000))
        return QStringLiteral("no answer");
    return *failure;
}

// A real sound server, and Norva's volume watching it.
struct WatchedServer {
    test::SoundServerRig server;
    test::ManualClock clock;
    PactlOutputVolume volume{clock};
    QSignalSpy changes{&volume, &OutputVolume::changed};

    bool start()
    {
        if (!server.start())
            return false;
        volume.startMonitoring();
        return true;
    }
};

} // namespace

class OutputVolumeTest : public QObject {
    Q_OBJECT

private slots:
    void readsPactlsWords_data()
    {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<double>("level"); // -1: no reading
        QTest::newRow("stereo, even")
            << QByteArray("Volume: front-left: 26214 /  40% / -23.88 dB,   "
                          "front-right: 26214 /  40% / -23.88 dB\n        balance 0.00\n")
            << 0.4;
        QTest::newRow("stereo, uneven: the mean")
            << QByteArray(
                   "Volume: front-left: 19661 /  30% / -31.37 dB,   front-right: 32768 /  50% / -18.06 dB\n"
                   "        balance 0.40\n")
            << 0.4;
        QTest::newRow("mono") << QByteArray("Volume: mono: 65536 / 100% / 0.00 dB\n") << 1.0;
        QTest::newRow("above full") << QByteArray("Volume: mono: 98304 / 150% / 10.57 dB\n") << 1.5;
        QTest::newRow("balance line is not a channel")
            << QByteArray("Volume: mono: 0 /   0% / -inf dB\n        balance 0.00 (99%)\n") << 0.0;
        QTest::newRow("no volume line") << QByteArray("Connection failure: Connection refused\n") << -1.0;
        QTest::newRow("no percent") << QByteArray("Volume: front-left: 26214\n") << -1.0;
        QTest::newRow("empty") << QByteArray() << -1.0;
    }
    void readsPactlsWords()
    {
        QFETCH(QByteArray, output);
        QFETCH(double, level);
        const auto read = PactlOutputVolume::parseLevel(output);
        QCOMPARE(read.has_value(), level >= 0);
        if (read)
            QCOMPARE(*read, level);
    }

    void readsTheMute()
    {
        QCOMPARE(PactlOutputVolume::parseMuted("Mute: yes\n"), std::optional<bool>(true));
        QCOMPARE(PactlOutputVolume::parseMuted("Mute: no\n"), std::optional<bool>(false));
        QCOMPARE(PactlOutputVolume::parseMuted("Connection failure\n"), std::optional<bool>());
    }

    // Without the audio framework's listener the scripted volume reads the level once, at the start.
    void scriptedVolumeReadsTheLevelOnce_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<double>("level"); // -1: no reading
        QTest::addColumn<bool>("muted");
        QTest::newRow("plain") << QByteArray("40,false\n") << 0.4 << false;
        QTest::newRow("muted") << QByteArray("0,true\n") << 0.0 << true;
        QTest::newRow("device without volume") << QByteArray("missing value,false\n") << -1.0 << false;
        QTest::newRow("garbled") << QByteArray("40\n") << -1.0 << false;
    }
    void scriptedVolumeReadsTheLevelOnce()
    {
        QFETCH(QByteArray, reply);
        QFETCH(double, level);
        QFETCH(bool, muted);
        QTemporaryDir dir;
        const QString osascript = test::writeScript(dir.filePath(QStringLiteral("osascript")),
                                                    "cat > /dev/null; printf '%s' '" + reply + "'\n");
        ScriptedOutputVolume volume{ScriptRunner(osascript)};
        QSignalSpy changes(&volume, &OutputVolume::changed);
        volume.startMonitoring();
        if (level < 0) {
            QCOMPARE(ScriptedOutputVolume::parseSettings(reply), std::nullopt);
            return;
        }
        QTRY_COMPARE(lastChange(changes), std::make_pair(level, muted));
    }

    void setsAndHearsARealSoundServer()
    {
        if (!test::SoundServerRig::available())
            QSKIP("pulseaudio and pactl are not installed");
        WatchedServer watched;
        QVERIFY(watched.start());
        PactlOutputVolume& volume = watched.volume;
        const QSignalSpy& changes = watched.changes;
        QTRY_COMPARE(lastChange(changes), std::make_pair(1.0, false));

        QCOMPARE(setAndWait(volume, 0.4), QString());
        QVERIFY(test::SoundServerRig::pactl({"get-sink-volume", "@DEFAULT_SINK@"}).output.contains(" 40% "));
        QTRY_COMPARE(lastChange(changes), std::make_pair(0.4, false));

        // Another program mutes and turns it: both are heard.
        QVERIFY(test::SoundServerRig::waitForWatcher());
        QCOMPARE(test::SoundServerRig::pactl({"set-sink-mute", "@DEFAULT_SINK@", "1"}).exitCode, 0);
        QTRY_COMPARE(lastChange(changes), std::make_pair(0.4, true));
        QCOMPARE(test::SoundServerRig::pactl({"set-sink-volume", "@DEFAULT_SINK@", "25%"}).exitCode, 0);
        QTRY_COMPARE(lastChange(changes), std::make_pair(0.25, true));
        volume.stopMonitoring();
    }

    void followsTheSoundServerAcrossARestart()
    {
        if (!test::SoundServerRig::available())
            QSKIP("pulseaudio and pactl are not installed");
        test::LogCapture log;
        WatchedServer watched;
        QVERIFY(watched.start());
        const QSignalSpy& changes = watched.changes;
        QCOMPARE(setAndWait(watched.volume, 0.3), QString());
        QTRY_COMPARE(lastChange(changes), std::make_pair(0.3, false));

        watched.server.stop();
        const QString ended = QStringLiteral("Norva music: the volume watch ended (pactl exited with ");
        QTRY_COMPARE(log.count(ended), 1);
        QVERIFY(log.lines().filter(ended).first().endsWith(QStringLiteral("), trying again in 5 s")));
        QVERIFY(watched.server.start()); // a new server starts at full volume

        watched.clock.advance(PactlOutputVolume::resubscribeDelay);
        QTRY_COMPARE(lastChange(changes), std::make_pair(1.0, false));
        QVERIFY(test::SoundServerRig::waitForWatcher());
        QCOMPARE(test::SoundServerRig::pactl({"set-sink-volume", "@DEFAULT_SINK@", "60%"}).exitCode, 0);
        QTRY_COMPARE(lastChange(changes), std::make_pair(0.6, false));
    }

    // With no sound server at all the watch keeps trying, ever less often, and says so once.
    void withoutASoundServerTheWatchBacksOff()
    {
        if (!test::SoundServerRig::available())
            QSKIP("pactl is not installed");
        test::LogCapture log;
        QTemporaryDir nowhere;
        const QByteArray savedServer = qgetenv("PULSE_SERVER");
        const auto restore = qScopeGuard([&savedServer] {
            if (savedServer.isEmpty())
                qunsetenv("PULSE_SERVER");
            else
                qputenv("PULSE_SERVER", savedServer);
        });
        qputenv("PULSE_SERVER", "unix:" + nowhere.filePath(QStringLiteral("none")).toUtf8());
        test::ManualClock clock;
        PactlOutputVolume volume(clock);
        volume.startMonitoring();
        QList<double> waits;
        for (int attempt = 0; attempt < 8; ++attempt) {
            QTRY_VERIFY(clock.pendingCount() == 1); // the next try is armed once this one has ended
            waits << clock.secondsToNext();
            clock.advance(Seconds(clock.secondsToNext()));
        }
        QCOMPARE(waits, (QList<double>{5, 10, 20, 40, 80, 160, 300, 300}));
        QCOMPARE(log.count(QStringLiteral("Norva music: the volume watch ended (")), 1);
        QTRY_COMPARE(log.count(QStringLiteral("Norva music: reading the volume failed (")), 1);
        volume.stopMonitoring();
    }

    void withoutPactlTheVolumeFailsCalmly()
    {
        test::LogCapture log;
        test::ManualClock clock;
        PactlOutputVolume volume(clock, QStringLiteral("/nonexistent/pactl"));
        QCOMPARE(setAndWait(volume, 0.5), QStringLiteral("pactl could not be started"));
        QSignalSpy changes(&volume, &OutputVolume::changed);
        volume.startMonitoring();
        QTRY_COMPARE(log.count(QStringLiteral("Norva music: cannot watch the volume (pactl: ")), 1);
        // No retry is armed for a program that is not there.
        QVERIFY(changes.isEmpty());
        QCOMPARE(clock.pendingCount(), 0);
    }
};

NORVA_TEST(OutputVolumeTest)
#include "tst_OutputVolume.moc"
