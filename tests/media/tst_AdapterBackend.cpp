#include "LogCapture.h"
#include "ManualClock.h"
#include "MediaTestSupport.h"
#include "TestMain.h"

#include "media/MediaRemoteAdapterBackend.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;

namespace {

// A stand-in adapter: "stream" prints a line and lives until the test drops an "end" file
// holding the exit status ("signal" makes it kill itself); one-shot verbs are written down.
const QByteArray kAdapterScript =
    "dir=$(dirname \"$0\")\n"
    "if [ \"$1\" != stream ]; then echo \"$*\" >> \"$dir/oneshot.log\"; exit 0; fi\n"
    "echo \"$*\" >> \"$dir/streams.log\"\n"
    "printf '%s\\n' '{\"type\":\"data\",\"diff\":false,\"payload\":{\"title\":\"Song\",\"playing\":true}}'\n"
    "while [ ! -e \"$dir/end\" ]; do sleep 0.01; done\n"
    "code=$(cat \"$dir/end\"); rm -f \"$dir/end\"\n"
    "[ \"$code\" = signal ] && kill -9 $$\n"
    "exit \"$code\"\n";

} // namespace

class AdapterBackendTest : public QObject {
    Q_OBJECT

    // A backend fed lines by hand, without a process.
    struct HandFed {
        ManualClock clock;
        MediaRemoteAdapterBackend backend{clock, AdapterCommand{}};
        QList<MediaUpdate> seen;
        HandFed()
        {
            backend.start(MediaSink{[this](const MediaUpdate& u) { seen << u; }, {}, {}});
            backend.stop();
        }
        const MediaSnapshot& last() const { return seen.last().snapshot; }
    };

    struct Rig {
        QTemporaryDir dir;
        ManualClock clock;
        std::unique_ptr<MediaRemoteAdapterBackend> backend;
        QList<MediaUpdate> updates;
        int failures = 0;

        Rig()
        {
            const QString script = test::writeScript(dir.filePath(QStringLiteral("adapter")), kAdapterScript);
            backend = std::make_unique<MediaRemoteAdapterBackend>(
                clock, AdapterCommand{QStringLiteral("/bin/sh"), {script}});
        }
        void start()
        {
            backend->start(
                MediaSink{[this](const MediaUpdate& u) { updates << u; }, [this] { ++failures; }, {}});
        }
        int streams() const
        {
            return int(test::readAll(dir.filePath(QStringLiteral("streams.log"))).count('\n'));
        }
        // Lets the running stream live `seconds` by the clock, then ends it with `code`.
        bool liveAndEnd(double seconds, const QByteArray& code)
        {
            // Every stream prints one line first: wait until the current one has.
            if (!QTest::qWaitFor([&] { return streams() > 0 && updates.size() >= streams(); }, 5000))
                return false;
            clock.advance(Seconds(seconds));
            const int failuresBefore = failures;
            QFile end(dir.filePath(QStringLiteral("end")));
            end.open(QIODevice::WriteOnly);
            end.write(code);
            end.close();
            return QTest::qWaitFor([&] { return failures > failuresBefore || clock.pendingCount() > 0; },
                                   5000);
        }
    };

private slots:
    void ingestBuildsSnapshots_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("artist");
        QTest::addColumn<bool>("playing");
        QTest::addColumn<QString>("bundle");
        QTest::addColumn<double>("elapsed");  // -1: absent
        QTest::addColumn<double>("duration"); // -1: absent
        QTest::addColumn<bool>("hasTrack");

        const QString full = "{\"type\":\"data\",\"diff\":false,\"payload\":{\"title\":\"Song\",\"artist\":"
                             "\"Band\",\"playing\":true,"
                             "\"bundleIdentifier\":\"com.spotify.client\",\"elapsedTimeMicros\":12500000,"
                             "\"durationMicros\":215000000}}";
        QTest::newRow("full payload") << QStringList{full} << "Song"
                                      << "Band" << true << "com.spotify.client" << 12.5 << 215.0 << true;
        QTest::newRow("diff with only playing keeps the rest")
            << QStringList{full, "{\"type\":\"data\",\"diff\":true,\"payload\":{\"playing\":false}}"}
            << "Song"
            << "Band" << false << "com.spotify.client" << 12.5 << 215.0 << true;
        QTest::newRow("full payload replaces the state whole")
            << QStringList{full, "{\"type\":\"data\",\"diff\":false,\"payload\":{\"title\":\"Other\"}}"}
            << "Other"
            << "" << false << "" << -1.0 << -1.0 << true;
        QTest::newRow("browser reports the parent application")
            << QStringList{"{\"type\":\"data\",\"payload\":{\"title\":\"Clip\","
                           "\"parentApplicationBundleIdentifier\":\"com.google.Chrome\"}}"}
            << "Clip"
            << "" << false << "com.google.Chrome" << -1.0 << -1.0 << true;
        QTest::newRow("own bundle wins over the parent")
            << QStringList{"{\"type\":\"data\",\"payload\":{\"title\":\"Clip\",\"bundleIdentifier\":\"a.b\","
                           "\"parentApplicationBundleIdentifier\":\"c.d\"}}"}
            << "Clip"
            << "" << false << "a.b" << -1.0 << -1.0 << true;
        QTest::newRow("seconds keys when micros are absent")
            << QStringList{"{\"type\":\"data\",\"payload\":{\"title\":\"S\",\"elapsedTime\":3.25,"
                           "\"duration\":\"200\"}}"}
            << "S"
            << "" << false << "" << 3.25 << 200.0 << true;
        QTest::newRow("numbers as text")
            << QStringList{"{\"type\":\"data\",\"payload\":{\"title\":\"S\",\"elapsedTimeMicros\":"
                           "\"1500000\",\"durationMicros\":\"9000000\"}}"}
            << "S"
            << "" << false << "" << 1.5 << 9.0 << true;
        QTest::newRow("no title means nothing plays")
            << QStringList{"{\"type\":\"data\",\"payload\":{\"artist\":\"Band\",\"playing\":true}}"} << ""
            << "Band" << true << "" << -1.0 << -1.0 << false;
        QTest::newRow("a line of another type is ignored")
            << QStringList{full, "{\"type\":\"status\",\"payload\":{\"title\":\"Nope\"}}"} << "Song"
            << "Band" << true << "com.spotify.client" << 12.5 << 215.0 << true;
        QTest::newRow("a broken line is dropped and the next carries on")
            << QStringList{full, "{not json",
                           "{\"type\":\"data\",\"diff\":true,\"payload\":{\"artist\":\"New\"}}"}
            << "Song"
            << "New" << true << "com.spotify.client" << 12.5 << 215.0 << true;
    }
    void ingestBuildsSnapshots()
    {
        QFETCH(QStringList, lines);
        HandFed fed;
        for (const QString& line : lines)
            fed.backend.ingest(line.toUtf8() + '\n');
        QVERIFY(!fed.seen.isEmpty());
        const MediaSnapshot& s = fed.last();
        QTEST(s.title, "title");
        QTEST(s.artist, "artist");
        QTEST(s.isPlaying, "playing");
        QTEST(s.bundleIdentifier.value_or(QString()), "bundle");
        QTEST(s.elapsed.value_or(-1.0), "elapsed");
        QTEST(s.duration.value_or(-1.0), "duration");
        QTEST(s.hasTrack, "hasTrack");
    }

    void linesSplitAcrossReadsAreJoined()
    {
        HandFed fed;
        fed.backend.ingest("{\"type\":\"data\",\"payload\":{\"ti");
        QCOMPARE(fed.seen.size(), 0);
        fed.backend.ingest(
            "tle\":\"Half\"}}\n{\"type\":\"data\",\"diff\":true,\"payload\":{\"playing\":true}}\n");
        QCOMPARE(fed.seen.size(), 2);
        QCOMPARE(fed.last().title, QStringLiteral("Half"));
        QVERIFY(fed.last().isPlaying);
    }

    void timestampComesFromTheLineOrNow()
    {
        HandFed fed;
        fed.backend.ingest(
            "{\"type\":\"data\",\"payload\":{\"title\":\"S\",\"timestampEpochMicros\":1700000000250000}}"
            "\n");
        QCOMPARE(fed.last().timestamp, QDateTime::fromMSecsSinceEpoch(1700000000250, Qt::UTC));
        fed.backend.ingest("{\"type\":\"data\",\"payload\":{\"title\":\"S\"}}"
                           "\n");
        QCOMPARE(fed.last().timestamp, fed.clock.now());
    }

    void artworkIsHandedOnOnlyWhenItChanges()
    {
        HandFed fed;
        const QByteArray art = pngBytes(Qt::red, 4).toBase64();
        fed.backend.ingest("{\"type\":\"data\",\"payload\":{\"title\":\"S\",\"artworkData\":\"" + art +
                           "\"}}\n");
        QVERIFY(fed.seen.last().artworkChanged);
        QCOMPARE(QImage::fromData(fed.seen.last().artworkData).pixelColor(1, 1), QColor(Qt::red));
        const QString key = fed.last().artworkKey;
        QVERIFY(!key.isEmpty());
        fed.backend.ingest("{\"type\":\"data\",\"diff\":true,\"payload\":{\"playing\":false}}"
                           "\n");
        QVERIFY(!fed.seen.last().artworkChanged);
        QCOMPARE(fed.last().artworkKey, key);
        fed.backend.ingest("{\"type\":\"data\",\"diff\":true,\"payload\":{\"artworkData\":null}}"
                           "\n");
        QVERIFY(fed.seen.last().artworkChanged);
        QVERIFY(fed.seen.last().artworkData.isEmpty());
        QVERIFY(fed.last().artworkKey.isEmpty());
    }

    void streamRunsTheAdapterWithItsArguments()
    {
        Rig rig;
        rig.start();
        QTRY_COMPARE(rig.updates.size(), 1);
        QCOMPARE(rig.updates.first().snapshot.title, QStringLiteral("Song"));
        QCOMPARE(test::readAll(rig.dir.filePath(QStringLiteral("streams.log"))),
                 QByteArray("stream --micros --debounce=100\n"));
    }

    // The adapter's stream lives on by itself: a life of 30 s or more, or one of three short lives in
    // a row, ended calmly, comes back a second later; a fourth short life, one under 10 s or an
    // error exit gives it up for the session.
    void theStreamComesBackOrIsGivenUp_data()
    {
        QTest::addColumn<QString>("lives"); // seconds:exit status, one per stream
        QTest::addColumn<int>("failures");
        QTest::addColumn<int>("restarts");
        QTest::addColumn<QString>("logged");
        QTest::newRow("ended after 12 s")
            << "12:0" << 0 << 1
            << "Norva music: the media adapter stopped (it exited with status 0 "
               "after 12 s), starting it again";
        QTest::newRow("killed after 12 s") << "12:signal" << 0 << 1 << "";
        QTest::newRow("died after 5 s")
            << "5:0" << 1 << 0
            << "Norva music: the media adapter is given up (it exited with status 0 after 5 s";
        QTest::newRow("an error after a long life") << "40:3" << 1 << 0 << "";
        QTest::newRow("a fourth short life") << "15:0 15:0 15:0 15:0" << 1 << 3 << "";
        QTest::newRow("a settled life forgets") << "15:0 15:0 15:0 31:0" << 0 << 1 << "";
    }
    void theStreamComesBackOrIsGivenUp()
    {
        QFETCH(QString, lives);
        QFETCH(int, failures);
        QFETCH(QString, logged);
        test::LogCapture log;
        Rig rig;
        rig.start();
        for (const QString& life : lives.split(QLatin1Char(' '))) {
            QVERIFY(rig.liveAndEnd(life.section(QLatin1Char(':'), 0, 0).toDouble(),
                                   life.section(QLatin1Char(':'), 1).toUtf8()));
            if (rig.failures > 0)
                break;
            const int streams = rig.streams();
            rig.clock.advance(Seconds(0.9));
            QCOMPARE(rig.streams(), streams);
            rig.clock.advance(Seconds(0.1));
            QTRY_COMPARE(rig.streams(), streams + 1);
        }
        QCOMPARE(rig.failures, failures);
        QTEST(rig.backend->restartCount(), "restarts");
        if (failures > 0)
            QCOMPARE(rig.clock.pendingCount(), 0); // nothing will start it again
        QVERIFY(logged.isEmpty() || log.contains(logged));
    }

    void stopEndsTheStreamWithoutARestart()
    {
        Rig rig;
        rig.start();
        QTRY_VERIFY(rig.backend->isStreaming());
        rig.backend->stop();
        QVERIFY(!rig.backend->isStreaming());
        QCOMPARE(rig.clock.pendingCount(), 0);
        QCOMPARE(rig.failures, 0);
    }

    void missingProgramFails()
    {
        ManualClock clock;
        MediaRemoteAdapterBackend backend(clock,
                                          AdapterCommand{QStringLiteral("/nonexistent/norva-media"), {}});
        int failures = 0;
        backend.start(MediaSink{{}, [&] { ++failures; }, {}});
        QTRY_COMPARE(failures, 1);
    }

    void commandsRunTheAdapterOnce_data()
    {
        QTest::addColumn<int>("command"); // -1: seek 12.5 s
        QTest::addColumn<QByteArray>("logged");
        QTest::newRow("toggle") << int(MediaCommand::togglePlayPause) << QByteArray("send 2\n");
        QTest::newRow("play") << int(MediaCommand::play) << QByteArray("send 0\n");
        QTest::newRow("pause") << int(MediaCommand::pause) << QByteArray("send 1\n");
        QTest::newRow("next") << int(MediaCommand::nextTrack) << QByteArray("send 4\n");
        QTest::newRow("previous") << int(MediaCommand::previousTrack) << QByteArray("send 5\n");
        QTest::newRow("seek to 12.5 s") << -1 << QByteArray("seek 12500000\n");
    }
    void commandsRunTheAdapterOnce()
    {
        QFETCH(int, command);
        QFETCH(QByteArray, logged);
        Rig rig;
        if (command < 0)
            rig.backend->seek(12.5);
        else
            rig.backend->send(MediaCommand(command));
        QTRY_COMPARE(test::readAll(rig.dir.filePath(QStringLiteral("oneshot.log"))), logged);
    }

    void failingCommandIsLogged()
    {
        test::LogCapture log;
        QTemporaryDir dir;
        const QString script = test::writeScript(dir.filePath(QStringLiteral("adapter")), "exit 4\n");
        ManualClock clock;
        MediaRemoteAdapterBackend backend(clock, AdapterCommand{QStringLiteral("/bin/sh"), {script}});
        backend.seek(3);
        QTRY_VERIFY(log.contains(QStringLiteral(
            "Norva music: seeking through the media adapter failed (the adapter exited with 4)")));
    }

    void locatorFindsTheProducerOnlyWhenExecutable()
    {
        QTemporaryDir empty;
        QTemporaryDir withProducer;
        QVERIFY(!MediaRemoteAdapterBackend::Locator::locate({empty.path()}));
        const QString path = withProducer.filePath(QStringLiteral("norva-media"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QVERIFY(!MediaRemoteAdapterBackend::Locator::locate({withProducer.path()}));
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        const auto found = MediaRemoteAdapterBackend::Locator::locate({empty.path(), withProducer.path()});
        QVERIFY(found);
        QCOMPARE(found->program, path);
        QVERIFY(found->leadingArguments.isEmpty());
    }
};

NORVA_TEST(AdapterBackendTest)
#include "tst_AdapterBackend.moc"
