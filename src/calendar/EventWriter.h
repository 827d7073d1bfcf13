#pragma once

#include "calendar/EventDraft.h"
#include "calendar/EventInfo.h"

#include <QByteArray>
#include <QString>
#include <QTimeZone>

#include <optional>

namespace norva {

// Makes the iCalendar text of events that Norva adds or changes. Times are written in the
// person's zone by its IANA name with its VTIMEZONE, so khal and a CalDAV server keep a meeting
// at the same local time across a clock change; UTC when the zone has no name libical knows.
class EventWriter {
public:
    // A new event file.
    static QByteArray newEvent(const EventDraft& draft, const QString& uid, const QDateTime& stamp,
                               const QTimeZone& zone);

    // The file with one event (or one occurrence of a repeating one) changed to the draft;
    // every other property and component stays. Nothing when the event is not in the file.
    static std::optional<QByteArray> changed(const QByteArray& file, const EventOccurrence& occurrence,
                                             const EventDraft& draft, const QDateTime& stamp,
                                             const QTimeZone& zone);
    // The file without one occurrence of a repeating event (an exception date is added, and an
    // override of that occurrence is dropped). Nothing when the event is not in the file.
    static std::optional<QByteArray> withoutOccurrence(const QByteArray& file,
                                                       const EventOccurrence& occurrence);
};

} // namespace norva
