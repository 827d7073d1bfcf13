#include "reminders/Reminder.h"

namespace norva {

DueState dueState(const Reminder& reminder, const QDateTime& now)
{
    if (!reminder.due)
        return DueState::none;
    const QDate today = now.toLocalTime().date();
    const QDate day = reminder.due->toLocalTime().date();
    if (day < today || (reminder.dueHasTime && *reminder.due <= now))
        return DueState::overdue;
    return day == today ? DueState::today : DueState::later;
}

} // namespace norva
