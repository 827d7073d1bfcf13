#pragma once

#include "reminders/DateDetector.h"
#include "reminders/DueTypes.h"

#include <QList>
#include <QLocale>

#include <functional>
#include <memory>
#include <optional>

namespace norva::due {

// Reads a due day and time out of a to-do typed in plain words ("call mum tomorrow at 5pm") and
// splits it into a clean title and a due date. It is a pure function of the text, the instant, the
// calendar and the locale: the jot sheet calls it on every keystroke, from any thread.
class DueParser {
public:
    using DetectorFactory = std::function<DetectorStart()>;

    // Uses Norva's own date detector, started once for every parser of the process.
    DueParser();
    // Uses the detector the factory starts, on first need; a factory that fails leaves the rules alone.
    explicit DueParser(DetectorFactory startDetector);

    // The due the text names, or nothing when it names none, names one the calendar cannot place,
    // or is still being typed.
    std::optional<Reading> parse(const QString& text, const QDateTime& now, const Calendar& calendar,
                                 const QLocale& locale) const;

    // The clock time typed in the text, as typed (am/pm already on the 24-hour clock).
    std::optional<Clock> typedClock(const QString& text) const;

    // The detector's dates in the text, without numbers that only look like dates.
    QList<Detection> detections(const QString& text, const QDateTime& now, const Calendar& calendar,
                                const QLocale& locale) const;

    // Whether the last due words of the text are still being typed ("tomo", "5p", "tomorrow 5:").
    static bool isStillBeingTyped(const QString& text);

    // A time for display, in the locale's short style, with ordinary spaces only.
    static QString clockText(const QDateTime& date, const Calendar& calendar, const QLocale& locale);

    // Whole calendar days from one instant's day to another's; a clock change never shortens it.
    static int daysAhead(const QDateTime& of, const QDateTime& from, const Calendar& calendar);

private:
    struct DetectorSlot;
    const DateDetector* detector() const;

    std::shared_ptr<DetectorSlot> m_detector;
};

} // namespace norva::due
