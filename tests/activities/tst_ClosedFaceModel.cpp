#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "activities/ActivityKinds.h"
#include "activities/ClosedFaceModel.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;
using Kind = ActivityContent::Kind;

namespace {

LiveActivity make(const QString& id, ActivityContent content, int priority = 0)
{
    LiveActivity activity;
    activity.id = id;
    activity.priority = priority;
    activity.content = std::move(content);
    return activity;
}

struct FaceRig {
    ManualClock clock;
    test::MemoryPreferences preferences;
    SettingsStore settings{preferences};
    LiveActivityCoordinator coordinator{clock};
    ClosedFaceModel face{coordinator};
    FaceRig()
    {
        coordinator.follow(settings);
        face.follow(settings);
    }
};

} // namespace

Q_DECLARE_METATYPE(norva::ActivityContent)

// The closed face's model: what it hands the QML and what the person's pointer and clicks do.
class ClosedFaceModelTest : public QObject {
    Q_OBJECT
private slots:
    void symbolsAndTonesFollowThePayload_data()
    {
        using D = ActivityContent::DownloadState;
        QTest::addColumn<ActivityContent>("content");
        QTest::addColumn<QString>("look"); // the symbol and the tone
        QTest::newRow("download running") << ActivityContent::download(D::running) << "download accent";
        QTest::newRow("download paused") << ActivityContent::download(D::paused) << "downloadPaused accent";
        QTest::newRow("download finished") << ActivityContent::download(D::finished) << "downloadDone good";
        QTest::newRow("volume") << ActivityContent::volume({0.5, false}) << "volume neutral";
        QTest::newRow("volume muted") << ActivityContent::volume({0.5, true}) << "volumeMuted neutral";
        QTest::newRow("volume at zero") << ActivityContent::volume({0.0, false}) << "volumeMuted neutral";
        QTest::newRow("on battery") << ActivityContent::charging({40, false}) << "battery good";
        QTest::newRow("charging") << ActivityContent::charging({40, true}) << "charging good";
        QTest::newRow("device low") << ActivityContent::device(ActivityContent::DeviceEvent::low)
                                    << "battery warn";
        QTest::newRow("agent prompt") << ActivityContent::agentPrompt() << "agentPrompt warn";
        QTest::newRow("agent runs") << ActivityContent::agentWorking(ActivityContent::AgentStep::run)
                                    << "agentRun accent";
        QTest::newRow("recording") << ActivityContent::screenRecording() << "recording bad";
    }
    void symbolsAndTonesFollowThePayload()
    {
        QFETCH(ActivityContent, content);
        const ActivityLook drawn = ActivityKinds::lookOf(content);
        QTEST(QString::fromLatin1(drawn.symbol) + QLatin1Char(' ') + QLatin1String(drawn.tone), "look");
    }

    void levelsAndBatteriesShowTheirOwnNumbersWhenTheProducerGaveNone()
    {
        FaceRig rig;
        rig.coordinator.upsert(make("volume", ActivityContent::volume({0.404, false})));
        QCOMPARE(rig.face.value(), QStringLiteral("40%"));
        QCOMPARE(rig.face.progress(), 0.404);
        rig.coordinator.upsert(make("volume", ActivityContent::volume({0.8, true})));
        QCOMPARE(rig.face.value(), QStringLiteral("0%")); // muted reads as silent
        LiveActivity battery = make("charging", ActivityContent::charging({73, true}));
        battery.priority = 1;
        rig.coordinator.upsert(battery);
        QCOMPARE(rig.face.value(), QStringLiteral("73%"));
        battery.text.value = QStringLiteral("Full at 14:10");
        rig.coordinator.upsert(battery);
        QCOMPARE(rig.face.value(), QStringLiteral("Full at 14:10"));
    }

    void theFaceChangesOnlyWhenWhatItDrawsChanges()
    {
        FaceRig rig;
        QSignalSpy changed(&rig.face, &ClosedFaceModel::changed);
        LiveActivity timer = make("timer", ActivityContent::timer());
        timer.text.value = QStringLiteral("24:59");
        rig.coordinator.upsert(timer);
        rig.coordinator.upsert(timer);
        QCOMPARE(changed.count(), 1);
        QVERIFY(rig.face.active());
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("mark"));
        QCOMPARE(rig.face.rightPiece(), QStringLiteral("value"));
        QCOMPARE(rig.face.controls(), QStringLiteral("timer")); // its detail pauses and stops it
        rig.coordinator.remove(QStringLiteral("timer"));
        QCOMPARE(changed.count(), 2);
        QVERIFY(!rig.face.active());
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("nothing"));
    }

    void thePointerOverTheNotchKeepsAToastUntilAfterTheGrace()
    {
        FaceRig rig;
        LiveActivity volume = make("volume", ActivityContent::volume({0.5, false}));
        volume.hold = 1.0;
        rig.coordinator.upsert(volume);
        rig.clock.advance(Seconds(0.4));
        rig.face.setPointerInside(true);
        rig.clock.advance(Seconds(20));
        QVERIFY(rig.face.active());
        rig.face.setPointerInside(false);
        rig.clock.advance(LiveActivityCoordinator::kHoldGrace + Seconds(0.59));
        QVERIFY(rig.face.active());
        rig.clock.advance(Seconds(0.01));
        QVERIFY(!rig.face.active());
    }

    void thePointerStopsTheRotationItIsLookingAt()
    {
        FaceRig rig;
        rig.coordinator.upsert(make("a", ActivityContent::timer()));
        rig.coordinator.upsert(make("b", ActivityContent::download(ActivityContent::DownloadState::running)));
        QVERIFY(rig.face.rotating());
        rig.face.setPointerInside(true);
        QVERIFY(!rig.face.rotating());
        rig.clock.advance(Seconds(12));
        QCOMPARE(rig.face.activityId(), QStringLiteral("a"));
        rig.face.setPointerInside(false);
        rig.clock.advance(LiveActivityCoordinator::kHoldGrace);
        QVERIFY(rig.face.rotating());
        rig.clock.advance(LiveActivityCoordinator::kRotationInterval);
        QCOMPARE(rig.face.activityId(), QStringLiteral("b"));
    }

    void aClickRunsTheActivityOrOpensItsPage()
    {
        FaceRig rig;
        QSignalSpy open(&rig.face, &ClosedFaceModel::openRequested);
        QSignalSpy urgent(&rig.face, &ClosedFaceModel::urgentPageWanted);
        QVERIFY(!rig.face.tap()); // nothing live
        int taps = 0;
        LiveActivity timer = make("timer", ActivityContent::timer(), 5);
        timer.onTap = [&] { ++taps; };
        rig.coordinator.upsert(timer);
        QVERIFY(rig.face.tap());
        QCOMPARE(taps, 1);
        QCOMPARE(open.count(), 0);
        LiveActivity shelf = make("shelf", ActivityContent::shelf(), 9);
        shelf.urgentTab = QStringLiteral("shelf");
        rig.coordinator.upsert(shelf); // an urgent page opens the notch on it at once, unclicked
        QCOMPARE(urgent.count(), 1);
        QCOMPARE(urgent.last().at(0).toString(), QStringLiteral("shelf"));
        QCOMPARE(open.count(), 0);
        QVERIFY(rig.face.tap());
        QCOMPARE(open.count(), 1);
        QCOMPARE(open.last().at(0).toString(), QStringLiteral("shelf"));
        QCOMPARE(urgent.count(), 1);
    }

    void anActionFromTheFaceReachesTheShownActivitysProducer()
    {
        FaceRig rig;
        QStringList heard;
        rig.coordinator.addProvider({Kind::agentPrompt}, [&](const QString& action, const LiveActivity& a) {
            heard << action + QLatin1Char(' ') + a.id;
            return true;
        });
        QVERIFY(!rig.face.perform(QStringLiteral("allow"))); // nothing shown
        rig.coordinator.upsert(make("agent-3", ActivityContent::agentPrompt()));
        QVERIFY(rig.face.perform(QStringLiteral("allow")));
        rig.coordinator.upsert(make("timer", ActivityContent::timer(), 9));
        QVERIFY(!rig.face.perform(QStringLiteral("allow"))); // the timer's producer answers nothing
        QCOMPARE(heard, QStringList({"allow agent-3"}));
    }

    void anOpenDetailClosesWhenAnotherActivityShows()
    {
        FaceRig rig;
        LiveActivity timer = make("timer", ActivityContent::timer());
        timer.text.detail = QStringLiteral("Round 2 of 4");
        rig.coordinator.upsert(timer);
        rig.coordinator.upsert(make("plain", ActivityContent::shelf()));
        rig.face.setDetailOpen(true);
        QVERIFY(rig.face.detailOpen());
        rig.clock.advance(LiveActivityCoordinator::kRotationInterval);
        QCOMPARE(rig.face.activityId(), QStringLiteral("plain"));
        QVERIFY(!rig.face.detailOpen());
        rig.face.setDetailOpen(true); // nothing to expand on this one
        QVERIFY(!rig.face.detailOpen());
    }

    void musicEarsFollowThePreferences()
    {
        FaceRig rig;
        rig.face.setMusicPlaying(true);
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("music"));
        QCOMPARE(rig.face.musicLeft(), QStringLiteral("artAndRing"));
        rig.coordinator.upsert(make("timer", ActivityContent::timer()));
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("music"));
        QCOMPARE(rig.face.rightPiece(), QStringLiteral("value"));
        rig.settings.write(QStringLiteral("none"), SettingsKeys::musicLeft);
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("mark"));
        rig.coordinator.remove(QStringLiteral("timer"));
        QCOMPARE(rig.face.leftPiece(), QStringLiteral("nothing"));
        QCOMPARE(rig.face.musicRight(), QStringLiteral("equaliser"));
    }
};
NORVA_TEST(ClosedFaceModelTest)
#include "tst_ClosedFaceModel.moc"
