#pragma once

#include "calendar/EventInfo.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTimeZone>

struct icalcomponent_impl;
using icalcomponent = struct icalcomponent_impl;

namespace norva {

// Reads the events of one iCalendar file and lays out their occurrences inside a window: repeating
// events expanded by their rules and extra dates less their exceptions, moved or cancelled
// occurrences taken from their overrides, times placed by the file's own time zones or the
// system's, all-day events as whole local days and floating times on the local clock.
class EventReader {
public:
    struct Result {
        QList<EventInfo> events;
        QString failure; // why the file could not be read at all; empty when it could
        bool ok() const { return failure.isEmpty(); }
    };

    // `local` is the zone of the person's days (all-day events and floating times).
    static Result read(const QByteArray& icalendar, const EventWindow& window, const QTimeZone& local);
    // The same over a VCALENDAR already parsed (a calendar folder's file); it is only read.
    static Result read(const icalcomponent* calendar, const EventWindow& window, const QTimeZone& local);

    // The most occurrences one rule may produce before the window's end: a rule that repeats every
    // second from years ago would otherwise hold the reading up.
    static constexpr int kMostSteps = 50000;
};

} // namespace norva
