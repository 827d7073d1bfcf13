#include "calendar/EventWriter.h"

#include <libical/ical.h>

#include <memory>

namespace norva {
namespace {

using Component = std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)>;

QByteArray textOf(const QString& text)
{
    return text.toUtf8();
}

icaltimezone* libicalZone(const QTimeZone& zone)
{
    if (!zone.isValid() || zone.id().isEmpty())
        return nullptr;
    return icaltimezone_get_builtin_timezone(zone.id().constData());
}

// The instant as wall time in the zone (with its TZID), or in UTC when libical lacks the zone.
icalproperty* timeProperty(icalproperty_kind kind, const QDateTime& instant, const QTimeZone& zone)
{
    icaltimezone* own = libicalZone(zone);
    if (!own) {
        icaltimetype utc =
            icaltime_from_timet_with_zone(instant.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
        icalproperty* property = icalproperty_new(kind);
        icalproperty_set_value(property, icalvalue_new_datetime(utc));
        return property;
    }
    const QDateTime local = instant.toTimeZone(zone);
    icaltimetype wall = icaltime_null_time();
    wall.year = local.date().year();
    wall.month = local.date().month();
    wall.day = local.date().day();
    wall.hour = local.time().hour();
    wall.minute = local.time().minute();
    wall.second = local.time().second();
    wall.is_date = 0;
    icalproperty* property = icalproperty_new(kind);
    icalproperty_set_value(property, icalvalue_new_datetime(wall));
    icalproperty_add_parameter(property, icalparameter_new_tzid(zone.id().constData()));
    return property;
}

void replaceProperty(icalcomponent* event, icalproperty_kind kind, icalproperty* replacement)
{
    while (icalproperty* old = icalcomponent_get_first_property(event, kind)) {
        icalcomponent_remove_property(event, old);
        icalproperty_free(old);
    }
    if (replacement)
        icalcomponent_add_property(event, replacement);
}

// Title, times and link of one VEVENT from the draft; its other properties stay.
void applyDraft(icalcomponent* event, const EventDraft& draft, const QDateTime& stamp, const QTimeZone& zone)
{
    replaceProperty(event, ICAL_SUMMARY_PROPERTY, icalproperty_new_summary(textOf(draft.title).constData()));
    replaceProperty(event, ICAL_DTSTART_PROPERTY, timeProperty(ICAL_DTSTART_PROPERTY, draft.start, zone));
    replaceProperty(event, ICAL_DURATION_PROPERTY, nullptr);
    replaceProperty(event, ICAL_DTEND_PROPERTY, timeProperty(ICAL_DTEND_PROPERTY, draft.end, zone));
    replaceProperty(
        event, ICAL_URL_PROPERTY,
        draft.joinUrl ? icalproperty_new_url(draft.joinUrl->toString(QUrl::FullyEncoded).toUtf8().constData())
                      : nullptr);
    const icaltimetype now =
        icaltime_from_timet_with_zone(stamp.toSecsSinceEpoch(), 0, icaltimezone_get_utc_timezone());
    replaceProperty(event, ICAL_DTSTAMP_PROPERTY, icalproperty_new_dtstamp(now));
    replaceProperty(event, ICAL_LASTMODIFIED_PROPERTY, icalproperty_new_lastmodified(now));
    // Any SEQUENCE bump tells a CalDAV server and other clients this is the newer version.
    icalproperty* sequence = icalcomponent_get_first_property(event, ICAL_SEQUENCE_PROPERTY);
    const int next = sequence ? icalproperty_get_sequence(sequence) + 1 : 0;
    replaceProperty(event, ICAL_SEQUENCE_PROPERTY, icalproperty_new_sequence(next));
}

// libical's VTIMEZONE holds every change since the zone began (London's since 1847, some 10 kB);
// every reader would expand them all for each file. The rules in force today are what an event
// needs: the observances that repeat by a rule still in force from `year` on, or the last one for a
// zone without clock changes.
void keepRulesFrom(icalcomponent* vtimezone, int year)
{
    QList<icalcomponent*> observances;
    bool anyRule = false;
    for (icalcomponent* part = icalcomponent_get_first_component(vtimezone, ICAL_ANY_COMPONENT); part;
         part = icalcomponent_get_next_component(vtimezone, ICAL_ANY_COMPONENT)) {
        observances.append(part);
        anyRule = anyRule || icalcomponent_get_first_property(part, ICAL_RRULE_PROPERTY);
    }
    if (observances.isEmpty())
        return;
    icalcomponent* last = observances.back();
    for (icalcomponent* part : observances) {
        icalproperty* rule = icalcomponent_get_first_property(part, ICAL_RRULE_PROPERTY);
        bool keep = part == last;
        if (anyRule) {
            const icaltimetype until = rule ? icalproperty_get_rrule(rule).until : icaltime_null_time();
            keep = rule && (icaltime_is_null_time(until) || until.year >= year);
        }
        if (!keep) {
            icalcomponent_remove_component(vtimezone, part);
            icalcomponent_free(part);
        }
    }
}

// The zone's VTIMEZONE, added once, so the file reads the same where the zone is unknown. libical
// names its own zones with a prefix of its project ("/freeassociation.sourceforge.net/..."); the file
// says the plain IANA name, which khal, servers and other clients know.
void addZoneOnce(icalcomponent* calendar, const QTimeZone& zone, int fromYear)
{
    icaltimezone* own = libicalZone(zone);
    if (!own || icalcomponent_get_timezone(calendar, zone.id().constData()))
        return;
    icalcomponent* definition = icaltimezone_get_component(own);
    if (!definition)
        return;
    icalcomponent* copy = icalcomponent_new_clone(definition);
    replaceProperty(copy, ICAL_TZID_PROPERTY, icalproperty_new_tzid(zone.id().constData()));
    keepRulesFrom(copy, fromYear);
    icalcomponent_add_component(calendar, copy);
}

QByteArray textOfCalendar(icalcomponent* calendar)
{
    char* text = icalcomponent_as_ical_string_r(calendar);
    QByteArray bytes(text);
    free(text);
    return bytes;
}

Component parsed(const QByteArray& file)
{
    return Component(icalparser_parse_string(file.constData()), &icalcomponent_free);
}

// The instant a component's RECURRENCE-ID names, compared as seconds since the epoch.
std::optional<qint64> recurrenceSeconds(icalcomponent* event, icalcomponent* calendar)
{
    icalproperty* property = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
    if (!property)
        return std::nullopt;
    icaltimetype value = icalproperty_get_recurrenceid(property);
    icalparameter* tzid = icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
    icaltimezone* zone = nullptr;
    if (tzid) {
        zone = icalcomponent_get_timezone(calendar, icalparameter_get_tzid(tzid));
        if (!zone)
            zone = icaltimezone_get_builtin_timezone(icalparameter_get_tzid(tzid));
    }
    if (icaltime_is_utc(value))
        zone = icaltimezone_get_utc_timezone();
    value.zone = nullptr;
    return qint64(icaltime_as_timet_with_zone(value, zone));
}

struct Found {
    icalcomponent* master = nullptr;
    icalcomponent* override = nullptr;
};

Found find(icalcomponent* calendar, const EventOccurrence& occurrence)
{
    Found found;
    const QByteArray uid = occurrence.uid.toUtf8();
    for (icalcomponent* event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); event;
         event = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
        const char* its = icalcomponent_get_uid(event);
        if (!uid.isEmpty() && (!its || uid != its))
            continue;
        const auto recurrence = recurrenceSeconds(event, calendar);
        if (!recurrence)
            found.master = found.master ? found.master : event;
        else if (occurrence.recurrenceId && *recurrence == occurrence.recurrenceId->toSecsSinceEpoch())
            found.override = event;
    }
    return found;
}

} // namespace

QByteArray EventWriter::newEvent(const EventDraft& draft, const QString& uid, const QDateTime& stamp,
                                 const QTimeZone& zone)
{
    Component calendar(icalcomponent_new(ICAL_VCALENDAR_COMPONENT), &icalcomponent_free);
    icalcomponent_add_property(calendar.get(), icalproperty_new_version("2.0"));
    icalcomponent_add_property(calendar.get(), icalproperty_new_prodid("-//Norva//Meetings//EN"));
    addZoneOnce(calendar.get(), zone, draft.start.date().year() - 1);
    icalcomponent* event = icalcomponent_new(ICAL_VEVENT_COMPONENT);
    icalcomponent_add_property(event, icalproperty_new_uid(uid.toUtf8().constData()));
    applyDraft(event, draft, stamp, zone);
    icalcomponent_add_component(calendar.get(), event);
    return textOfCalendar(calendar.get());
}

std::optional<QByteArray> EventWriter::changed(const QByteArray& file, const EventOccurrence& occurrence,
                                               const EventDraft& draft, const QDateTime& stamp,
                                               const QTimeZone& zone)
{
    Component calendar = parsed(file);
    if (!calendar)
        return std::nullopt;
    const Found found = find(calendar.get(), occurrence);
    icalcomponent* target = found.override;
    if (!target && occurrence.recurrenceId && found.master) {
        // One occurrence of a series: it gets an override of its own, the series stays.
        target = icalcomponent_new_clone(found.master);
        for (icalproperty_kind kind :
             {ICAL_RRULE_PROPERTY, ICAL_RDATE_PROPERTY, ICAL_EXDATE_PROPERTY, ICAL_EXRULE_PROPERTY})
            replaceProperty(target, kind, nullptr);
        replaceProperty(target, ICAL_RECURRENCEID_PROPERTY,
                        timeProperty(ICAL_RECURRENCEID_PROPERTY, *occurrence.recurrenceId, zone));
        icalcomponent_add_component(calendar.get(), target);
    }
    if (!target)
        target = found.master;
    if (!target)
        return std::nullopt;
    addZoneOnce(calendar.get(), zone, draft.start.date().year() - 1);
    applyDraft(target, draft, stamp, zone);
    return textOfCalendar(calendar.get());
}

std::optional<QByteArray> EventWriter::withoutOccurrence(const QByteArray& file,
                                                         const EventOccurrence& occurrence)
{
    Component calendar = parsed(file);
    if (!calendar || !occurrence.recurrenceId)
        return std::nullopt;
    const Found found = find(calendar.get(), occurrence);
    if (!found.master)
        return std::nullopt;
    if (found.override) {
        icalcomponent_remove_component(calendar.get(), found.override);
        icalcomponent_free(found.override);
    }
    const icaltimetype at = icaltime_from_timet_with_zone(occurrence.recurrenceId->toSecsSinceEpoch(), 0,
                                                          icaltimezone_get_utc_timezone());
    icalcomponent_add_property(found.master, icalproperty_new_exdate(at));
    return textOfCalendar(calendar.get());
}

} // namespace norva
