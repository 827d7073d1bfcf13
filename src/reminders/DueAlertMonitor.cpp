#include "reminders/DueAlertMonitor.h"

#include "activities/LiveActivityCoordinator.h"
#include "app/Log.h"
#include "reminders/DueParser.h"

#include <QLocale>

namespace norva {

const QString DueAlertMonitor::kActivityId = QStringLiteral("task-due");

namespace {

const QString kDone = QStringLiteral("done");
const QString kSnoozeAction = QStringLiteral("snooze");

} // namespace

DueAlertMonitor::DueAlertMonitor(LiveActivityCoordinator& coordinator, Clock& clock, Operations operations)
    : m_coordinator(coordinator), m_clock(clock), m_ops(std::move(operations))
{
    m_provider = m_coordinator.addProvider(
        {ActivityContent::Kind::taskDue}, [this](const QString& action, const LiveActivity& activity) {
            if (const auto refusal = act(action, activity)) {
                logLine(QStringLiteral("Norva reminders: a due to-do was not "
                                       "answered (%1)")
                            .arg(*refusal));
                return false;
            }
            return true;
        });
}

DueAlertMonitor::~DueAlertMonitor()
{
    m_coordinator.removeProvider(m_provider);
}

void DueAlertMonitor::start()
{
    if (m_timer.isArmed())
        return;
    m_timer = m_clock.every(kTickInterval, [this] { tick(); });
    tick();
}

void DueAlertMonitor::stop()
{
    m_timer.cancel();
}

QList<Reminder> DueAlertMonitor::comingDue(const QList<Reminder>& reminders, const QDateTime& now)
{
    QList<Reminder> due;
    for (const Reminder& reminder : reminders) {
        if (!reminder.completed && reminder.dueHasTime && reminder.due && *reminder.due <= now)
            due.append(reminder);
    }
    return due;
}

void DueAlertMonitor::tick()
{
    if (m_ops.ensureStarted)
        m_ops.ensureStarted();
    const QDateTime now = m_clock.now();
    for (const Reminder& reminder : comingDue(m_ops.reminders(), now)) {
        if (m_alerted.contains(reminder.id))
            continue;
        const auto snoozed = m_snoozed.constFind(reminder.id);
        if (snoozed != m_snoozed.cend() && *snoozed > now)
            continue;
        m_alerted.insert(reminder.id);
        flash(TaskDue{reminder.id, *reminder.due, reminder.title});
    }
}

void DueAlertMonitor::flash(const TaskDue& task)
{
    m_shown = task;
    m_fold.cancel();
    LiveActivity activity;
    activity.id = kActivityId;
    activity.priority = kPriority;
    activity.content = ActivityContent::taskDue();
    activity.text.title = task.title;
    activity.text.value = due::DueParser::clockText(
        task.due, due::Calendar{QTimeZone::systemTimeZone(), Qt::Monday}, QLocale());
    activity.text.detail = QObject::tr("Due at %1").arg(activity.text.value);
    m_coordinator.upsert(std::move(activity));
    if (m_ops.notifyDesktop)
        m_ops.notifyDesktop(task);
}

std::optional<QString> DueAlertMonitor::act(const QString& action, const LiveActivity& activity)
{
    if (activity.content.kind() != ActivityContent::Kind::taskDue || !m_shown)
        return QStringLiteral("it is not a due to-do");
    const TaskDue task = *m_shown;
    if (action == kDone) {
        switch (m_ops.complete(task.id)) {
        case Completion::ticked: {
            LiveActivity ticked = activity;
            ticked.text.value = QStringLiteral("✓");
            m_coordinator.upsert(ticked);
            m_fold = m_clock.after(kTickFold, [this] {
                m_coordinator.remove(kActivityId);
                m_shown.reset();
            });
            return std::nullopt;
        }
        case Completion::refused:
            return QStringLiteral("Reminders refused to tick it");
        case Completion::gone:
            return QStringLiteral("the to-do is no longer in Reminders");
        }
    }
    if (action == kSnoozeAction) {
        m_coordinator.remove(kActivityId);
        m_shown.reset();
        m_snoozed.insert(task.id, m_clock.now().addMSecs(qint64(kSnooze.count() * 1000)));
        m_snoozeReturns[task.id] = m_clock.after(kSnooze, [this, id = task.id] { returnFromSnooze(id); });
        return std::nullopt;
    }
    return QStringLiteral("a due to-do has no answer for %1").arg(action);
}

DueAlertMonitor::SnoozeReturn DueAlertMonitor::snoozeReturn(const std::optional<Reminder>& reminder,
                                                            const QDateTime& now)
{
    if (!reminder)
        return StaysAway{QStringLiteral("it is no longer in Reminders")};
    if (reminder->completed)
        return StaysAway{QStringLiteral("it was ticked done")};
    if (!reminder->due)
        return StaysAway{QStringLiteral("its due time was taken off")};
    if (*reminder->due <= now)
        return AlertAgain{TaskDue{reminder->id, *reminder->due, reminder->title}};
    return StaysAway{QStringLiteral("it was moved to a later time")};
}

void DueAlertMonitor::returnFromSnooze(const QString& id)
{
    m_snoozed.remove(id);
    const SnoozeReturn decision = snoozeReturn(m_ops.reminder(id), m_clock.now());
    if (const auto* again = std::get_if<AlertAgain>(&decision)) {
        flash(again->task);
        return;
    }
    // A to-do moved later alerts again at its new time through the ordinary tick.
    m_alerted.remove(id);
    logLine(QStringLiteral("Norva reminders: a snoozed to-do did not come back (%1)")
                .arg(std::get<StaysAway>(decision).reason));
}

} // namespace norva
