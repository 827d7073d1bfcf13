#include "calendar/EventReader.h"

#include "calendar/MeetingLinks.h"

#include <QHash>
#include <QSet>

#include <libical/ical.h>

#include <memory>

namespace norva {
namespace {

using Component = std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)>;

QString textOf(const char* text)
{
    return text ? QString::fromUtf8(text) : QString();
}

QString addressOf(const char* value)
{
    QString address = textOf(value).trimmed();
    if (address.startsWith(QLatin1String("mailto:"), Qt::CaseInsensitive))
        address = address.mid(7);
    return address.toLower();
}

// Places iCalendar times on the time line. Zones come from the file's own VTIMEZONE first, then the
// system's zone database (by IANA name, then by Windows name, as Outlook writes them); a zone that
// neither knows leaves the time floating, on the local clock.
class TimePlacer {
public:
    TimePlacer(icalcomponent* root, const QTimeZone& local) : m_root(root), m_local(local) {}

    QDateTime place(icaltimetype value, const QString& tzid)
    {
        if (icaltime_is_null_time(value) || !icaltime_is_valid_time(value))
            return {};
        const QDate date(value.year, value.month, value.day);
        if (value.is_date)
            return QDateTime(date, QTime(0, 0), m_local);
        const QTime time(value.hour, value.minute, value.second);
        if (icaltime_is_utc(value))
            return QDateTime(date, time, Qt::UTC);
        if (tzid.isEmpty())
            return QDateTime(date, time, m_local);
        if (icaltimezone* own = fileZone(tzid)) {
            value.zone = nullptr;
            return QDateTime::fromSecsSinceEpoch(icaltime_as_timet_with_zone(value, own), Qt::UTC);
        }
        return QDateTime(date, time, systemZone(tzid));
    }

    // The wall time of an instant in the zone a rule repeats in, for starting a rule near the window.
    QDateTime inZone(const QDateTime& instant, const QString& tzid)
    {
        if (tzid.isEmpty() || fileZone(tzid))
            return instant.toTimeZone(m_local);
        return instant.toTimeZone(systemZone(tzid));
    }

private:
    icaltimezone* fileZone(const QString& tzid)
    {
        if (!m_root || tzid.isEmpty())
            return nullptr;
        return icalcomponent_get_timezone(m_root, tzid.toUtf8().constData());
    }

    QTimeZone systemZone(const QString& tzid)
    {
        auto found = m_system.constFind(tzid);
        if (found != m_system.constEnd())
            return *found;
        QTimeZone zone(tzid.toUtf8());
        if (!zone.isValid()) {
            const QByteArray iana = QTimeZone::windowsIdToDefaultIanaId(tzid.toUtf8());
            zone = iana.isEmpty() ? m_local : QTimeZone(iana);
        }
        if (!zone.isValid())
            zone = m_local;
        m_system.insert(tzid, zone);
        return zone;
    }

    icalcomponent* m_root;
    QTimeZone m_local;
    QHash<QString, QTimeZone> m_system;
};

QString tzidOf(icalproperty* property)
{
    icalparameter* parameter =
        property ? icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER) : nullptr;
    return parameter ? textOf(icalparameter_get_tzid(parameter)) : QString();
}

QDateTime placedProperty(icalcomponent* event, icalproperty_kind kind, TimePlacer& placer)
{
    icalproperty* property = icalcomponent_get_first_property(event, kind);
    if (!property)
        return {};
    icalvalue* value = icalproperty_get_value(property);
    if (!value)
        return {};
    return placer.place(icalvalue_get_datetime(value), tzidOf(property));
}

// The parts of one VEVENT that every occurrence of it shares.
struct EventShape {
    icalcomponent* component = nullptr;
    EventInfo info; // with the first occurrence's start and end
    QString startTzid;
    icaltimetype rawStart{};
    qint64 lengthSecs = 0; // timed events
    qint64 lengthDays = 0; // all-day events: local days, so a clock change keeps them whole
};

std::optional<EventShape> shapeOf(icalcomponent* event, TimePlacer& placer, const QTimeZone& local)
{
    EventShape shape;
    shape.component = event;
    icalproperty* startProperty = icalcomponent_get_first_property(event, ICAL_DTSTART_PROPERTY);
    if (!startProperty)
        return std::nullopt;
    shape.rawStart = icalproperty_get_dtstart(startProperty);
    shape.startTzid = tzidOf(startProperty);
    EventInfo& info = shape.info;
    info.start = placer.place(shape.rawStart, shape.startTzid);
    if (!info.start.isValid())
        return std::nullopt;
    info.allDay = shape.rawStart.is_date;

    QDateTime end = placedProperty(event, ICAL_DTEND_PROPERTY, placer);
    if (!end.isValid()) {
        if (icalproperty* duration = icalcomponent_get_first_property(event, ICAL_DURATION_PROPERTY)) {
            const int seconds = icaldurationtype_as_int(icalproperty_get_duration(duration));
            end = info.allDay ? info.start.addDays(seconds / 86400) : info.start.addSecs(seconds);
        }
    }
    if (!end.isValid() || end < info.start)
        end = info.allDay ? info.start.addDays(1) : info.start;
    if (info.allDay) {
        shape.lengthDays = std::max<qint64>(1, info.start.date().daysTo(end.toTimeZone(local).date()));
        end = info.start.addDays(shape.lengthDays);
    }
    shape.lengthSecs = info.start.secsTo(end);
    info.end = end;

    info.title = textOf(icalcomponent_get_summary(event));
    info.location = textOf(icalcomponent_get_location(event));
    info.notes = textOf(icalcomponent_get_description(event));
    info.cancelled = icalcomponent_get_status(event) == ICAL_STATUS_CANCELLED;
    if (icalproperty* url = icalcomponent_get_first_property(event, ICAL_URL_PROPERTY))
        info.url = QUrl(textOf(icalproperty_get_url(url)));
    info.joinUrl = MeetingLinks::joinURL(info.url, info.location, info.notes);
    if (icalproperty* organizer = icalcomponent_get_first_property(event, ICAL_ORGANIZER_PROPERTY))
        info.organizer = addressOf(icalproperty_get_organizer(organizer));
    for (icalproperty* attendee = icalcomponent_get_first_property(event, ICAL_ATTENDEE_PROPERTY); attendee;
         attendee = icalcomponent_get_next_property(event, ICAL_ATTENDEE_PROPERTY)) {
        icalparameter* partstat = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
        const bool declined = partstat && icalparameter_get_partstat(partstat) == ICAL_PARTSTAT_DECLINED;
        info.attendees.append({addressOf(icalproperty_get_attendee(attendee)), declined});
    }
    info.ekOccurrence.uid = textOf(icalcomponent_get_uid(event));
    return shape;
}

EventInfo occurrenceAt(const EventShape& shape, const QDateTime& start)
{
    EventInfo info = shape.info;
    info.start = start;
    info.end = shape.info.allDay ? start.addDays(shape.lengthDays) : start.addSecs(shape.lengthSecs);
    return info;
}

// The instants at which a repeating event occurs up to the window's end: its rules' dates and its
// extra dates, less its exception dates, each with its first occurrence.
QList<QDateTime> occurrenceStarts(const EventShape& shape, const EventWindow& window, TimePlacer& placer)
{
    icalcomponent* event = shape.component;
    QList<QDateTime> starts{shape.info.start};
    // A rule is started near the window rather than at its first date, which may lie years back.
    const QDateTime skipTo =
        placer.inZone(window.from.addSecs(-shape.lengthSecs).addDays(-1), shape.startTzid);
    for (icalproperty* rule = icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY); rule;
         rule = icalcomponent_get_next_property(event, ICAL_RRULE_PROPERTY)) {
        const icalrecurrencetype recurrence = icalproperty_get_rrule(rule);
        icaltimetype first = shape.rawStart;
        first.zone = nullptr; // the rule repeats on the wall clock of its own zone
        std::unique_ptr<icalrecur_iterator, decltype(&icalrecur_iterator_free)> steps(
            icalrecur_iterator_new(recurrence, first), &icalrecur_iterator_free);
        if (!steps)
            continue;
        if (recurrence.count == 0 && skipTo > shape.info.start) {
            icaltimetype from = first;
            from.year = skipTo.date().year();
            from.month = skipTo.date().month();
            from.day = skipTo.date().day();
            icalrecur_iterator_set_start(steps.get(), from);
        }
        for (int step = 0; step < EventReader::kMostSteps; ++step) {
            const icaltimetype next = icalrecur_iterator_next(steps.get());
            if (icaltime_is_null_time(next))
                break;
            const QDateTime start = placer.place(next, shape.startTzid);
            if (!start.isValid() || start >= window.to)
                break;
            starts.append(start);
        }
    }
    for (icalproperty* extra = icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY); extra;
         extra = icalcomponent_get_next_property(event, ICAL_RDATE_PROPERTY)) {
        const icaldatetimeperiodtype rdate = icalproperty_get_rdate(extra);
        const icaltimetype when = icaltime_is_null_time(rdate.time) ? rdate.period.start : rdate.time;
        const QDateTime start = placer.place(when, tzidOf(extra));
        if (start.isValid())
            starts.append(start);
    }
    QSet<qint64> excluded;
    QSet<QDate> excludedDays; // a date-only exception removes that day's occurrence
    for (icalproperty* exception = icalcomponent_get_first_property(event, ICAL_EXDATE_PROPERTY); exception;
         exception = icalcomponent_get_next_property(event, ICAL_EXDATE_PROPERTY)) {
        const icaltimetype when = icalproperty_get_exdate(exception);
        const QDateTime at = placer.place(when, tzidOf(exception));
        if (!at.isValid())
            continue;
        if (when.is_date)
            excludedDays.insert(at.date());
        excluded.insert(at.toMSecsSinceEpoch());
    }
    std::sort(starts.begin(), starts.end());
    starts.erase(std::unique(starts.begin(), starts.end()), starts.end());
    QList<QDateTime> kept;
    for (const QDateTime& start : starts) {
        const bool dropped = excluded.contains(start.toMSecsSinceEpoch()) ||
                             (!excludedDays.isEmpty() &&
                              excludedDays.contains(start.toTimeZone(shape.info.start.timeZone()).date()));
        if (!dropped)
            kept.append(start);
    }
    return kept;
}

bool repeats(icalcomponent* event)
{
    return icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY) ||
           icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY);
}

} // namespace

EventReader::Result EventReader::read(const QByteArray& icalendar, const EventWindow& window,
                                      const QTimeZone& local)
{
    Component root(icalparser_parse_string(icalendar.constData()), &icalcomponent_free);
    if (!root) {
        Result result;
        result.failure = QStringLiteral("it is not iCalendar");
        return result;
    }
    return read(root.get(), window, local);
}

EventReader::Result EventReader::read(const icalcomponent* parsed, const EventWindow& window,
                                      const QTimeZone& local)
{
    Result result;
    // libical's getters take a non-const component; nothing below changes it.
    auto* calendar = const_cast<icalcomponent*>(parsed);
    if (icalcomponent_isa(calendar) != ICAL_VCALENDAR_COMPONENT) {
        result.failure = QStringLiteral("it holds no VCALENDAR");
        return result;
    }
    TimePlacer placer(calendar, local);

    // Occurrences that an override moved or cancelled, by UID and original start.
    QList<EventShape> masters;
    QList<std::pair<EventShape, QDateTime>> overrides;
    int unreadable = 0;
    for (icalcomponent* event = icalcomponent_get_first_component(calendar, ICAL_VEVENT_COMPONENT); event;
         event = icalcomponent_get_next_component(calendar, ICAL_VEVENT_COMPONENT)) {
        std::optional<EventShape> shape = shapeOf(event, placer, local);
        if (!shape) {
            ++unreadable;
            continue;
        }
        const QDateTime recurrenceId = placedProperty(event, ICAL_RECURRENCEID_PROPERTY, placer);
        if (recurrenceId.isValid())
            overrides.append({std::move(*shape), recurrenceId});
        else
            masters.append(std::move(*shape));
    }
    if (masters.isEmpty() && overrides.isEmpty()) {
        result.failure = unreadable > 0 ? QStringLiteral("its event has no start Norva can read")
                                        : QStringLiteral("it holds no event");
        return result;
    }

    QHash<QString, QSet<qint64>> overridden; // uid -> original starts replaced by an override
    for (auto& [shape, originalStart] : overrides) {
        EventInfo info = shape.info;
        info.recurring = true;
        info.ekOccurrence.recurrenceId = originalStart;
        overridden[info.ekOccurrence.uid].insert(originalStart.toMSecsSinceEpoch());
        if (window.overlaps(info.start, info.end))
            result.events.append(std::move(info));
    }
    for (const EventShape& shape : masters) {
        if (!repeats(shape.component)) {
            if (window.overlaps(shape.info.start, shape.info.end))
                result.events.append(shape.info);
            continue;
        }
        const QSet<qint64> replaced = overridden.value(shape.info.ekOccurrence.uid);
        for (const QDateTime& start : occurrenceStarts(shape, window, placer)) {
            if (replaced.contains(start.toMSecsSinceEpoch()))
                continue;
            EventInfo info = occurrenceAt(shape, start);
            if (!window.overlaps(info.start, info.end))
                continue;
            info.recurring = true;
            info.ekOccurrence.recurrenceId = start;
            result.events.append(std::move(info));
        }
    }
    return result;
}

} // namespace norva
