#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTimeZone>

#include <optional>

// The values that the due-date parser reads and hands back. They live in their own namespace so that
// the short names the reminders area speaks in (`Reading`, `Clock`, `DayWord`) do not collide with
// Norva's scheduling clock.
namespace norva::due {

constexpr int kDaysPerWeek = 7;

// A span of the typed text, in UTF-16 units as QString indexes them.
struct TextRange {
    qsizetype start = 0;
    qsizetype length = 0;

    qsizetype end() const { return start + length; }
    bool overlaps(const TextRange& other) const { return start < other.end() && other.start < end(); }
    bool contains(const TextRange& other) const { return start <= other.start && other.end() <= end(); }
    friend bool operator==(const TextRange&, const TextRange&) = default;
};

// A value read out of the text together with where it stood.
template <typename Value> struct Found {
    TextRange range;
    Value value;
};

// A time of day on the wall clock.
struct Clock {
    int hour = 0;   // 0-23
    int minute = 0; // 0-59
    friend bool operator==(const Clock&, const Clock&) = default;
};

// The calendar the due words are placed on: its time zone and the weekday on which its weeks begin
// (which decides where "next week" starts).
struct Calendar {
    QTimeZone timeZone;
    Qt::DayOfWeek firstDayOfWeek = Qt::Monday;
};

// What the parser understood: the due instant, whether a time of day was said (otherwise the due
// is the whole day), the short text that names the day, and the to-do's text without the due words.
struct Reading {
    QDateTime date;
    bool hasTime = false;
    QString label;
    QString title;
};

// A day named by a word. Weekday numbers run 1 = Sunday to 7 = Saturday.
struct DayWord {
    enum class Kind { weekday, weekdayNextWeek, today, tonight, tomorrow, nextWeek };
    Kind kind = Kind::today;
    int weekday = 0; // only for weekday and weekdayNextWeek
    friend bool operator==(const DayWord&, const DayWord&) = default;
};

// The day of a reading: named by a day word, or a calendar day found by the date detector.
struct Day {
    std::optional<DayWord> word;
    QDate date; // when word is empty
};

// A time as it was said.
struct SaidTime {
    enum class Kind {
        meridiem, // said with am/pm, already on the 24-hour clock
        plain,    // no am/pm: the half of the day is still open
        noon,
        midnight
    };
    Kind kind = Kind::plain;
    Clock clock;
    bool asWritten = false; // plain only: a leading "0" marks a 24-hour time that stays as it is
    bool needsADay = true;  // the time alone does not fix a day
};

enum class Half { morning, afternoon, evening, night };

// One date the detector found, after filtering.
struct Detection {
    TextRange range;
    QDate day;
    int weekday = 0; // 1 = Sunday to 7 = Saturday
    std::optional<Clock> clock;
    bool isOnToday = false;
    bool isBeforeToday = false;
};

// Qt counts weekdays 1 = Monday to 7 = Sunday; the due words count 1 = Sunday to 7 = Saturday.
inline int sundayFirstWeekday(Qt::DayOfWeek day)
{
    return day == Qt::Sunday ? 1 : static_cast<int>(day) + 1;
}

inline Qt::DayOfWeek qtDayOfWeek(int sundayFirst)
{
    return sundayFirst == 1 ? Qt::Sunday : static_cast<Qt::DayOfWeek>(sundayFirst - 1);
}

} // namespace norva::due
