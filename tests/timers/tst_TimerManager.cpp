#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "timers/FocusRounds.h"
#include "timers/TimerManager.h"
#include "timers/TimerSound.h"

#include <QFile>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;
using Phase = FocusRounds::Phase;

namespace {

struct CountingSound final : TimerSound {
    int plays = 0;
    void playCompletion() override { ++plays; }
};

// One Norva's worth of timer: restarting() makes a fresh manager over the same files and clock.
struct TimerRig {
    QTemporaryDir folder;
    ManualClock clock;
    test::MemoryPreferences preferences;
    SettingsStore settings{preferences};
    LiveActivityCoordinator coordinator{clock};
    CountingSound sound;
    std::unique_ptr<TimerManager> timer;

    TimerRig() { restart(); }
    QString stateFile() const { return folder.filePath(QStringLiteral("timer.json")); }
    void restart()
    {
        timer.reset();
        timer = std::make_unique<TimerManager>(clock, coordinator, sound, stateFile(), &settings);
        timer->restore();
    }
    const LiveActivity* live() const { return coordinator.find(TimerManager::activityId); }
};

} // namespace

class TimerManagerTest : public QObject {
    Q_OBJECT
private slots:
    void nextTextsSayWhatComes_data()
    {
        QTest::addColumn<int>("phase");
        QTest::addColumn<int>("rounds");
        QTest::addColumn<QString>("text");
        QTest::newRow("in round 1") << int(Phase::work) << 0 << "Then focus, round 2";
        QTest::newRow("in round 4") << int(Phase::work) << 3 << "Then a fresh cycle, round 1 of 4";
        QTest::newRow("short break after round 2") << int(Phase::shortBreak) << 2 << "Then focus, round 3";
        QTest::newRow("long break") << int(Phase::longBreak) << 4 << "Then a fresh cycle, round 1 of 4";
    }
    void nextTextsSayWhatComes()
    {
        QFETCH(int, phase);
        QFETCH(int, rounds);
        QTEST(FocusRounds::nextText(Phase(phase), rounds), "text");
    }

    // The rhythm of focus rounds: three short breaks, a long one after the fourth round, and a fresh
    // cycle that clears the targets.
    void fourWorkRoundsEndInALongBreakAndAFreshCycle()
    {
        TimerRig rig;
        rig.timer->startFocus();
        rig.timer->addFocusTarget(QStringLiteral("Write the report"));
        QList<QPair<QString, int>> seen;
        for (int i = 0; i < 8; ++i) {
            rig.clock.advance(Seconds(rig.timer->state()->length));
            seen << qMakePair(rig.timer->phaseWord(), rig.timer->completedRounds());
        }
        const QList<QPair<QString, int>> expected = {
            {"shortBreak", 1}, {"work", 1}, {"shortBreak", 2}, {"work", 2},
            {"shortBreak", 3}, {"work", 3}, {"longBreak", 4},  {"work", 0},
        };
        QCOMPARE(seen, expected);
        QCOMPARE(rig.sound.plays, 8);
        QVERIFY(rig.timer->focusTargets().isEmpty()); // the long break ended the cycle
    }

    void focusTargetsStayThroughTheBreaks()
    {
        TimerRig rig;
        rig.timer->startFocus();
        rig.timer->addFocusTarget(QStringLiteral("Answer Ana"));
        rig.timer->addFocusTarget(QStringLiteral("Answer Ana"));
        rig.clock.advance(Seconds(FocusRounds::kWorkSeconds));
        QCOMPARE(rig.timer->phaseWord(), QStringLiteral("shortBreak"));
        QCOMPARE(rig.timer->focusTargets(), QStringList{QStringLiteral("Answer Ana")});
        rig.timer->removeFocusTarget(QStringLiteral("Answer Ana"));
        QVERIFY(rig.timer->focusTargets().isEmpty());
    }

    void actionsAnswerAsTheNotchExpects_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("pause without a timer")
            << QStringList{} << "pause" << QStringLiteral("no timer is running");
        QTest::newRow("resume without a timer")
            << QStringList{} << "resume" << QStringLiteral("no timer is running");
        QTest::newRow("stop without a timer")
            << QStringList{} << "stop" << QStringLiteral("no timer is running");
        QTest::newRow("pause twice") << QStringList{"start", "pause"} << "pause"
                                     << QStringLiteral("the timer is already paused");
        QTest::newRow("resume a running one")
            << QStringList{"start"} << "resume" << QStringLiteral("the timer is already running");
        QTest::newRow("an unknown action")
            << QStringList{"start"} << "snooze" << QStringLiteral("a timer has no answer for it");
        QTest::newRow("pause a running one") << QStringList{"start"} << "pause" << QStringLiteral("");
        QTest::newRow("resume a paused one")
            << QStringList{"start", "pause"} << "resume" << QStringLiteral("");
        QTest::newRow("stop a paused one") << QStringList{"start", "pause"} << "stop" << QStringLiteral("");
    }
    void actionsAnswerAsTheNotchExpects()
    {
        QFETCH(QStringList, before);
        QFETCH(QString, action);
        TimerRig rig;
        for (const QString& step : before) {
            if (step == QLatin1String("start"))
                rig.timer->startCountdown(600);
            else
                QVERIFY(!rig.timer->act(step));
        }
        QTEST(rig.timer->act(action).value_or(QString()), "refusal");
    }

    void theNotchsActionsReachTheTimer()
    {
        TimerRig rig;
        test::LogCapture log;
        rig.timer->startCountdown(300);
        QCOMPARE(rig.coordinator.perform(QStringLiteral("pause"), TimerManager::activityId),
                 LiveActivityCoordinator::Outcome::done);
        QVERIFY(rig.timer->paused());
        QCOMPARE(rig.coordinator.perform(QStringLiteral("pause"), TimerManager::activityId),
                 LiveActivityCoordinator::Outcome::unanswered);
        QVERIFY(
            log.contains(QStringLiteral("Norva timers: pause did nothing (the timer is already paused)")));
        QCOMPARE(rig.coordinator.perform(QStringLiteral("stop"), TimerManager::activityId),
                 LiveActivityCoordinator::Outcome::done);
        QVERIFY(!rig.live());
        QVERIFY(!rig.timer->active());
    }

    void pauseKeepsTheRemainingTimeAndResumeSetsANewEnd()
    {
        TimerRig rig;
        rig.timer->startCountdown(120);
        rig.clock.advance(Seconds(30.4));
        QVERIFY(rig.timer->pause());
        rig.clock.advance(Seconds(600)); // a paused timer does not complete, nor does it once Norva restarts
        rig.restart();
        QVERIFY(rig.timer->paused());
        QVERIFY(rig.timer->active());
        QCOMPARE(rig.sound.plays, 0);
        QCOMPARE(rig.timer->remainingSeconds(), 90);
        const auto* countdown = rig.live()->content.payload<ActivityContent::Countdown>();
        QVERIFY(countdown && countdown->paused && !countdown->endsAt);
        QCOMPARE(rig.live()->text.value, QStringLiteral("1:30"));
        QVERIFY(rig.timer->resume());
        QCOMPARE(rig.timer->state()->endsAt, rig.clock.now().addMSecs(89600));
        rig.clock.advance(Seconds(89.5));
        QVERIFY(rig.timer->active());
        rig.clock.advance(Seconds(0.1));
        QVERIFY(!rig.timer->active());
        QCOMPARE(rig.sound.plays, 1);
        QVERIFY(!rig.live());
    }

    // The closed notch hears of the countdown once per shown second, not more.
    void theFaceChangesOncePerSecond()
    {
        TimerRig rig;
        rig.timer->startCountdown(10);
        QSignalSpy changes(&rig.coordinator, &LiveActivityCoordinator::activitiesChanged);
        QStringList values;
        for (int step = 0; step < 95; ++step) {
            rig.clock.advance(Seconds(0.1));
            if (const LiveActivity* live = rig.live();
                live && (values.isEmpty() || values.last() != live->text.value))
                values << live->text.value;
        }
        QCOMPARE(values, (QStringList{"0:10", "0:09", "0:08", "0:07", "0:06", "0:05", "0:04", "0:03", "0:02",
                                      "0:01"}));
        QCOMPARE(changes.count(), 9);
    }

    void clockTextReadsLikeAClock_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << 0 << "0:00";
        QTest::newRow("seconds") << 5 << "0:05";
        QTest::newRow("minutes") << 1500 << "25:00";
        QTest::newRow("hours") << 3723 << "1:02:03";
        QTest::newRow("below zero") << -4 << "0:00";
    }
    void clockTextReadsLikeAClock()
    {
        QFETCH(int, seconds);
        QTEST(TimerManager::clockText(seconds), "text");
    }

    void aRunningTimerSurvivesARestart()
    {
        TimerRig rig;
        rig.timer->startFocus();
        rig.timer->addFocusTarget(QStringLiteral("Tidy the inbox"));
        rig.clock.advance(Seconds(100));
        rig.restart();
        QCOMPARE(rig.timer->phaseWord(), QStringLiteral("work"));
        QCOMPARE(rig.timer->remainingSeconds(), 1400);
        QCOMPARE(rig.timer->focusTargets(), QStringList{QStringLiteral("Tidy the inbox")});
        QVERIFY(rig.live());
        rig.clock.advance(Seconds(1400));
        QCOMPARE(rig.timer->phaseWord(), QStringLiteral("shortBreak"));
        QCOMPARE(rig.sound.plays, 1);
    }

    void aTimerThatEndedWhileAwayCompletesOnce()
    {
        TimerRig rig;
        rig.timer->startCountdown(60);
        rig.timer.reset(); // Norva quits with the timer running
        rig.clock.advance(Seconds(600));
        test::LogCapture log;
        rig.restart();
        QCOMPARE(rig.sound.plays, 1);
        QVERIFY(!rig.timer->active());
        QVERIFY(!QFile::exists(rig.stateFile()));
        rig.restart();
        QCOMPARE(rig.sound.plays, 1);
        QCOMPARE(log.count(QStringLiteral("the timer ended while Norva was away")), 1);
    }

    void anUnreadableSavedTimerIsSetAsideNotOverwritten()
    {
        TimerRig rig;
        {
            QFile file(rig.stateFile());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("{\"phase\": \"nap\"}");
        }
        test::LogCapture log;
        rig.restart();
        QVERIFY(!rig.timer->active());
        QVERIFY(log.contains(QStringLiteral("Norva timers: could not read timer.json")));
        rig.timer->startCountdown(30);
        const QStringList aside =
            QDir(rig.folder.path()).entryList({QStringLiteral("timer.json.unreadable-*")});
        QCOMPARE(aside.size(), 1);
    }

    void theSoundSettingKeepsATimerQuiet()
    {
        TimerRig rig;
        rig.timer->setSoundOn(false);
        QCOMPARE(rig.settings.storedFlag(SettingsKeys::timerSound), std::optional<bool>(false));
        rig.timer->startCountdown(5);
        rig.clock.advance(Seconds(5));
        QVERIFY(!rig.timer->active());
        QCOMPARE(rig.sound.plays, 0);
    }

    void aCountdownNeedsASecond()
    {
        TimerRig rig;
        rig.timer->startCountdown(0);
        QVERIFY(!rig.timer->active());
        rig.timer->startCountdown(10 * 24 * 3600);
        QCOMPARE(rig.timer->remainingSeconds(), TimerManager::kLongestCountdown);
    }
};

NORVA_TEST(TimerManagerTest)
#include "tst_TimerManager.moc"
