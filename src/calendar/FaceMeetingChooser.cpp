#include "calendar/FaceMeetingChooser.h"

namespace norva {

std::optional<QString> FaceMeetingChooser::rejectionOf(const Meeting& meeting, const QSet<QString>& addresses)
{
    const EventInfo* event = meeting.event();
    if (!event)
        return std::nullopt; // the person made it in Norva to be reminded of it
    if (event->allDay)
        return QStringLiteral("it is all-day");
    if (event->cancelled)
        return QStringLiteral("it is cancelled");
    for (const EventAttendee& attendee : event->attendees) {
        if (attendee.declined && addresses.contains(attendee.address))
            return QStringLiteral("you declined it");
    }
    return std::nullopt;
}

FaceMeetingChooser::Choice FaceMeetingChooser::choose(const QList<Meeting>& merged, const QDateTime& now,
                                                      Seconds leadTime, const QSet<QString>& addresses)
{
    Choice choice;
    const QDateTime showFrom = now.addMSecs(qint64(leadTime.count() * 1000));
    for (const Meeting& meeting : merged) {
        // Inside its lead time or running: starting by the end of the lead time, not over yet.
        if (meeting.start() > showFrom || meeting.end() <= now)
            continue;
        if (auto why = rejectionOf(meeting, addresses)) {
            choice.rejected.append({meeting, *why});
            continue;
        }
        // The latest start wins: a meeting about to begin takes over from one that is running on,
        // and of two starting together the one that ends first goes first.
        const auto better = [&](const Meeting& held) {
            if (meeting.start() != held.start())
                return meeting.start() > held.start();
            return meeting.end() < held.end();
        };
        if (!choice.meeting || better(*choice.meeting))
            choice.meeting = meeting;
    }
    return choice;
}

} // namespace norva
