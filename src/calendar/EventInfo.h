#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace norva {

// Someone invited to an event, as the event file names them.
struct EventAttendee {
    QString address; // lower-case, without "mailto:"
    bool declined = false;
    bool operator==(const EventAttendee&) const = default;
};

// Where one occurrence came from, so that Norva can change or delete it in its calendar folder.
struct EventOccurrence {
    QString calendarId; // the calendar folder's name
    QString fileName;   // the event file inside it
    QString uid;
    std::optional<QDateTime> recurrenceId; // the occurrence's original start, for a repeating event
    bool operator==(const EventOccurrence&) const = default;
};

// One occurrence of a calendar event inside the window Norva looks at.
struct EventInfo {
    QString title;
    QDateTime start;
    QDateTime end;
    bool allDay = false; // whole local days: start and end are local midnights
    bool cancelled = false;
    bool recurring = false;
    QString location;
    QString notes;
    QUrl url;
    std::optional<QUrl> joinUrl;
    QString organizer; // lower-case address, or empty
    QList<EventAttendee> attendees;
    EventOccurrence ekOccurrence;

    bool operator==(const EventInfo&) const = default;
};

// The stretch of time whose events Norva reads: whatever overlaps [from, to).
struct EventWindow {
    QDateTime from;
    QDateTime to;

    bool overlaps(const QDateTime& start, const QDateTime& end) const
    {
        // An event without length still counts when it starts inside the window.
        return start < to && (end > from || (end <= start && start >= from));
    }
};

} // namespace norva
