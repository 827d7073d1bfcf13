#pragma once

#include "calendar/EventDraft.h"
#include "calendar/EventInfo.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace norva {

// One of the person's calendars as the page shows it and offers it for new events.
struct CalendarInfo {
    QString id;
    QString name;
    QString color; // "#rrggbb", or empty for the theme's own
    bool operator==(const CalendarInfo&) const = default;
};

// Where the person's calendar events live: what the meetings need of it, in their own words.
// On Linux the vdir calendar folders that khal and vdirsyncer share (VdirEventStore).
class EventStore : public QObject {
    Q_OBJECT
public:
    struct Snapshot {
        bool readable = true; // false: the calendars' folder cannot be read (no access)
        QList<CalendarInfo> calendars;
        QList<EventInfo> events; // every occurrence that overlaps the window asked for
    };

    using QObject::QObject;

    // Starts following outside changes (changed() tells of them).
    virtual void start() = 0;
    // The events overlapping the window, read off the main thread; `done` runs on the main thread.
    virtual void fetch(const EventWindow& window, std::function<void(Snapshot)> done) = 0;

    // Each returns why it failed, or nothing once the calendar holds the change.
    virtual std::optional<QString> add(const QString& calendarId, const EventDraft& draft) = 0;
    virtual std::optional<QString> change(const EventOccurrence& occurrence, const EventDraft& draft) = 0;
    virtual std::optional<QString> remove(const EventOccurrence& occurrence) = 0;

signals:
    // Something in the calendars changed (another program, or Norva's own write).
    void changed();
};

} // namespace norva
