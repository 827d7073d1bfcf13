#include "LogCapture.h"
#include "ManualClock.h"
#include "MediaTestSupport.h"
#include "MemoryPreferences.h"
#include "TableRows.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "activities/VolumeActivity.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "media/LyricsManager.h"
#include "media/MusicManager.h"
#include "media/MusicSettings.h"
#include "media/ScriptedOutputVolume.h"
#include "media/VolumeActivityPublisher.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;

namespace {

// A backend the test drives by hand: it records what it was asked and delivers what it is told.
struct FakeBackend final : MediaBackend {
    QString name;
    QStringList* journal;
    MediaSink sink;
    QList<MediaCommand> commands;
    QList<double> seeks;

    FakeBackend(QString n, QStringList* j) : name(std::move(n)), journal(j) {}
    void start(MediaSink s) override
    {
        sink = std::move(s);
        *journal << name + QStringLiteral(" started");
    }
    void stop() override { *journal << name + QStringLiteral(" stopped"); }
    void send(MediaCommand command) override { commands << command; }
    void seek(double seconds) override { seeks << seconds; }
};

// A volume the test answers by hand: it records each level asked for and lands it when told.
struct FakeOutputVolume final : OutputVolume {
    QList<double> asked;
    QList<Done> waiting;

    void set(double level, Done done) override
    {
        asked << level;
        waiting << std::move(done);
    }
    void startMonitoring() override {}
    void stopMonitoring() override {}
    void landAll(const QString& failure = {})
    {
        for (const Done& done : std::exchange(waiting, {}))
            done(failure);
    }
};

MediaSnapshot track(const QString& title, bool playing, double elapsed = 10, double duration = 200)
{
    MediaSnapshot s;
    s.title = title;
    s.hasTrack = true;
    s.artist = QStringLiteral("Band");
    s.isPlaying = playing;
    s.elapsed = elapsed;
    s.duration = duration;
    s.playbackRate = 1.0;
    s.timestamp = QDateTime(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);
    return s;
}

} // namespace

class MusicManagerTest : public QObject {
    Q_OBJECT

    struct Rig {
        ManualClock clock;
        test::MemoryPreferences preferences;
        SettingsStore settings{preferences};
        MusicSettings music{settings};
        QStringList journal;
        FakeBackend* adapter = nullptr;
        FakeBackend* scripting = nullptr;
        bool adapterFound = true;
        bool scriptingExists = true;
        std::unique_ptr<MusicManager> manager;

        explicit Rig(LyricsManager* lyrics = nullptr, std::unique_ptr<OutputVolume> volume = {})
        {
            // Each factory answers nothing while its backend "does not exist here".
            auto factory = [this](const QString& name, const bool& exists, FakeBackend*& made) {
                return [this, name, &exists, &made]() -> std::unique_ptr<MediaBackend> {
                    if (!exists)
                        return nullptr;
                    auto backend = std::make_unique<FakeBackend>(name, &journal);
                    made = backend.get();
                    return backend;
                };
            };
            MusicManager::Backends backends;
            backends.adapter = factory(QStringLiteral("adapter"), adapterFound, adapter);
            backends.scripting = factory(QStringLiteral("scripting"), scriptingExists, scripting);
            manager = std::make_unique<MusicManager>(clock, &music, backends, lyrics, std::move(volume));
        }
        void deliver(const MediaSnapshot& snapshot)
        {
            MediaUpdate update;
            update.snapshot = snapshot;
            current()->sink.onUpdate(update);
        }
        FakeBackend* current()
        {
            return manager->source() == MusicManager::Source::adapter ? adapter : scripting;
        }
    };

private slots:
    // The adapter when it is there, else the scripting backend, else nothing.
    void startPicksTheFirstBackendThatExists_data()
    {
        QTest::addColumn<bool>("adapterFound");
        QTest::addColumn<bool>("scriptingExists");
        QTest::addColumn<int>("source");
        QTest::addColumn<QString>("started");
        QTest::addColumn<QString>("logged");
        using S = MusicManager::Source;
        QTest::newRow("the adapter is preferred") << true << true << int(S::adapter) << "adapter started"
                                                  << "";
        QTest::newRow("no adapter: scripting") << false << true << int(S::scripting) << "scripting started"
                                               << "Norva: media adapter not found, using AppleScript backend";
        QTest::newRow("neither: nothing plays")
            << false << false << int(S::none) << ""
            << "Norva: media adapter not found, using AppleScript backend,"
               "Norva music: no player can be asked what plays (osascript is not on this system)";
    }
    void startPicksTheFirstBackendThatExists()
    {
        QFETCH(bool, adapterFound);
        QFETCH(bool, scriptingExists);
        QFETCH(int, source);
        QFETCH(QString, started);
        QFETCH(QString, logged);
        test::LogCapture log;
        Rig rig;
        rig.adapterFound = adapterFound;
        rig.scriptingExists = scriptingExists;
        rig.manager->start();
        QCOMPARE(int(rig.manager->source()), source);
        QCOMPARE(rig.journal.join(QLatin1Char(',')), started);
        QCOMPARE(log.lines().join(QLatin1Char(',')), logged);
        QVERIFY(!rig.manager->hasTrack());
        QVERIFY(!rig.manager->hasActiveSession());
    }

    void adapterFailureFallsBackOnceForTheSession()
    {
        test::LogCapture log;
        Rig rig;
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        rig.adapter->sink.onFailure();
        QCOMPARE(rig.manager->source(), MusicManager::Source::adapter); // handed over after the call returns
        QTRY_COMPARE(rig.manager->source(), MusicManager::Source::scripting);
        QCOMPARE(rig.journal,
                 (QStringList{QStringLiteral("adapter started"), QStringLiteral("adapter stopped"),
                              QStringLiteral("scripting started")}));
        QCOMPARE(log.count(QStringLiteral("Norva: media adapter unavailable, falling back to AppleScript")),
                 1);
        // A failure from scripting does not bring the adapter back.
        rig.scripting->sink.onFailure();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(rig.manager->source(), MusicManager::Source::scripting);
        QCOMPARE(rig.journal.size(), 3);
    }

    void commandsGoToTheRunningBackend()
    {
        Rig rig;
        rig.manager->start();
        rig.manager->nextTrack();
        rig.manager->seek(12.5);
        QCOMPARE(rig.adapter->commands, QList<MediaCommand>{MediaCommand::nextTrack});
        QCOMPARE(rig.adapter->seeks, QList<double>{12.5});
    }

    void displayedPosition_data()
    {
        QTest::addColumn<bool>("playing");
        QTest::addColumn<double>("elapsed"); // -1: unknown
        QTest::addColumn<double>("duration");
        QTest::addColumn<double>("rate"); // -1: unknown
        QTest::addColumn<double>("secondsLater");
        QTest::addColumn<double>("shown"); // -1: none
        QTest::addColumn<double>("progress");
        QTest::newRow("playing moves on") << true << 10.0 << 200.0 << 1.0 << 5.0 << 15.0 << 0.075;
        QTest::newRow("double rate") << true << 10.0 << 200.0 << 2.0 << 5.0 << 20.0 << 0.1;
        QTest::newRow("zero rate counts as normal") << true << 10.0 << 200.0 << 0.0 << 5.0 << 15.0 << 0.075;
        QTest::newRow("unknown rate counts as normal")
            << true << 10.0 << 200.0 << -1.0 << 5.0 << 15.0 << 0.075;
        QTest::newRow("capped at the duration") << true << 190.0 << 200.0 << 1.0 << 30.0 << 200.0 << 1.0;
        QTest::newRow("paused stands still") << false << 10.0 << 200.0 << 1.0 << 30.0 << 10.0 << 0.05;
        QTest::newRow("no elapsed shows none") << true << -1.0 << 200.0 << 1.0 << 5.0 << -1.0 << 0.0;
        QTest::newRow("zero duration has no progress") << true << 10.0 << 0.0 << 1.0 << 5.0 << 0.0 << 0.0;
    }
    void displayedPosition()
    {
        QFETCH(bool, playing);
        QFETCH(double, elapsed);
        QFETCH(double, duration);
        QFETCH(double, rate);
        QFETCH(double, secondsLater);
        MediaSnapshot s = track(QStringLiteral("A"), playing);
        s.elapsed = elapsed < 0 ? std::nullopt : std::optional(elapsed);
        s.duration = duration;
        s.playbackRate = rate < 0 ? std::nullopt : std::optional(rate);
        const QDateTime at = s.timestamp.addMSecs(qint64(secondsLater * 1000));
        QTEST(s.displayElapsed(at).value_or(-1.0), "shown");
        QTEST(s.playbackProgress(at), "progress");
    }

    // The position ticks only while a view follows it and the song plays; a view that comes
    // catches up at once.
    void positionMovesWhileFollowedAndPlaying()
    {
        Rig rig;
        rig.manager->start();
        MediaSnapshot s = track(QStringLiteral("A"), true);
        s.timestamp = rig.clock.now();
        rig.deliver(s);
        QSignalSpy moved(rig.manager.get(), &MusicManager::positionChanged);
        rig.clock.advance(Seconds(2));
        QCOMPARE(moved.size(), 0); // nothing shows the position
        rig.manager->followPosition(true);
        QCOMPARE(moved.size(), 1);
        QCOMPARE(rig.manager->displayElapsedNow(), 12.0);
        rig.clock.advance(Seconds(2));
        QCOMPARE(moved.size(), 5);
        QCOMPARE(rig.manager->displayElapsedNow(), 14.0);
        s.isPlaying = false;
        rig.deliver(s);
        moved.clear();
        rig.clock.advance(Seconds(2));
        QCOMPARE(moved.size(), 0);
        s.isPlaying = true;
        rig.deliver(s);
        rig.manager->followPosition(false);
        moved.clear();
        rig.clock.advance(Seconds(2));
        QCOMPARE(moved.size(), 0);
    }

    void pausedSessionIsWithdrawnAfterTheKeepTime_data()
    {
        QTest::addColumn<int>("keep");
        QTest::addColumn<double>("stillShownAt");
        QTest::addColumn<double>("withdrawnAt"); // -1: never
        QTest::newRow("10 s") << 10 << 9.9 << 10.0;
        QTest::newRow("30 s") << 30 << 29.9 << 30.0;
        QTest::newRow("60 s") << 60 << 59.9 << 60.0;
        QTest::newRow("kept") << 0 << 600.0 << -1.0;
    }
    void pausedSessionIsWithdrawnAfterTheKeepTime()
    {
        QFETCH(int, keep);
        QFETCH(double, stillShownAt);
        QFETCH(double, withdrawnAt);
        Rig rig;
        rig.music.setKeepPaused(KeepPaused(keep));
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        QVERIFY(rig.manager->hasActiveSession());
        rig.clock.advance(Seconds(100)); // playing for long keeps it shown
        QVERIFY(rig.manager->hasActiveSession());
        rig.deliver(track(QStringLiteral("A"), false));
        rig.clock.advance(Seconds(stillShownAt));
        QVERIFY(rig.manager->hasActiveSession());
        if (withdrawnAt < 0)
            return;
        rig.clock.advance(Seconds(withdrawnAt - stillShownAt));
        QVERIFY(!rig.manager->hasActiveSession());
        QVERIFY(rig.manager->hasTrack()); // the page still shows it
        rig.deliver(track(QStringLiteral("A"), true));
        QVERIFY(rig.manager->hasActiveSession());
    }

    void resumingBeforeTheCheckKeepsTheSession()
    {
        Rig rig;
        rig.music.setKeepPaused(KeepPaused::tenSeconds);
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        rig.deliver(track(QStringLiteral("A"), false));
        rig.clock.advance(Seconds(5));
        rig.deliver(track(QStringLiteral("A"), true));
        rig.clock.advance(Seconds(20));
        QVERIFY(rig.manager->hasActiveSession());
    }

    void dismissedTrackStaysHiddenUntilAnotherTrack()
    {
        Rig rig;
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        rig.manager->dismissCurrent();
        QVERIFY(!rig.manager->hasActiveSession());
        rig.deliver(track(QStringLiteral("A"), true, 50));
        QVERIFY(!rig.manager->hasActiveSession());
        rig.deliver(MediaSnapshot{});
        rig.deliver(track(QStringLiteral("A"), true, 60));
        QVERIFY(!rig.manager->hasActiveSession());
        rig.deliver(track(QStringLiteral("B"), true));
        QVERIFY(rig.manager->hasActiveSession());
        QVERIFY(rig.manager->dismissedTrackKey().isEmpty());
    }

    // A new song shows under the closed notch for a moment, and only a song that has the notch.
    void newSongPeeks_data()
    {
        QTest::addColumn<bool>("songPeekOn");
        QTest::addColumn<bool>("dismissFirst");
        QTest::addColumn<bool>("peeks");
        QTest::newRow("a new song") << true << false << true;
        QTest::newRow("peeks switched off") << false << false << false;
        QTest::newRow("after the last one was dismissed") << true << true << true;
    }
    void newSongPeeks()
    {
        QFETCH(bool, songPeekOn);
        QFETCH(bool, dismissFirst);
        QFETCH(bool, peeks);
        Rig rig;
        rig.preferences.setValue(QStringLiteral("music.songPeek.v1"), songPeekOn);
        rig.manager->start();
        if (dismissFirst) {
            rig.deliver(track(QStringLiteral("A"), true));
            rig.manager->dismissCurrent();
            QVERIFY(!rig.manager->songPeeking()); // a dismissed song leaves with its peek
        }
        QSignalSpy peeking(rig.manager.get(), &MusicManager::songPeekingChanged);
        rig.deliver(track(QStringLiteral("B"), true, 1));
        QCOMPARE(rig.manager->songPeeking(), peeks);
        rig.clock.advance(SongPeek::duration - Seconds(0.1));
        rig.deliver(track(QStringLiteral("B"), true, 4)); // the song going on does not start it over
        QCOMPARE(rig.manager->songPeeking(), peeks);
        rig.clock.advance(Seconds(0.1));
        QVERIFY(!rig.manager->songPeeking());
        QCOMPARE(peeking.size(), peeks ? 2 : 0);
    }

    void peekEndsWhenTheMusicLeaves()
    {
        Rig rig;
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        QVERIFY(rig.manager->songPeeking());
        rig.deliver(MediaSnapshot{}); // the player quit
        QVERIFY(!rig.manager->songPeeking());
        rig.clock.advance(SongPeek::duration);
        rig.deliver(track(QStringLiteral("A"), true)); // the same song back later: it peeked already
        QVERIFY(!rig.manager->songPeeking());
    }

    void equalTroubleIsNotedOnce()
    {
        Rig rig;
        rig.manager->start();
        QSignalSpy changed(rig.manager.get(), &MusicManager::troubleChanged);
        rig.adapter->sink.onTrouble(MusicTrouble::permission(QStringLiteral("Spotify")));
        rig.adapter->sink.onTrouble(MusicTrouble::permission(QStringLiteral("Spotify")));
        QCOMPARE(changed.size(), 1);
        rig.adapter->sink.onTrouble(MusicTrouble::scriptFailed(QStringLiteral("oops"), 1));
        QCOMPARE(changed.size(), 2);
        QCOMPARE(rig.manager->troubleText(), QStringLiteral("osascript exited with 1: oops"));
    }

    void artworkColoursTheAlbum()
    {
        Rig rig;
        rig.manager->start();
        MediaUpdate update;
        update.snapshot = track(QStringLiteral("A"), true);
        update.snapshot.artworkKey = QStringLiteral("k1");
        update.artworkChanged = true;
        update.artworkData = pngBytes(QColor(200, 30, 30));
        rig.adapter->sink.onUpdate(update);
        QTRY_COMPARE(rig.manager->albumAccentColor(), QColor(200, 30, 30));
        QVERIFY(rig.manager->artworkSource().startsWith(QStringLiteral("data:image/png;base64,")));
        QVERIFY(!rig.manager->albumWash().isNull());
        QVERIFY(rig.manager->albumTint().value() < 200);
    }

    void artworkWithoutBitmapKeepsWhiteAndLogs()
    {
        test::LogCapture log;
        Rig rig;
        rig.manager->start();
        MediaUpdate update;
        update.snapshot = track(QStringLiteral("A"), true);
        update.snapshot.artworkKey = QStringLiteral("k2");
        update.artworkChanged = true;
        update.artworkData = "not an image";
        rig.adapter->sink.onUpdate(update);
        QTRY_VERIFY(log.contains(
            QStringLiteral("Norva music: reading the album colour failed (the artwork has no bitmap)")));
        QCOMPARE(rig.manager->albumAccentColor(), QColor(Qt::white));
        QVERIFY(rig.manager->albumWash().isNull());
        QVERIFY(rig.manager->coverSource().isEmpty());
        QVERIFY(log.contains(
            QStringLiteral("Norva music: making the album wash failed (the artwork has no bitmap)")));
    }

    // The closed notch draws the cover small: its source is a small PNG made off the main thread.
    // A cover seen before shows again at once; a cover still decoding when the next arrives is
    // dropped rather than shown over the newer one.
    void coversAreMadeSmallKeptAndNeverShownLate()
    {
        Rig rig;
        rig.manager->start();
        const auto deliverArt = [&rig](const QString& title, const QString& key, const QColor& colour) {
            MediaUpdate update;
            update.snapshot = track(title, true);
            update.snapshot.artworkKey = key;
            update.artworkChanged = true;
            update.artworkData = pngBytes(colour, 600);
            rig.adapter->sink.onUpdate(update);
        };
        const auto coverImage = [&rig] {
            const QString source = rig.manager->coverSource();
            return QImage::fromData(QByteArray::fromBase64(source.section(QLatin1Char(','), 1).toLatin1()));
        };

        deliverArt(QStringLiteral("A"), QStringLiteral("red"), Qt::red);
        QVERIFY(rig.manager->coverSource().isEmpty()); // decoding, away from the main thread
        QTRY_VERIFY(!rig.manager->coverSource().isEmpty());
        QCOMPARE(coverImage().size(), QSize(PreparedArtwork::coverSize, PreparedArtwork::coverSize));
        QCOMPARE(coverImage().pixelColor(24, 24), QColor(Qt::red));
        QCOMPARE(coverImage().pixelColor(0, 0).alpha(), 0); // a rounded square
        QCOMPARE(rig.manager->artwork().width(), PreparedArtwork::pictureSize);

        deliverArt(QStringLiteral("B"), QStringLiteral("green"), Qt::green);
        deliverArt(QStringLiteral("C"), QStringLiteral("blue"), Qt::blue);
        QThreadPool::globalInstance()->waitForDone(); // both covers decoded, both results posted
        QCoreApplication::sendPostedEvents();
        QCOMPARE(coverImage().pixelColor(24, 24), QColor(Qt::blue));

        deliverArt(QStringLiteral("A"), QStringLiteral("red"), Qt::red);
        QCOMPARE(coverImage().pixelColor(24, 24), QColor(Qt::red)); // kept: no wait
    }

    void volumeGoesThroughTheScriptRunner()
    {
        QTemporaryDir dir;
        const QString osascript = test::writeScript(dir.filePath(QStringLiteral("osascript")),
                                                    "cat >> \"$(dirname \"$0\")/volume.log\"; echo >> "
                                                    "\"$(dirname \"$0\")/volume.log\"\n");
        Rig rig(nullptr, std::make_unique<ScriptedOutputVolume>(ScriptRunner(osascript)));
        rig.manager->setVolume(0.5);
        QTRY_COMPARE(rig.manager->volume(), 0.5);
        rig.manager->setVolume(1.7);
        QTRY_COMPARE(rig.manager->volume(), 1.0);
        QCOMPARE(test::readAll(dir.filePath(QStringLiteral("volume.log"))),
                 QByteArray("set volume output volume 50\nset volume output volume 100\n"));
    }

    void failedVolumeShowsANotice()
    {
        test::LogCapture log;
        QTemporaryDir dir;
        const QString osascript = test::writeScript(dir.filePath(QStringLiteral("osascript")), "exit 1\n");
        Rig rig(nullptr, std::make_unique<ScriptedOutputVolume>(ScriptRunner(osascript)));
        rig.manager->setVolume(0.3);
        QTRY_COMPARE(rig.manager->notice(), QStringLiteral("Couldn't change the volume."));
        QVERIFY(
            log.contains(QStringLiteral("Norva music: setting the volume failed (osascript exited with 1)")));
        rig.clock.advance(Seconds(MusicManager::noticeDuration));
        QVERIFY(rig.manager->notice().isEmpty());
    }

    void scrollingTurnsTheVolumeAndQuickNotchesAddUp()
    {
        auto owned = std::make_unique<FakeOutputVolume>();
        FakeOutputVolume& volume = *owned;
        Rig rig(nullptr, std::move(owned));
        QSignalSpy scrolled(rig.manager.get(), &MusicManager::volumeScrolled);
        rig.manager->scrollVolume(1); // from a guessed level the sound would jump
        QVERIFY(volume.asked.isEmpty());
        emit volume.changed(0.5, false); // what the sound server says at the start
        QCOMPARE(rig.manager->volume(), 0.5);

        // Two notches before the first has landed go on from where the first was going.
        rig.manager->scrollVolume(1);
        rig.manager->scrollVolume(1);
        QCOMPARE(volume.asked, (QList<double>{0.55, 0.6}));
        volume.landAll();
        QCOMPARE(rig.manager->volume(), 0.6);
        rig.manager->scrollVolume(-0.4); // a touchpad's part of a notch
        rig.manager->scrollVolume(-100);
        QCOMPARE(volume.asked.mid(2), (QList<double>{0.58, 0.0}));
        volume.landAll();
        QCOMPARE(rig.manager->volume(), 0.0);
        QCOMPARE(scrolled.size(), 4);
        QCOMPARE(scrolled.last().at(0).toDouble(), 0.0);

        // At the bottom a further notch down still shows the level but asks nothing.
        rig.manager->scrollVolume(-1);
        QCOMPARE(volume.asked.size(), 4);
        QCOMPARE(scrolled.size(), 5);

        rig.settings.write(false, MusicSettings::kScrollVolumeKey);
        rig.manager->scrollVolume(1);
        QCOMPARE(volume.asked.size(), 4);
        QCOMPARE(scrolled.size(), 5);
    }

    void aFailedScrollStartsAgainFromTheKnownLevel()
    {
        test::LogCapture log;
        auto owned = std::make_unique<FakeOutputVolume>();
        FakeOutputVolume& volume = *owned;
        Rig rig(nullptr, std::move(owned));
        emit volume.changed(0.5, false);
        rig.manager->scrollVolume(2);
        volume.landAll(QStringLiteral("pactl exited with 1"));
        QCOMPARE(rig.manager->volume(), 0.5);
        QCOMPARE(rig.manager->notice(), QStringLiteral("Couldn't change the volume."));
        QVERIFY(log.contains(QStringLiteral("Norva music: setting the volume failed (pactl exited with 1)")));
        rig.manager->scrollVolume(1);
        QCOMPARE(volume.asked.last(), 0.55);
    }

    void volumeChangesReachTheClosedNotch()
    {
        auto owned = std::make_unique<FakeOutputVolume>();
        FakeOutputVolume& volume = *owned;
        Rig rig(nullptr, std::move(owned));
        LiveActivityCoordinator coordinator(rig.clock);
        VolumeActivityPublisher publisher(*rig.manager, coordinator, rig.music);
        const auto shownLevel = [&coordinator]() -> std::optional<ActivityContent::Level> {
            const LiveActivity* shown = coordinator.find(VolumeActivity::id);
            if (!shown)
                return std::nullopt;
            return *shown->content.payload<ActivityContent::Level>();
        };

        rig.settings.write(true, MusicSettings::kVolumeChangesKey);
        emit volume.changed(0.5, false);
        QVERIFY2(!shownLevel(), "the first reading only learns the level");
        emit volume.changed(0.7, false);
        QCOMPARE(shownLevel(), (ActivityContent::Level{0.7, false}));
        emit volume.changed(0.7, true);
        QCOMPARE(shownLevel(), (ActivityContent::Level{0.7, true}));
        rig.clock.advance(Seconds(VolumeActivity::hold));
        QVERIFY2(!shownLevel(), "a volume change leaves by itself");

        rig.settings.write(false, MusicSettings::kVolumeChangesKey);
        emit volume.changed(0.2, false);
        QVERIFY(!shownLevel());
        // Scrolling over the notch always shows, at once, where the level is going.
        rig.manager->scrollVolume(1);
        QCOMPARE(shownLevel(), (ActivityContent::Level{0.25, false}));
    }

    void newTrackPrefetchesLyricsAndNothingPlayingClearsThem()
    {
        ManualClock lyricsClock;
        LyricsManager lyrics(lyricsClock);
        lyrics.setOffline(true); // no request leaves the test; the attempt is what counts
        Rig rig(&lyrics);
        rig.manager->start();
        rig.deliver(track(QStringLiteral("A"), true));
        QCOMPARE(lyrics.state(), LyricsManager::State::failed);
        rig.deliver(MediaSnapshot{});
        QCOMPARE(lyrics.state(), LyricsManager::State::idle);
    }

    void sourceAppNames_data()
    {
        QTest::addColumn<QString>("bundle");
        QTest::addColumn<QString>("name");
        using test::textRow;
        textRow("Spotify", {"com.spotify.client", "Spotify"});
        textRow("a browser", {"org.mozilla.firefox", "Firefox"});
        textRow("a desktop entry", {"rhythmbox", "Rhythmbox"});
        textRow("unknown reverse domain", {"org.example.tunes", "Tunes"});
        textRow("none", {"", ""});
    }
    void sourceAppNames()
    {
        QFETCH(QString, bundle);
        QTEST(MusicManager::appNameFor(bundle), "name");
    }
};

NORVA_TEST(MusicManagerTest)
#include "tst_MusicManager.moc"
