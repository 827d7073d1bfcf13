#pragma once

#include "calendar/EventInfo.h"
#include "calendar/ManualMeeting.h"

#include <QTimeZone>

#include <variant>

namespace norva {

// What the calendar page and the notch show: an occurrence from a calendar folder, or a meeting
// kept in Norva only.
class Meeting {
public:
    Meeting(EventInfo event) : m_value(std::move(event)) {}
    Meeting(ManualMeeting manual) : m_value(std::move(manual)) {}

    const EventInfo* event() const { return std::get_if<EventInfo>(&m_value); }
    const ManualMeeting* manual() const { return std::get_if<ManualMeeting>(&m_value); }
    bool isNorvaOnly() const { return manual() != nullptr; }

    QString title() const { return event() ? event()->title : manual()->title; }
    QDateTime start() const { return event() ? event()->start : manual()->start; }
    QDateTime end() const { return event() ? event()->end : manual()->end; }
    bool allDay() const { return event() && event()->allDay; }
    std::optional<QUrl> joinUrl() const { return event() ? event()->joinUrl : manual()->joinUrl; }
    // Names this occurrence among all others (a repeating event's occurrences differ by start).
    QString key() const;

    // A time of day as the calendar page and the notch write it ("09:30"), in the zone given.
    static QString clockText(const QDateTime& instant, const QTimeZone& zone);

    bool operator==(const Meeting&) const = default;

private:
    std::variant<EventInfo, ManualMeeting> m_value;
};

} // namespace norva
