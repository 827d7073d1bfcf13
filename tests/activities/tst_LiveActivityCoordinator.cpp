#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "activities/ActivityKinds.h"
#include "activities/ActivitySettings.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/SettingsStore.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using norva::test::LogCapture;
using norva::test::ManualClock;
using Kind = ActivityContent::Kind;

namespace {

LiveActivity lasting(const QString& id, int priority = 0, ActivityContent content = ActivityContent::timer())
{
    LiveActivity activity;
    activity.id = id;
    activity.priority = priority;
    activity.content = std::move(content);
    return activity;
}

LiveActivity download(const QString& id, double progress)
{
    LiveActivity activity =
        lasting(id, 0, ActivityContent::download(ActivityContent::DownloadState::running));
    activity.text.progress = progress;
    return activity;
}

LiveActivity volumeChange(double level, double hold)
{
    LiveActivity activity = lasting(QStringLiteral("volume"), 50, ActivityContent::volume({level, false}));
    activity.hold = hold;
    return activity;
}

QStringList ids(const LiveActivityCoordinator& coordinator)
{
    QStringList list;
    for (const LiveActivity& activity : coordinator.activities())
        list << activity.id;
    return list;
}

// A coordinator following a settings store over in-memory preferences, on a manual clock.
struct Rig {
    ManualClock clock;
    test::MemoryPreferences preferences;
    SettingsStore settings{preferences};
    ActivitySettings switches{settings};
    LiveActivityCoordinator coordinator{clock};
    Rig() { coordinator.follow(settings); }
};

} // namespace

// The coordinator's list, switches, holds and rotation, driven by a manual clock.
class LiveActivityCoordinatorTest : public QObject {
    Q_OBJECT
private slots:
    void upsertOfAKnownIdKeepsItsPlaceAndTakesTheNewContent()
    {
        Rig rig;
        QSignalSpy changed(&rig.coordinator, &LiveActivityCoordinator::activitiesChanged);
        rig.coordinator.upsert(download(QStringLiteral("dl-1"), 0.1));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        rig.coordinator.upsert(download(QStringLiteral("dl-1"), 0.7));
        QCOMPARE(ids(rig.coordinator), QStringList({"dl-1", "timer"}));
        QCOMPARE(rig.coordinator.find("dl-1")->text.progress, std::optional<double>(0.7));
        QCOMPARE(changed.count(), 3); // once per change
    }

    // One row per kind of the kinds' table: its word names it, the face can draw it, and its
    // switch, where it has one, is the one stored key that keeps it off the notch.
    void everyKindHasAWordALookAndItsOwnSwitch_data()
    {
        QTest::addColumn<int>("kind");
        for (const ActivityKind& row : ActivityKinds::table)
            QTest::newRow(row.word) << int(row.kind);
    }
    void everyKindHasAWordALookAndItsOwnSwitch()
    {
        QFETCH(int, kind);
        const ActivityKind& row = ActivityKinds::of(Kind(kind));
        const QString word = ActivityContent::kindWord(Kind(kind));
        QVERIFY(!word.isEmpty());
        QCOMPARE(ActivityContent::kindFromWord(word), std::optional<Kind>(Kind(kind)));
        QVERIFY(!ActivityContent::kindFromWord(word.toUpper()));
        const QString drawn = QString::fromLatin1(row.look.drawn);
        QVERIFY(QStringList({"character", "dot", "bars"}).contains(drawn));
        QVERIFY(drawn == QLatin1String("bars") || !QString::fromUtf8(row.look.glyph).isEmpty());
        QVERIFY(
            QStringList({"accent", "good", "warn", "bad", "neutral"}).contains(QLatin1String(row.look.tone)));
        Rig rig;
        QVERIFY(rig.coordinator.allows(Kind(kind))); // every switch defaults to on
        // Every switch off: only a kind that has a switch is refused, and its own switch lets it back.
        for (const QString& which : ActivitySettings::switchWords())
            rig.switches.setOn(which, false);
        QCOMPARE(rig.coordinator.allows(Kind(kind)), row.switchWord == nullptr);
        if (row.switchWord) {
            const QString key = ActivitySettings::keyFor(QString::fromLatin1(row.switchWord));
            rig.settings.write(true, key);
            QVERIFY(rig.coordinator.allows(Kind(kind)));
        }
    }

    void theSwitchesAreTheSevenStoredKeysAndOnlyTheyWakeThem()
    {
        QStringList keys;
        for (const QString& word : ActivitySettings::switchWords())
            keys << ActivitySettings::keyFor(word);
        keys.sort();
        QCOMPARE(keys,
                 QStringList({"activities.charging.v1", "activities.devices.v1", "activities.downloads.v1",
                              "activities.meetings.v1", "activities.reminders.v1", "activities.timers.v1",
                              "activities.volume.v1"}));
        // An edit outside Norva switches a kind off at once; other preferences leave the switches be.
        Rig rig;
        QSignalSpy woken(&rig.switches, &ActivitySettings::switchesChanged);
        rig.preferences.outsideChange(QStringLiteral("openOnHover"), false);
        rig.preferences.outsideChange(QStringLiteral("activities.timers.v1"), false);
        QTRY_COMPARE(woken.size(), 1);
        QVERIFY(!rig.coordinator.allows(Kind::timer));
    }

    void turningOffTheDownloadsSwitchParksADownloadAndBringsBackItsLatestState()
    {
        Rig rig;
        LogCapture log;
        rig.coordinator.upsert(download(QStringLiteral("dl-7"), 0.2));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));

        rig.switches.setOn(QStringLiteral("downloads"), false);
        QCOMPARE(ids(rig.coordinator), QStringList({"timer"}));
        QVERIFY(rig.coordinator.isParked("dl-7"));
        // The producer keeps publishing while the switch is off: the parked copy follows it.
        rig.coordinator.upsert(download(QStringLiteral("dl-7"), 0.5));
        rig.coordinator.upsert(download(QStringLiteral("dl-7"), 0.9));
        QCOMPARE(ids(rig.coordinator), QStringList({"timer"}));

        rig.switches.setOn(QStringLiteral("downloads"), true);
        QCOMPARE(ids(rig.coordinator), QStringList({"timer", "dl-7"}));
        QCOMPARE(rig.coordinator.find("dl-7")->text.progress, std::optional<double>(0.9));
        QVERIFY(!rig.coordinator.isParked("dl-7"));
        QCOMPARE(log.lines(),
                 QStringList({"Norva activities: dl-7 left the notch (its switch in Settings > Live "
                              "activities is off)",
                              "Norva activities: dl-7 came back onto the notch (its switch in Settings > "
                              "Live activities is on)"}));
    }

    void aRefusedActivityIsLoggedOncePerIdUntilItIsAdmitted()
    {
        Rig rig;
        rig.switches.setOn(QStringLiteral("timers"), false);
        LogCapture log;
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        rig.coordinator.upsert(lasting(QStringLiteral("timer-2")));
        QCOMPARE(log.lines(), QStringList({"Norva activities: timer stays off the notch (its switch in "
                                           "Settings > Live activities is off)",
                                           "Norva activities: timer-2 stays off the notch (its switch in "
                                           "Settings > Live activities is off)"}));
        QVERIFY(rig.coordinator.activities().isEmpty());
        QVERIFY(rig.coordinator.isRefused("timer"));
        rig.switches.setOn(QStringLiteral("timers"), true); // both come back
        QCOMPARE(ids(rig.coordinator), QStringList({"timer", "timer-2"}));
        rig.switches.setOn(QStringLiteral("timers"), false);
        QCOMPARE(log.count("timer-2 left the notch"), 1);
        rig.coordinator.remove(QStringLiteral("timer-2"));
        QVERIFY(!rig.coordinator.isParked("timer-2"));
        // Its leaving already told why: a refused update of the same id says nothing more.
        rig.coordinator.upsert(lasting(QStringLiteral("timer-2")));
        QCOMPARE(log.count("timer-2 stays off the notch"), 1);
        QVERIFY(rig.coordinator.isParked("timer-2"));
    }

    void followingAStoreWithASwitchOffParksWhatIsAlreadyLive()
    {
        ManualClock clock;
        test::MemoryPreferences preferences;
        SettingsStore settings(preferences);
        ActivitySettings(settings).setOn(QStringLiteral("meetings"), false);
        LiveActivityCoordinator coordinator(clock);
        coordinator.upsert(lasting(QStringLiteral("meeting"), 0, ActivityContent::meeting()));
        QCOMPARE(ids(coordinator), QStringList({"meeting"})); // no store followed yet: all allowed
        LogCapture log;
        coordinator.follow(settings);
        QVERIFY(coordinator.activities().isEmpty());
        QVERIFY(coordinator.isParked("meeting"));
        QCOMPARE(log.lines(),
                 QStringList({"Norva activities: meeting left the notch (its switch in Settings > "
                              "Live activities is off)"}));
    }

    // A toast shows for a moment only, so it is never parked: published with its switch off, caught
    // by the switch going off, or a parked activity turning into one, it is gone when the switch is on.
    void aToastIsNeverParked_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("published with its switch off") << "off, toast";
        QTest::newRow("its switch goes off while it shows") << "toast, off";
        QTest::newRow("a parked download finishes") << "off, lasting, toast";
    }
    void aToastIsNeverParked()
    {
        QFETCH(QString, steps);
        Rig rig;
        for (const QString& step : steps.split(QStringLiteral(", "))) {
            LiveActivity finished = download(QStringLiteral("dl"), 1.0);
            if (step == QLatin1String("toast"))
                finished.hold = 3.0;
            if (step == QLatin1String("off"))
                rig.switches.setOn(QStringLiteral("downloads"), false);
            else
                rig.coordinator.upsert(finished);
        }
        QVERIFY(!rig.coordinator.isParked("dl"));
        QVERIFY(!rig.coordinator.holdRemaining("dl"));
        rig.switches.setOn(QStringLiteral("downloads"), true);
        QVERIFY(rig.coordinator.activities().isEmpty());
    }

    void removingForgetsAParkedCopyUnlessAskedToKeepIt()
    {
        Rig rig;
        rig.coordinator.upsert(download(QStringLiteral("a"), 0.1));
        rig.coordinator.upsert(download(QStringLiteral("b"), 0.1));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        rig.switches.setOn(QStringLiteral("downloads"), false);
        QSignalSpy changed(&rig.coordinator, &LiveActivityCoordinator::activitiesChanged);
        LogCapture log;
        rig.coordinator.remove(QStringLiteral("a")); // the download finished meanwhile
        rig.coordinator.remove(QStringLiteral("b"), /*keepingParked*/ true);
        rig.coordinator.remove(QStringLiteral("nobody"));
        QCOMPARE(changed.count(), 0); // none was live: nothing to publish, nothing to say
        QVERIFY(log.lines().isEmpty());
        rig.switches.setOn(QStringLiteral("downloads"), true);
        QCOMPARE(ids(rig.coordinator), QStringList({"timer", "b"}));
    }

    // A toast's hold, step by step: "toast 2" publishes the volume toast held for 2 s, "lasting" the
    // same without a hold, "wait 1.5" lets the clock run, and "pause", "resume", "resumeAfterGrace",
    // "remove" do what the coordinator's calls of those names do. After the steps the toast has
    // leavesAfter seconds left to show (infinity: it stays).
    void aToastsHoldRunsFromItsLatestPublish_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<double>("leavesAfter");
        const double stays = qInf();
        QTest::newRow("it leaves when its hold runs out") << "toast 1.5" << 1.5;
        QTest::newRow("publishing again restarts the hold from the new value")
            << "toast 2, wait 1.5, toast 3" << 3.0;
        QTest::newRow("an update without a hold makes it lasting") << "toast 1, lasting" << stays;
        QTest::newRow("a replaced hold does not end the new toast")
            << "toast 1, wait 0.5, remove, toast 2" << 2.0;
        QTest::newRow("a negative hold ends at once") << "toast -3" << 0.0;
        QTest::newRow("published while paused, it waits for the resume")
            << "pause, toast 1, wait 5, resume" << 1.0;
        QTest::newRow("coming back within the grace keeps it paused")
            << "toast 1, pause, resumeAfterGrace, wait 0.5, pause" << stays;
    }
    void aToastsHoldRunsFromItsLatestPublish()
    {
        QFETCH(QString, steps);
        QFETCH(double, leavesAfter);
        Rig rig;
        for (const QString& step : steps.split(QStringLiteral(", "))) {
            const QString verb = step.section(QLatin1Char(' '), 0, 0);
            const double number = step.section(QLatin1Char(' '), 1).toDouble();
            if (verb == QLatin1String("toast") || verb == QLatin1String("lasting")) {
                LiveActivity toast = volumeChange(0.4, number);
                if (verb == QLatin1String("lasting"))
                    toast.hold.reset();
                rig.coordinator.upsert(toast);
            } else if (verb == QLatin1String("wait"))
                rig.clock.advance(Seconds(number));
            else if (verb == QLatin1String("remove"))
                rig.coordinator.remove(QStringLiteral("volume"));
            else if (verb == QLatin1String("pause"))
                rig.coordinator.pauseHolds();
            else if (verb == QLatin1String("resume"))
                rig.coordinator.resumeHolds();
            else if (verb == QLatin1String("resumeAfterGrace"))
                rig.coordinator.resumeHoldsAfterGrace();
            else
                QFAIL(qPrintable(QStringLiteral("unknown step ") + step));
        }
        if (qIsInf(leavesAfter)) {
            rig.clock.advance(Seconds(60));
            QVERIFY(rig.coordinator.find("volume"));
            return;
        }
        QCOMPARE(*rig.coordinator.holdRemaining("volume"), leavesAfter);
        if (leavesAfter > 0) {
            rig.clock.advance(Seconds(leavesAfter - 0.01));
            QVERIFY(rig.coordinator.find("volume"));
        }
        rig.clock.advance(Seconds(qMin(leavesAfter, 0.01)));
        QVERIFY(!rig.coordinator.find("volume"));
        QVERIFY(!rig.coordinator.holdRemaining("volume"));
    }

    void pausedHoldsKeepToastsAndResumeWithWhatWasLeftAfterTheGrace()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        rig.coordinator.upsert(volumeChange(0.4, 2.0));
        rig.clock.advance(Seconds(0.5));
        rig.coordinator.pauseHolds();
        QVERIFY(!rig.coordinator.isRotating());
        QSignalSpy rotated(&rig.coordinator, &LiveActivityCoordinator::rotated);
        rig.clock.advance(Seconds(30));
        QVERIFY(rig.coordinator.find("volume"));
        QCOMPARE(rotated.count(), 0);
        QCOMPARE(*rig.coordinator.holdRemaining("volume"), 1.5);

        rig.coordinator.resumeHoldsAfterGrace();
        rig.clock.advance(Seconds(0.89));
        QVERIFY(rig.coordinator.holdsPaused());
        QCOMPARE(*rig.coordinator.holdRemaining("volume"), 1.5);
        rig.clock.advance(Seconds(0.01));
        QVERIFY(!rig.coordinator.holdsPaused());
        QVERIFY(rig.coordinator.isRotating());
        rig.clock.advance(Seconds(1.49));
        QVERIFY(rig.coordinator.find("volume"));
        rig.clock.advance(Seconds(0.01));
        QVERIFY(!rig.coordinator.find("volume"));
    }

    void twoActivitiesTakeTurnsEveryFourSeconds()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        QVERIFY(!rig.coordinator.isRotating()); // one activity: nothing to rotate
        rig.coordinator.upsert(download(QStringLiteral("dl"), 0.3));
        QVERIFY(rig.coordinator.isRotating());
        QSignalSpy rotated(&rig.coordinator, &LiveActivityCoordinator::rotated);
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("timer"));
        rig.clock.advance(Seconds(3.99));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("timer"));
        rig.clock.advance(Seconds(0.01));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("dl"));
        rig.clock.advance(Seconds(4));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("timer"));
        QCOMPARE(rotated.count(), 2);
        rig.coordinator.remove(QStringLiteral("dl"));
        QVERIFY(!rig.coordinator.isRotating());
    }

    void progressUpdatesDoNotHoldBackTheRotation()
    {
        Rig rig;
        rig.coordinator.upsert(download(QStringLiteral("dl"), 0.0));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        for (int second = 1; second <= 4; ++second) {
            rig.clock.advance(Seconds(1));
            rig.coordinator.upsert(download(QStringLiteral("dl"), second / 10.0));
        }
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("timer"));
    }

    void aPinnedActivityIsNotRotatedAway()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        LiveActivity prompt = lasting(QStringLiteral("agent-1"), -5, ActivityContent::agentPrompt());
        prompt.pinned = true;
        rig.coordinator.upsert(prompt);
        QVERIFY(!rig.coordinator.isRotating());
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("agent-1")); // pinned wins over priority
        rig.clock.advance(Seconds(20));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("agent-1"));
        prompt.pinned = false;
        rig.coordinator.upsert(prompt);
        QVERIFY(rig.coordinator.isRotating());
    }

    void theHighestPriorityShowsAndOnlyItsEqualsTakeTurns()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("low"), 1));
        rig.coordinator.upsert(lasting(QStringLiteral("high-a"), 9));
        rig.coordinator.upsert(lasting(QStringLiteral("mid"), 5));
        rig.coordinator.upsert(lasting(QStringLiteral("high-b"), 9));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("high-a"));
        QStringList seen;
        for (int turn = 0; turn < 4; ++turn) {
            rig.clock.advance(LiveActivityCoordinator::kRotationInterval);
            seen << *rig.coordinator.shownId();
        }
        QCOMPARE(seen, QStringList({"high-b", "high-a", "high-b", "high-a"}));
    }

    void anActivityLeavingBeforeTheShownOneKeepsTheShownOne()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("a")));
        rig.coordinator.upsert(lasting(QStringLiteral("b")));
        rig.coordinator.upsert(lasting(QStringLiteral("c")));
        rig.clock.advance(Seconds(8)); // a -> b -> c
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("c"));
        rig.coordinator.remove(QStringLiteral("a"));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("c"));
        rig.coordinator.remove(QStringLiteral("c")); // the shown one leaves: the next is first
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("b"));
    }

    // A promote that cannot be done says why and leaves the shown activity and the rotation's rhythm.
    void aPromoteThatCannotBeDoneChangesNothing_data()
    {
        QTest::addColumn<bool>("pinned");
        QTest::addColumn<QString>("promoted");
        QTest::addColumn<QString>("why");
        QTest::newRow("unknown id") << false << "ghost"
                                    << QStringLiteral("ghost did nothing (it is not live)");
        QTest::newRow("a pinned activity owns the body")
            << true << "b" << QStringLiteral("b did nothing (a is pinned and owns the body)");
    }
    void aPromoteThatCannotBeDoneChangesNothing()
    {
        QFETCH(bool, pinned);
        QFETCH(QString, promoted);
        QFETCH(QString, why);
        Rig rig;
        LiveActivity first = lasting(QStringLiteral("a"));
        first.pinned = pinned;
        rig.coordinator.upsert(first);
        rig.coordinator.upsert(lasting(QStringLiteral("b")));
        rig.clock.advance(Seconds(1));
        LogCapture log;
        QSignalSpy rotated(&rig.coordinator, &LiveActivityCoordinator::rotated);
        QVERIFY(!rig.coordinator.promote(promoted));
        QCOMPARE(log.lines(), QStringList{QStringLiteral("Norva activities: promote ") + why});
        QCOMPARE(rotated.count(), 0);
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("a"));
        rig.clock.advance(Seconds(3)); // the rotation kept its rhythm
        QCOMPARE(*rig.coordinator.shownId(), pinned ? QStringLiteral("a") : QStringLiteral("b"));
        QVERIFY(rig.coordinator.promote(QStringLiteral("a"))); // promoting the shown one is fine
    }

    void aPromotedActivityShowsForAWholeTurnEvenBelowTheTopPriority()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("a"), 5));
        rig.coordinator.upsert(lasting(QStringLiteral("b"), 5));
        rig.coordinator.upsert(lasting(QStringLiteral("low"), 0));
        rig.clock.advance(Seconds(3));
        QSignalSpy rotated(&rig.coordinator, &LiveActivityCoordinator::rotated);
        QVERIFY(rig.coordinator.promote(QStringLiteral("low")));
        QCOMPARE(rotated.count(), 1);
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("low"));
        rig.clock.advance(Seconds(3.9)); // the old rhythm would have turned at 1 s
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("low"));
        rig.clock.advance(Seconds(0.1));
        QCOMPARE(*rig.coordinator.shownId(), QStringLiteral("a"));
    }

    void performReportsWhyAnActionDidNothing()
    {
        Rig rig;
        rig.coordinator.upsert(lasting(QStringLiteral("agent-1"), 0, ActivityContent::agentPrompt()));
        rig.coordinator.upsert(lasting(QStringLiteral("timer")));
        QStringList answered;
        rig.coordinator.addProvider({Kind::agentPrompt}, [&](const QString& action, const LiveActivity& a) {
            if (action != QLatin1String("allow"))
                return false;
            answered << a.id;
            rig.coordinator.remove(a.id); // answering takes the card away
            return true;
        });
        LogCapture log;
        QCOMPARE(rig.coordinator.perform(QStringLiteral("allow"), QStringLiteral("agent-1")),
                 LiveActivityCoordinator::Outcome::done);
        QCOMPARE(answered, QStringList({"agent-1"}));
        QCOMPARE(rig.coordinator.perform(QStringLiteral("allow"), QStringLiteral("agent-1")),
                 LiveActivityCoordinator::Outcome::notLive);
        QCOMPARE(rig.coordinator.perform(QStringLiteral("pause"), QStringLiteral("timer")),
                 LiveActivityCoordinator::Outcome::unanswered);
        QCOMPARE(log.lines(),
                 QStringList({"Norva activities: allow on agent-1 did nothing (the activity already left "
                              "the notch)",
                              "Norva activities: pause on timer did nothing (no provider answers it)"}));
    }

    void urgentTabFollowsTheMostImportantActivityThatWantsAPage()
    {
        Rig rig;
        QSignalSpy urgent(&rig.coordinator, &LiveActivityCoordinator::urgentTabChanged);
        rig.coordinator.upsert(lasting(QStringLiteral("timer"), 10));
        QVERIFY(!rig.coordinator.urgentTab());
        LiveActivity shelf = lasting(QStringLiteral("shelf"), 1, ActivityContent::shelf());
        shelf.urgentTab = QStringLiteral("shelf");
        rig.coordinator.upsert(shelf);
        LiveActivity prompt = lasting(QStringLiteral("agent-1"), 5, ActivityContent::agentPrompt());
        prompt.urgentTab = QStringLiteral("agents");
        rig.coordinator.upsert(prompt);
        QCOMPARE(*rig.coordinator.urgentTab(), QStringLiteral("agents"));
        rig.coordinator.upsert(prompt); // same answer: no second signal
        QCOMPARE(urgent.count(), 2);
        rig.coordinator.remove(QStringLiteral("agent-1"));
        QCOMPARE(*rig.coordinator.urgentTab(), QStringLiteral("shelf"));
    }

    void layoutGivesTheEars_data()
    {
        QTest::addColumn<bool>("withActivity");
        QTest::addColumn<bool>("transient");
        QTest::addColumn<bool>("music");
        QTest::addColumn<QString>("musicLeft");
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("right");
        using P = Ear::Piece;
        QTest::newRow("nothing") << false << false << false << "artAndRing" << int(P::nothing)
                                 << int(P::nothing);
        QTest::newRow("music alone") << false << false << true << "artAndRing" << int(P::music)
                                     << int(P::music);
        QTest::newRow("music without left ear")
            << false << false << true << "none" << int(P::nothing) << int(P::music);
        QTest::newRow("activity alone")
            << true << false << false << "artAndRing" << int(P::activityMark) << int(P::activityValue);
        QTest::newRow("activity beside music")
            << true << false << true << "artAndRing" << int(P::music) << int(P::activityValue);
        QTest::newRow("toast over music")
            << true << true << true << "artAndRing" << int(P::activityMark) << int(P::activityValue);
        QTest::newRow("music left ear off")
            << true << false << true << "none" << int(P::activityMark) << int(P::activityValue);
    }
    void layoutGivesTheEars()
    {
        QFETCH(bool, withActivity);
        QFETCH(bool, transient);
        QFETCH(bool, music);
        QFETCH(QString, musicLeft);
        QFETCH(int, left);
        Rig rig;
        if (withActivity)
            rig.coordinator.upsert(transient ? volumeChange(0.3, 2) : lasting(QStringLiteral("timer")));
        const ClosedLayout face =
            rig.coordinator.layout(music, ClosedPrefs{musicLeft, QStringLiteral("equaliser")});
        QCOMPARE(int(face.left.piece), left);
        QTEST(int(face.right.piece), "right");
        QCOMPARE(face.shown.has_value(), withActivity);
        if (face.left.piece == Ear::Piece::music)
            QCOMPARE(face.left.music, musicLeft);
    }
};
NORVA_TEST(LiveActivityCoordinatorTest)
#include "tst_LiveActivityCoordinator.moc"
