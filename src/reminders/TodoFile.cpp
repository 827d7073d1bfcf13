#include "reminders/TodoFile.h"

#include "storage/ICalendarFile.h"
#include "storage/ICalendarPatch.h"

#include <QTimeZone>

#include <libical/ical.h>

namespace norva::TodoFile {

namespace {

// A runaway rule (every second for ever) must not hold Norva: this many steps find any real next
// occurrence of a to-do that is at most years overdue.
constexpr int kMaxRecurrenceSteps = 100000;

QDateTime toDateTime(const icaltimetype& time)
{
    if (icaltime_is_date(time))
        return QDateTime(QDate(time.year, time.month, time.day), QTime(0, 0), Qt::LocalTime);
    if (icaltime_is_utc(time))
        return QDateTime(QDate(time.year, time.month, time.day), QTime(time.hour, time.minute, time.second),
                         Qt::UTC);
    if (time.zone != nullptr)
        return QDateTime::fromSecsSinceEpoch(icaltime_as_timet_with_zone(time, time.zone));
    // A floating time is the person's own wall clock.
    return QDateTime(QDate(time.year, time.month, time.day), QTime(time.hour, time.minute, time.second),
                     Qt::LocalTime);
}

icaltimetype toIcalTime(const QDateTime& due, bool hasTime)
{
    if (!hasTime) {
        const QDate day = due.toLocalTime().date();
        icaltimetype date = icaltime_null_date();
        date.year = day.year();
        date.month = day.month();
        date.day = day.day();
        return date;
    }
    return icaltime_from_timet_with_zone(due.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
}

icaltimetype utcNow(const QDateTime& now)
{
    return icaltime_from_timet_with_zone(now.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
}

bool isCompleted(icalcomponent* todo)
{
    return icalcomponent_get_status(todo) == ICAL_STATUS_COMPLETED ||
           icalcomponent_get_first_property(todo, ICAL_COMPLETED_PROPERTY) != nullptr;
}

// Parses bytes Norva is about to edit and finds the to-do's master component in them.
struct Parsed {
    icalcomponent* calendar = nullptr;
    icalcomponent* todo = nullptr;
    ~Parsed()
    {
        if (calendar)
            icalcomponent_free(calendar);
    }
};

bool parseFor(const QByteArray& bytes, const QString& uid, Parsed& parsed)
{
    parsed.calendar = icalparser_parse_string(bytes.constData());
    if (!parsed.calendar)
        return false;
    const QByteArray wanted = uid.toUtf8();
    for (icalcomponent* c = icalcomponent_get_first_component(parsed.calendar, ICAL_VTODO_COMPONENT); c;
         c = icalcomponent_get_next_component(parsed.calendar, ICAL_VTODO_COMPONENT)) {
        const char* id = icalcomponent_get_uid(c);
        if ((wanted.isEmpty() || (id && wanted == id)) &&
            !icalcomponent_get_first_property(c, ICAL_RECURRENCEID_PROPERTY)) {
            parsed.todo = c;
            return true;
        }
    }
    return false;
}

ICalendarPatch stamped(const QString& uid, const QDateTime& now)
{
    ICalendarPatch patch("VTODO", uid.toUtf8());
    patch.set(icalproperty_new_dtstamp(utcNow(now)));
    patch.set(icalproperty_new_lastmodified(utcNow(now)));
    return patch;
}

// The next occurrence after the current due of a repeating to-do, as new DUE and DTSTART, or
// nothing when the rule has run out.
struct NextOccurrence {
    icaltimetype due;
    std::optional<icaltimetype> start;
    std::optional<icalrecurrencetype> rule; // the rule with one occurrence fewer left, when counted
};

std::optional<NextOccurrence> nextOccurrence(icalcomponent* todo)
{
    icalproperty* ruleProperty = icalcomponent_get_first_property(todo, ICAL_RRULE_PROPERTY);
    icalproperty* dueProperty = icalcomponent_get_first_property(todo, ICAL_DUE_PROPERTY);
    if (!ruleProperty || !dueProperty)
        return std::nullopt;
    icalrecurrencetype rule = icalproperty_get_rrule(ruleProperty);
    if (rule.count == 1)
        return std::nullopt;
    const icaltimetype due = icalcomponent_get_due(todo);
    icalproperty* startProperty = icalcomponent_get_first_property(todo, ICAL_DTSTART_PROPERTY);
    const std::optional<icaltimetype> start =
        startProperty ? std::optional(icalcomponent_get_dtstart(todo)) : std::nullopt;
    // The series runs from DTSTART when there is one; DUE keeps its distance from it.
    const icaltimetype anchor = start ? *start : due;
    icalrecur_iterator* steps = icalrecur_iterator_new(rule, anchor);
    if (!steps)
        return std::nullopt;
    std::optional<icaltimetype> next;
    for (int i = 0; i < kMaxRecurrenceSteps; ++i) {
        const icaltimetype occurrence = icalrecur_iterator_next(steps);
        if (icaltime_is_null_time(occurrence))
            break;
        if (icaltime_compare(occurrence, anchor) > 0) {
            next = occurrence;
            break;
        }
    }
    icalrecur_iterator_free(steps);
    if (!next)
        return std::nullopt;
    NextOccurrence result;
    if (start) {
        const icaldurationtype gap = icaltime_subtract(due, *start);
        result.start = *next;
        result.due = icaltime_add(*next, gap);
        result.due.zone = due.zone;
    } else {
        result.due = *next;
    }
    if (rule.count > 1) {
        rule.count -= 1;
        result.rule = rule;
    }
    return result;
}

// A property for a time, keeping the TZID parameter the component used for it.
icalproperty* timeProperty(icalproperty* (*make)(icaltimetype), icaltimetype time, icalproperty* old)
{
    icalproperty* fresh = make(time);
    if (old && !icaltime_is_utc(time) && !icaltime_is_date(time)) {
        if (icalparameter* tzid = icalproperty_get_first_parameter(old, ICAL_TZID_PARAMETER))
            icalproperty_add_parameter(fresh, icalparameter_new_clone(tzid));
    }
    return fresh;
}

} // namespace

Contents read(const ICalendarFile& file)
{
    Contents contents;
    auto* calendar = const_cast<icalcomponent*>(file.calendar());
    contents.holdsEvents = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT) != nullptr;
    for (icalcomponent* todo = icalcomponent_get_first_component(calendar, ICAL_VTODO_COMPONENT); todo;
         todo = icalcomponent_get_next_component(calendar, ICAL_VTODO_COMPONENT)) {
        if (icalcomponent_get_first_property(todo, ICAL_RECURRENCEID_PROPERTY))
            continue; // an exception of a series shows through its master
        Reminder reminder;
        reminder.id = QString::fromUtf8(icalcomponent_get_uid(todo));
        reminder.title = QString::fromUtf8(icalcomponent_get_summary(todo)).trimmed();
        reminder.completed = isCompleted(todo);
        if (icalcomponent_get_first_property(todo, ICAL_DUE_PROPERTY)) {
            const icaltimetype due = icalcomponent_get_due(todo);
            if (!icaltime_is_null_time(due) && icaltime_is_valid_time(due)) {
                reminder.due = toDateTime(due);
                reminder.dueHasTime = !icaltime_is_date(due);
            }
        }
        if (icalproperty* priority = icalcomponent_get_first_property(todo, ICAL_PRIORITY_PROPERTY))
            reminder.priority = std::clamp(icalproperty_get_priority(priority), 0, 9);
        reminder.recurring = icalcomponent_get_first_property(todo, ICAL_RRULE_PROPERTY) != nullptr;
        contents.todos.append(reminder);
    }
    return contents;
}

QByteArray create(const QString& uid, const QString& title, const std::optional<QDateTime>& due,
                  bool dueHasTime, const QDateTime& now)
{
    icalcomponent* todo = icalcomponent_new_vtodo();
    icalcomponent_add_property(todo, icalproperty_new_uid(uid.toUtf8().constData()));
    icalcomponent_add_property(todo, icalproperty_new_summary(title.toUtf8().constData()));
    icalcomponent_add_property(todo, icalproperty_new_dtstamp(utcNow(now)));
    icalcomponent_add_property(todo, icalproperty_new_created(utcNow(now)));
    icalcomponent_add_property(todo, icalproperty_new_lastmodified(utcNow(now)));
    icalcomponent_add_property(todo, icalproperty_new_status(ICAL_STATUS_NEEDSACTION));
    if (due)
        icalcomponent_add_property(todo, icalproperty_new_due(toIcalTime(*due, dueHasTime)));
    icalcomponent* calendar =
        icalcomponent_vanew(ICAL_VCALENDAR_COMPONENT, icalproperty_new_version("2.0"),
                            icalproperty_new_prodid("-//Norva//Norva//EN"), todo, nullptr);
    char* text = icalcomponent_as_ical_string_r(calendar);
    QByteArray bytes(text);
    icalmemory_free_buffer(text);
    icalcomponent_free(calendar);
    return bytes;
}

std::optional<QByteArray> setCompleted(const QByteArray& bytes, const QString& uid, bool done,
                                       const QDateTime& now)
{
    Parsed parsed;
    if (!parseFor(bytes, uid, parsed))
        return std::nullopt;
    ICalendarPatch patch = stamped(uid, now);
    if (done) {
        if (const auto next = nextOccurrence(parsed.todo)) {
            patch.set(timeProperty(icalproperty_new_due, next->due,
                                   icalcomponent_get_first_property(parsed.todo, ICAL_DUE_PROPERTY)));
            if (next->start)
                patch.set(timeProperty(icalproperty_new_dtstart, *next->start,
                                       icalcomponent_get_first_property(parsed.todo, ICAL_DTSTART_PROPERTY)));
            if (next->rule)
                patch.set(icalproperty_new_rrule(*next->rule));
            return patch.remove("COMPLETED")
                .remove("PERCENT-COMPLETE")
                .set(icalproperty_new_status(ICAL_STATUS_NEEDSACTION))
                .applyTo(bytes);
        }
        patch.set(icalproperty_new_status(ICAL_STATUS_COMPLETED));
        patch.set(icalproperty_new_completed(utcNow(now)));
        patch.set(icalproperty_new_percentcomplete(100));
    } else {
        patch.set(icalproperty_new_status(ICAL_STATUS_NEEDSACTION));
        patch.remove("COMPLETED").remove("PERCENT-COMPLETE");
    }
    return patch.applyTo(bytes);
}

std::optional<QByteArray> setTitle(const QByteArray& bytes, const QString& uid, const QString& title,
                                   const QDateTime& now)
{
    return stamped(uid, now).set(icalproperty_new_summary(title.toUtf8().constData())).applyTo(bytes);
}

std::optional<QByteArray> setDue(const QByteArray& bytes, const QString& uid,
                                 const std::optional<QDateTime>& due, bool dueHasTime, const QDateTime& now)
{
    ICalendarPatch patch = stamped(uid, now);
    if (due)
        patch.set(icalproperty_new_due(toIcalTime(*due, dueHasTime)));
    else
        patch.remove("DUE");
    return patch.applyTo(bytes);
}

} // namespace norva::TodoFile
