#pragma once

#include "activities/ActivityKinds.h"
#include "app/Clock.h"
#include "reminders/Reminder.h"

#include <QDateTime>
#include <QHash>
#include <QPointer>
#include <QSet>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <variant>

namespace norva {

class LiveActivityCoordinator;
struct LiveActivity;

// Watches the to-dos and, when one with a due time comes due, shows it once on the closed notch as
// the "task-due" activity with Done and Snooze. A snoozed to-do comes back after ten minutes only
// if it is still due then. Everything runs on the main thread, timed by the clock.
class DueAlertMonitor {
public:
    static const QString kActivityId; // "task-due"
    static constexpr Seconds kTickInterval{30.0};
    // The tick stays on the notch this long, so the person sees it before it folds away.
    static constexpr Seconds kTickFold{0.65};
    static constexpr Seconds kSnooze{600.0};
    static constexpr int kPriority = ActivityKinds::of(ActivityContent::Kind::taskDue).priority;

    enum class Completion { ticked, gone, refused };

    // The due to-do shown: its id, due instant and title.
    struct TaskDue {
        QString id;
        QDateTime due;
        QString title;
        friend bool operator==(const TaskDue&, const TaskDue&) = default;
    };
    struct AlertAgain {
        TaskDue task;
    };
    struct StaysAway {
        QString reason;
    };
    using SnoozeReturn = std::variant<AlertAgain, StaysAway>;

    struct Operations {
        std::function<void()> ensureStarted;                             // starts the reminders store
        std::function<QList<Reminder>()> reminders;                      // every to-do now
        std::function<std::optional<Reminder>(const QString&)> reminder; // one, read afresh
        std::function<Completion(const QString&)> complete;              // ticks one done
        // Tells the desktop when the notch cannot be seen (a full-screen window covers it).
        std::function<void(const TaskDue&)> notifyDesktop;
    };

    DueAlertMonitor(LiveActivityCoordinator& coordinator, Clock& clock, Operations operations);
    ~DueAlertMonitor();

    void start();
    void stop();
    bool isRunning() const { return m_timer.isArmed(); }
    void tick();

    // The to-dos that are due at `now`: not done, with a due time not later than now.
    static QList<Reminder> comingDue(const QList<Reminder>& reminders, const QDateTime& now);
    // What happens when a snooze ends, for the to-do as it is at `now`.
    static SnoozeReturn snoozeReturn(const std::optional<Reminder>& reminder, const QDateTime& now);

    // Runs an action from the notch ("done", "snooze"); answers why not, or nothing when done.
    std::optional<QString> act(const QString& action, const LiveActivity& activity);

    const QSet<QString>& alerted() const { return m_alerted; }
    std::optional<TaskDue> shown() const { return m_shown; }

private:
    void flash(const TaskDue& task);
    void returnFromSnooze(const QString& id);

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    Operations m_ops;
    ScheduledWork m_timer;
    ScheduledWork m_fold;
    std::map<QString, ScheduledWork> m_snoozeReturns; // kept until replaced: each runs once
    QSet<QString> m_alerted;
    QHash<QString, QDateTime> m_snoozed;
    std::optional<TaskDue> m_shown;
    int m_provider = -1;
};

} // namespace norva
