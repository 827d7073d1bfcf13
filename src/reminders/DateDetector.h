#pragma once

#include "reminders/DueTypes.h"

#include <QList>
#include <QLocale>

#include <memory>

namespace norva::due {

class DateDetector;

// One date as the detector saw it, before the parser filters out numbers that only look like dates.
struct DetectedDate {
    TextRange range;
    QDate day; // may be invalid when the words name a day beyond the calendar's reach
    std::optional<Clock> clock;
};

// What starting a detector gave: the detector, or why it could not start.
struct DetectorStart {
    std::shared_ptr<const DateDetector> detector;
    QString error;
};

// Finds dates typed out in words or digits ("March 3", "the 3rd", "in 3 days"). Norva brings its own
// (`TypedDateDetector`); a platform's natural-language detector can stand behind the same interface.
class DateDetector {
public:
    virtual ~DateDetector() = default;
    // `now` is already in the calendar's time zone.
    virtual QList<DetectedDate> detect(const QString& text, const QDateTime& now, const Calendar& calendar,
                                       const QLocale& locale) const = 0;
};

} // namespace norva::due
