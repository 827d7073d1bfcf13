#pragma once

#include "calendar/Meeting.h"

#include <QDate>
#include <QList>

namespace norva {

// One day of the calendar page: the meetings that start on it, in order.
struct CalendarDay {
    QDate day;
    QList<Meeting> meetings;
    bool operator==(const CalendarDay&) const = default;
};

} // namespace norva
