#include "LogCapture.h"
#include "ManualClock.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "agents/prompts/PromptAlerts.h"
#include "reminders/DueAlertMonitor.h"
#include "reminders/DueDesktopNotice.h"

#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

using Completion = DueAlertMonitor::Completion;

// The monitor over a list of to-dos the test changes as the person would.
struct MonitorRig {
    ManualClock clock;
    LiveActivityCoordinator coordinator{clock};
    QList<Reminder> todos;
    Completion answer = Completion::ticked;
    QStringList completed;
    std::function<void(const DueAlertMonitor::TaskDue&)> notifyDesktop;
    DueAlertMonitor monitor{coordinator, clock, operations()};

    DueAlertMonitor::Operations operations()
    {
        DueAlertMonitor::Operations ops;
        ops.reminders = [this] { return todos; };
        ops.reminder = [this](const QString& id) -> std::optional<Reminder> {
            for (const Reminder& r : todos)
                if (r.id == id)
                    return r;
            return std::nullopt;
        };
        ops.complete = [this](const QString& id) {
            completed.append(id);
            return answer;
        };
        ops.notifyDesktop = [this](const DueAlertMonitor::TaskDue& task) {
            if (notifyDesktop)
                notifyDesktop(task);
        };
        return ops;
    }
    Reminder& add(const QString& id, double dueInSeconds, bool hasTime = true)
    {
        Reminder r;
        r.id = id;
        r.title = QStringLiteral("to-do ") + id;
        r.due = clock.now().addMSecs(qint64(dueInSeconds * 1000));
        r.dueHasTime = hasTime;
        todos.append(r);
        return todos.last();
    }
    Reminder& find(const QString& id)
    {
        return *std::find_if(todos.begin(), todos.end(), [&](const Reminder& r) { return r.id == id; });
    }
    const LiveActivity* shown() const { return coordinator.find(DueAlertMonitor::kActivityId); }
    LiveActivityCoordinator::Outcome press(const QString& action)
    {
        return coordinator.perform(action, DueAlertMonitor::kActivityId);
    }
};

// The desktop's notification server as Norva reaches it: what it was asked to show.
class RecordedNotifications final : public PromptAlerts {
public:
    QStringList shown;
    void chime() override {}
    void notify(const QString& title, const QString& body) override
    {
        shown << title + QStringLiteral(" | ") + body;
    }
};

} // namespace

class DueAlertMonitorTest : public QObject {
    Q_OBJECT

private slots:
    // A timed to-do alerts at the first tick at or after its due time, once; a whole-day or done one
    // never does (-1).
    void aToDoAlertsOnceAtTheTickAfterItsDueTime_data()
    {
        QTest::addColumn<double>("dueIn");
        QTest::addColumn<bool>("hasTime");
        QTest::addColumn<bool>("done");
        QTest::addColumn<int>("alertsAtTick");
        QTest::newRow("due before the start") << -3600.0 << true << false << 0;
        QTest::newRow("due in 45 s") << 45.0 << true << false << 2;
        QTest::newRow("a whole day") << -86400.0 << false << false << -1;
        QTest::newRow("done") << -60.0 << true << true << -1;
    }
    void aToDoAlertsOnceAtTheTickAfterItsDueTime()
    {
        QFETCH(double, dueIn);
        QFETCH(bool, hasTime);
        QFETCH(bool, done);
        QFETCH(int, alertsAtTick);
        MonitorRig rig;
        rig.add(QStringLiteral("a"), dueIn, hasTime).completed = done;
        rig.monitor.start();
        for (int tick = 0; tick < alertsAtTick; ++tick) {
            QVERIFY(!rig.shown());
            rig.clock.advance(DueAlertMonitor::kTickInterval);
        }
        if (alertsAtTick >= 0) {
            QVERIFY(rig.shown());
            QCOMPARE(rig.shown()->text.title, QStringLiteral("to-do a"));
            QCOMPARE(rig.shown()->content.kind(), ActivityContent::Kind::taskDue);
            rig.coordinator.remove(DueAlertMonitor::kActivityId);
        }
        rig.clock.advance(DueAlertMonitor::kTickInterval * 4);
        QVERIFY(!rig.shown());
        QCOMPARE(rig.monitor.alerted().isEmpty(), alertsAtTick < 0);
    }

    void doneShowsTheTickThenFolds()
    {
        MonitorRig rig;
        rig.add(QStringLiteral("a"), -1);
        rig.monitor.start();
        QCOMPARE(rig.press(QStringLiteral("done")), LiveActivityCoordinator::Outcome::done);
        QCOMPARE(rig.completed, QStringList{QStringLiteral("a")});
        QVERIFY(rig.shown());
        rig.clock.advance(Seconds(0.6));
        QVERIFY(rig.shown());
        rig.clock.advance(Seconds(0.06));
        QVERIFY(!rig.shown());
    }

    void refusedAndGoneTicksAreAnsweredAndTheAlertStays_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("line");
        QTest::newRow("refused")
            << int(Completion::refused)
            << "Norva reminders: a due to-do was not answered (Reminders refused to tick it)";
        QTest::newRow("gone")
            << int(Completion::gone)
            << "Norva reminders: a due to-do was not answered (the to-do is no longer in Reminders)";
    }
    void refusedAndGoneTicksAreAnsweredAndTheAlertStays()
    {
        QFETCH(int, answer);
        QFETCH(QString, line);
        MonitorRig rig;
        LogCapture log;
        rig.answer = Completion(answer);
        rig.add(QStringLiteral("a"), -1);
        rig.monitor.start();
        QCOMPARE(rig.press(QStringLiteral("done")), LiveActivityCoordinator::Outcome::unanswered);
        QCOMPARE(log.count(line), 1);
        rig.clock.advance(Seconds(1));
        QVERIFY(rig.shown());
    }

    // A snoozed to-do still due comes back after ten minutes. Behind a full-screen window the notch
    // cannot be seen: the alert also goes to the desktop, once when the to-do falls due and once more
    // when it comes back from the snooze.
    void aDueToDoTheNotchCannotShowGoesToTheDesktop_data()
    {
        QTest::addColumn<bool>("covered");
        QTest::addColumn<QStringList>("notifications");
        QTest::newRow("a full-screen window covers the notch")
            << true << QStringList{"Due now | to-do a", "Due now | to-do a"};
        QTest::newRow("the notch is in sight") << false << QStringList{};
    }

    void aDueToDoTheNotchCannotShowGoesToTheDesktop()
    {
        QFETCH(bool, covered);
        QFETCH(QStringList, notifications);
        MonitorRig rig;
        RecordedNotifications desktop;
        const DueDesktopNotice notice(desktop, [&covered] { return covered; });
        rig.notifyDesktop = [&notice](const DueAlertMonitor::TaskDue& task) { notice.tell(task); };
        rig.add(QStringLiteral("a"), 45);
        rig.monitor.start();
        rig.clock.advance(DueAlertMonitor::kTickInterval);
        QCOMPARE(desktop.shown, QStringList());
        rig.clock.advance(DueAlertMonitor::kTickInterval * 4);
        QVERIFY(rig.shown());
        QCOMPARE(desktop.shown, notifications.mid(0, 1));
        QCOMPARE(rig.press(QStringLiteral("snooze")), LiveActivityCoordinator::Outcome::done);
        QVERIFY(!rig.shown());
        rig.clock.advance(DueAlertMonitor::kSnooze - Seconds(1)); // a snooze is ten minutes
        QVERIFY(!rig.shown());
        rig.clock.advance(Seconds(1));
        QVERIFY(rig.shown());
        QCOMPARE(desktop.shown, notifications);
    }

    void aSnoozedToDoStaysAwayWhenItChanged_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("reason");
        QTest::newRow("ticked elsewhere") << "tick" << QStringLiteral("it was ticked done");
        QTest::newRow("deleted") << "delete" << QStringLiteral("it is no longer in Reminders");
        QTest::newRow("due taken off") << "undue" << QStringLiteral("its due time was taken off");
        QTest::newRow("moved later") << "later" << QStringLiteral("it was moved to a later time");
    }
    void aSnoozedToDoStaysAwayWhenItChanged()
    {
        QFETCH(QString, change);
        QFETCH(QString, reason);
        MonitorRig rig;
        LogCapture log;
        rig.add(QStringLiteral("a"), -1);
        rig.monitor.start();
        rig.press(QStringLiteral("snooze"));
        const QDateTime newDue = rig.clock.now().addSecs(3600);
        if (change == QStringLiteral("tick"))
            rig.find(QStringLiteral("a")).completed = true;
        else if (change == QStringLiteral("delete"))
            rig.todos.clear();
        else if (change == QStringLiteral("undue"))
            rig.find(QStringLiteral("a")).due.reset();
        else
            rig.find(QStringLiteral("a")).due = newDue;
        rig.clock.advance(DueAlertMonitor::kSnooze);
        QVERIFY(!rig.shown());
        QCOMPARE(log.lines(),
                 QStringList{
                     QStringLiteral("Norva reminders: a snoozed to-do did not come back (%1)").arg(reason)});
        if (change == QStringLiteral("later")) {
            // It alerts at its new time through the ordinary tick.
            rig.clock.setNow(newDue.addSecs(-40));
            rig.clock.advance(DueAlertMonitor::kTickInterval);
            QVERIFY(!rig.shown());
            rig.clock.advance(DueAlertMonitor::kTickInterval);
            QVERIFY(rig.shown());
        }
    }

    void otherActionsAndOtherActivitiesAreRefused()
    {
        MonitorRig rig;
        rig.add(QStringLiteral("a"), -1);
        rig.monitor.start();
        QCOMPARE(*rig.monitor.act(QStringLiteral("open"), *rig.shown()),
                 QStringLiteral("a due to-do has no answer for open"));
        LiveActivity other;
        other.content = ActivityContent::timer();
        QCOMPARE(*rig.monitor.act(QStringLiteral("done"), other), QStringLiteral("it is not a due to-do"));
    }
};

NORVA_TEST(DueAlertMonitorTest)

#include "tst_DueAlertMonitor.moc"
