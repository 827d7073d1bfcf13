#include "calendar/CalendarPageModel.h"

#include "calendar/MeetingLinks.h"

#include <QLocale>

namespace norva {

const QString CalendarPageModel::kNorvaOnly = QStringLiteral("norva");

namespace {

const QString kDateFormat = QStringLiteral("yyyy-MM-dd");
const QString kTimeFormat = QStringLiteral("HH:mm");

QDate firstOfMonth(const QDate& day)
{
    return QDate(day.year(), day.month(), 1);
}

} // namespace

CalendarPageModel::CalendarPageModel(MeetingManager& meetings, Clock& clock, QObject* parent)
    : QObject(parent), m_meetings(meetings), m_clock(clock)
{
    m_month = firstOfMonth(today());
    connect(&m_meetings, &MeetingManager::eventsChanged, this, &CalendarPageModel::refresh);
    connect(&m_meetings, &MeetingManager::calendarAccessChanged, this, &CalendarPageModel::refresh);
    refresh();
}

void CalendarPageModel::refresh()
{
    m_days.setRows(dayRows());
    m_monthCells.setRows(monthRows());
    m_calendars.setRows(calendarRows());
    m_dayTurn = m_clock.at(today().addDays(1).startOfDay(m_meetings.timeZone()), [this] { refresh(); });
    emit changed();
}

QDate CalendarPageModel::today() const
{
    return m_clock.now().toTimeZone(m_meetings.timeZone()).date();
}

QString CalendarPageModel::colorOf(const Meeting& meeting) const
{
    if (const EventInfo* event = meeting.event()) {
        for (const CalendarInfo& calendar : m_meetings.calendars()) {
            if (calendar.id == event->ekOccurrence.calendarId)
                return calendar.color;
        }
    }
    return {}; // the theme's accent
}

QString CalendarPageModel::calendarNameOf(const Meeting& meeting) const
{
    const EventInfo* event = meeting.event();
    if (!event)
        return QStringLiteral("Norva only");
    for (const CalendarInfo& calendar : m_meetings.calendars()) {
        if (calendar.id == event->ekOccurrence.calendarId)
            return calendar.name;
    }
    return event->ekOccurrence.calendarId;
}

QVariantMap CalendarPageModel::rowOf(const Meeting& meeting) const
{
    const QTimeZone& zone = m_meetings.timeZone();
    QString time;
    if (meeting.allDay()) {
        time = QStringLiteral("All day");
    } else {
        time = Meeting::clockText(meeting.start(), zone) + QStringLiteral("–") +
               Meeting::clockText(meeting.end(), zone);
    }
    const auto link = meeting.joinUrl();
    const auto service = link ? MeetingLinks::serviceOf(*link) : std::nullopt;
    const EventInfo* event = meeting.event();
    return {
        {QStringLiteral("key"), meeting.key()},
        {QStringLiteral("time"), time},
        {QStringLiteral("title"), meeting.title().isEmpty() ? QStringLiteral("(no title)") : meeting.title()},
        {QStringLiteral("color"), colorOf(meeting)},
        {QStringLiteral("calendar"), calendarNameOf(meeting)},
        {QStringLiteral("canJoin"), link.has_value()},
        {QStringLiteral("service"), service ? service->service : QString()},
        {QStringLiteral("norvaOnly"), meeting.isNorvaOnly()},
        {QStringLiteral("cancelled"), event && event->cancelled}};
}

QVariantList CalendarPageModel::dayRows() const
{
    QVariantList list;
    const QDate now = today();
    const QLocale locale;
    for (const CalendarDay& day : m_meetings.eventDays()) {
        QString label = locale.toString(day.day, QStringLiteral("dddd d MMMM"));
        if (day.day == now)
            label = QStringLiteral("Today · ") + label;
        else if (day.day == now.addDays(1))
            label = QStringLiteral("Tomorrow · ") + label;
        QVariantList rows;
        for (const Meeting& meeting : day.meetings)
            rows.append(rowOf(meeting));
        list.append(QVariantMap{{QStringLiteral("date"), day.day.toString(kDateFormat)},
                                {QStringLiteral("label"), label},
                                {QStringLiteral("events"), rows}});
    }
    return list;
}

QString CalendarPageModel::monthTitle() const
{
    return QLocale().toString(m_month, QStringLiteral("MMMM yyyy"));
}

QVariantList CalendarPageModel::monthRows() const
{
    const QLocale locale;
    const int firstWeekday = int(locale.firstDayOfWeek());
    const int lead = (m_month.dayOfWeek() - firstWeekday + 7) % 7;
    const QDate first = m_month.addDays(-lead);
    QHash<QDate, QStringList> dots;
    for (const CalendarDay& day : m_meetings.eventDays()) {
        for (const Meeting& meeting : day.meetings) {
            QStringList& colors = dots[day.day];
            if (colors.size() < kDotsPerCell)
                colors.append(colorOf(meeting));
        }
    }
    QVariantList cells;
    const QDate now = today();
    for (int i = 0; i < kMonthCells; ++i) {
        const QDate day = first.addDays(i);
        cells.append(QVariantMap{{QStringLiteral("date"), day.toString(kDateFormat)},
                                 {QStringLiteral("day"), day.day()},
                                 {QStringLiteral("inMonth"), day.month() == m_month.month()},
                                 {QStringLiteral("isToday"), day == now},
                                 {QStringLiteral("dots"), dots.value(day)}});
    }
    return cells;
}

QVariantList CalendarPageModel::calendarRows() const
{
    QVariantList list;
    for (const CalendarInfo& calendar : m_meetings.calendars()) {
        list.append(QVariantMap{{QStringLiteral("id"), calendar.id},
                                {QStringLiteral("name"), calendar.name},
                                {QStringLiteral("color"), calendar.color}});
    }
    list.append(QVariantMap{{QStringLiteral("id"), kNorvaOnly},
                            {QStringLiteral("name"), QStringLiteral("Norva only")},
                            {QStringLiteral("color"), QString()}});
    return list;
}

QString CalendarPageModel::emptyText() const
{
    if (m_meetings.calendarAccess() == MeetingManager::CalendarAccess::denied)
        return QStringLiteral("Norva can't read your calendars folder. Check that it is yours and readable.");
    if (!m_meetings.eventDays().isEmpty())
        return {};
    if (m_meetings.calendars().isEmpty())
        return QStringLiteral("No calendars yet. Add a meeting here, or set up khal or vdirsyncer.");
    return QStringLiteral("Nothing in the next two weeks.");
}

void CalendarPageModel::previousMonth()
{
    m_month = m_month.addMonths(-1);
    refresh();
}

void CalendarPageModel::nextMonth()
{
    m_month = m_month.addMonths(1);
    refresh();
}

int CalendarPageModel::dayIndex(const QString& isoDate) const
{
    const QDate wanted = QDate::fromString(isoDate, kDateFormat);
    const QList<CalendarDay>& days = m_meetings.eventDays();
    for (int i = 0; i < days.size(); ++i) {
        if (days[i].day == wanted)
            return i;
    }
    return -1;
}

bool CalendarPageModel::join(const QString& key)
{
    const auto meeting = m_meetings.meeting(key);
    if (!meeting || !m_meetings.join(*meeting)) {
        say(QStringLiteral("That meeting couldn't be opened."));
        return false;
    }
    return true;
}

QString CalendarPageModel::detectLink(const QString& text) const
{
    const auto link = MeetingManager::detectMeetingLink(text);
    return link ? link->toString(QUrl::FullyEncoded) : QString();
}

QString CalendarPageModel::serviceOf(const QString& link) const
{
    const auto service = MeetingLinks::serviceOf(QUrl(link));
    return service ? service->service : QString();
}

QVariantMap CalendarPageModel::formFor(const QString& key) const
{
    const QTimeZone& zone = m_meetings.timeZone();
    const auto meeting = key.isEmpty() ? std::nullopt : m_meetings.meeting(key);
    if (!meeting) {
        // A new meeting starts at the next whole hour, for half an hour.
        QDateTime start = m_clock.now().toTimeZone(zone);
        start = QDateTime(start.date(), QTime(start.time().hour(), 0), zone).addSecs(60 * 60);
        const QString preferred = m_meetings.preferredCalendar();
        const QString calendar = preferred.isEmpty() ? kNorvaOnly : preferred;
        return {{QStringLiteral("key"), QString()},
                {QStringLiteral("title"), QString()},
                {QStringLiteral("date"), start.date().toString(kDateFormat)},
                {QStringLiteral("start"), start.time().toString(kTimeFormat)},
                {QStringLiteral("end"), start.addSecs(30 * 60).time().toString(kTimeFormat)},
                {QStringLiteral("link"), QString()},
                {QStringLiteral("calendar"), calendar},
                {QStringLiteral("editable"), true}};
    }
    const QDateTime start = meeting->start().toTimeZone(zone);
    const QDateTime end = meeting->end().toTimeZone(zone);
    const auto link = meeting->joinUrl();
    return {{QStringLiteral("key"), key},
            {QStringLiteral("title"), meeting->title()},
            {QStringLiteral("date"), start.date().toString(kDateFormat)},
            {QStringLiteral("start"), start.time().toString(kTimeFormat)},
            {QStringLiteral("end"), end.time().toString(kTimeFormat)},
            {QStringLiteral("link"), link ? link->toString(QUrl::FullyEncoded) : QString()},
            {QStringLiteral("calendar"),
             meeting->event() ? meeting->event()->ekOccurrence.calendarId : kNorvaOnly},
            {QStringLiteral("editable"), !meeting->allDay()}};
}

bool CalendarPageModel::save(const QVariantMap& form)
{
    const QTimeZone& zone = m_meetings.timeZone();
    const QDate date =
        QDate::fromString(form.value(QStringLiteral("date")).toString().trimmed(), kDateFormat);
    const QTime from =
        QTime::fromString(form.value(QStringLiteral("start")).toString().trimmed(), kTimeFormat);
    const QTime to = QTime::fromString(form.value(QStringLiteral("end")).toString().trimmed(), kTimeFormat);
    if (!date.isValid() || !from.isValid() || !to.isValid()) {
        say(QStringLiteral(
            "That date or time doesn't read as one (2026-11-18, 09:30). Your words are still here."));
        return false;
    }
    EventDraft draft;
    draft.title = form.value(QStringLiteral("title")).toString().trimmed();
    if (draft.title.isEmpty())
        draft.title = QStringLiteral("Meeting");
    draft.start = QDateTime(date, from, zone);
    draft.end = QDateTime(to <= from ? date.addDays(1) : date, to, zone); // past midnight: the next day
    const QString pasted = form.value(QStringLiteral("link")).toString().trimmed();
    if (!pasted.isEmpty()) {
        draft.joinUrl = MeetingManager::detectMeetingLink(pasted);
        if (!draft.joinUrl) {
            say(QStringLiteral(
                "That link isn't one Norva can join (Zoom, Meet, Teams, Webex or Whereby). Your "
                "words are still here."));
            return false;
        }
    }

    const QString key = form.value(QStringLiteral("key")).toString();
    const QString calendar = form.value(QStringLiteral("calendar")).toString();
    const auto existing = key.isEmpty() ? std::nullopt : m_meetings.meeting(key);
    bool saved = false;
    if (!existing) {
        if (calendar == kNorvaOnly || calendar.isEmpty()) {
            m_meetings.addManualMeeting(draft);
            saved = true;
        } else {
            saved = m_meetings.addCalendarEvent(calendar, draft);
        }
    } else if (const ManualMeeting* own = existing->manual()) {
        saved = m_meetings.updateManualMeeting(own->id, draft);
    } else {
        saved = m_meetings.updateCalendarEvent(existing->event()->ekOccurrence, draft);
    }
    if (!saved)
        say(QStringLiteral("That meeting wasn't saved. Your words are still here."));
    return saved;
}

bool CalendarPageModel::remove(const QString& key)
{
    const auto meeting = m_meetings.meeting(key);
    if (!meeting)
        return false;
    const bool done = meeting->manual() ? m_meetings.removeManualMeeting(meeting->manual()->id)
                                        : m_meetings.deleteCalendarEvent(meeting->event()->ekOccurrence);
    if (!done)
        say(QStringLiteral("That meeting wasn't deleted."));
    return done;
}

void CalendarPageModel::say(const QString& notice)
{
    m_notice = notice;
    emit noticeChanged();
}

void CalendarPageModel::dismissNotice()
{
    if (m_notice.isEmpty())
        return;
    m_notice.clear();
    emit noticeChanged();
}

} // namespace norva
