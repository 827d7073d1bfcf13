#include "MprisPlayerRig.h"
#include "TestMain.h"

#include "media/MediaRemoteAdapterBackend.h"
#include "media/MusicManager.h"

#include <QtTest>

using namespace norva;

// Norva's own producer against a real player: mpv with its MPRIS plugin on a private bus, read
// through the same adapter backend and manager that Norva runs.
class MprisProducerTest : public QObject {
    Q_OBJECT

private slots:
    void realPlayerShowsAndObeys()
    {
        if (!test::MprisPlayerRig::available())
            QSKIP("mpv with its MPRIS plugin is not installed");
        test::MprisPlayerRig player;
        QVERIFY(player.start());

        // The locator finds the producer in the build tree, as it finds it next to norva.
        const auto command = MediaRemoteAdapterBackend::Locator::locate();
        QVERIFY(command);
        QCOMPARE(QFileInfo(command->program).fileName(), QStringLiteral("norva-media"));

        MusicManager::Backends backends;
        backends.adapter = [&]() -> std::unique_ptr<MediaBackend> {
            return std::make_unique<MediaRemoteAdapterBackend>(systemClock(), *command);
        };
        MusicManager music(systemClock(), nullptr, backends);
        music.start();

        QTRY_COMPARE_WITH_TIMEOUT(music.title(), QStringLiteral("Norva Test Tone"), 15000);
        QVERIFY(music.songPeeking()); // the closed notch shows the new song for a moment
        QCOMPARE(music.artist(), QStringLiteral("Norva Band"));
        QTRY_VERIFY(music.isPlaying());
        QCOMPARE(music.durationSeconds(), double(test::MprisPlayerRig::seconds));
        QCOMPARE(music.sourceAppName(), QStringLiteral("mpv"));
        QTRY_VERIFY(!music.artwork().isNull());
        QCOMPARE(music.artwork().pixelColor(2, 2), QColor(Qt::red));
        QVERIFY(music.coverSource().startsWith(QStringLiteral("data:image/png;base64,")));
        QVERIFY(music.hasActiveSession());

        music.pause();
        QTRY_VERIFY_WITH_TIMEOUT(!music.isPlaying(), 5000);
        music.seek(5.0);
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(music.displayElapsedNow() - 5.0) < 0.3, 5000);
        const double pausedAt = music.displayElapsedNow();
        QTest::qWait(600);
        QCOMPARE(music.displayElapsedNow(), pausedAt); // paused stands still
        music.play();
        QTRY_VERIFY_WITH_TIMEOUT(music.isPlaying(), 5000);
        QTRY_VERIFY_WITH_TIMEOUT(music.displayElapsedNow() > pausedAt + 0.4, 5000);
        music.togglePlayPause();
        QTRY_VERIFY_WITH_TIMEOUT(!music.isPlaying(), 5000);

        // The player quitting leaves nothing playing.
        player.stopPlayer();
        QTRY_VERIFY_WITH_TIMEOUT(!music.hasTrack(), 5000);
        QVERIFY(music.artwork().isNull());
        QVERIFY(music.coverSource().isEmpty());
        QVERIFY(!music.songPeeking());
        music.stop();
    }
};

NORVA_TEST(MprisProducerTest)
#include "tst_MprisProducer.moc"
