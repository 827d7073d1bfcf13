#include "calendar/MeetingManager.h"

#include "app/Log.h"
#include "calendar/FaceMeetingChooser.h"
#include "calendar/ManualMeetings.h"
#include "calendar/MeetingLinks.h"
#include "calendar/MeetingSettings.h"

#include <QHash>
#include <QLocale>

#include <algorithm>

namespace norva {
namespace {

// An address counts as the person's own when it is on most invitations in their calendars.
constexpr int kFewestInvitationsForAGuess = 2;

QString whenText(const Meeting& meeting, const QTimeZone& zone)
{
    return meeting.start().toTimeZone(zone).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

} // namespace

MeetingManager::MeetingManager(Clock& clock, EventStore& store, ManualMeetings& manual,
                               MeetingSettings& settings, UrlOpener openUrl, QObject* parent)
    : QObject(parent), m_clock(clock), m_store(store), m_manual(manual), m_settings(settings),
      m_openUrl(std::move(openUrl))
{
    connect(&m_store, &EventStore::changed, this, &MeetingManager::refresh);
}

MeetingManager::~MeetingManager() = default;

EventWindow MeetingManager::window() const
{
    const QDateTime now = m_clock.now();
    return {now.addSecs(-kWindowBeforeSecs), now.addSecs(kWindowAfterSecs)};
}

void MeetingManager::beginRefreshing()
{
    if (m_running)
        return;
    m_running = true;
    m_manual.load();
    m_store.start();
    m_windowTick = m_clock.every(kWindowRefresh, [this] { refresh(); });
    recompute(); // the Norva-only meetings show while the calendars are read
    refresh();
}

void MeetingManager::stop()
{
    m_running = false;
    m_windowTick.cancel();
    m_faceTick.cancel();
    m_manual.saveManual();
}

void MeetingManager::refresh()
{
    if (!m_running)
        return;
    // One read at a time; changes during a read get one more read after it.
    if (m_fetching) {
        m_fetchAgain = true;
        return;
    }
    m_fetching = true;
    m_store.fetch(window(), [this](EventStore::Snapshot snapshot) {
        m_fetching = false;
        takeSnapshot(std::move(snapshot));
        if (m_fetchAgain) {
            m_fetchAgain = false;
            refresh();
        }
    });
}

void MeetingManager::takeSnapshot(EventStore::Snapshot snapshot)
{
    const CalendarAccess access = snapshot.readable ? CalendarAccess::granted : CalendarAccess::denied;
    if (access != m_access) {
        if (access == CalendarAccess::denied)
            logLine(QStringLiteral(
                "Norva calendar: asking for calendar access refused (this manager holds stated "
                "events)"));
        m_access = access;
        emit calendarAccessChanged();
    }
    m_calendars = std::move(snapshot.calendars);
    m_upcoming = std::move(snapshot.events);
    std::sort(m_upcoming.begin(), m_upcoming.end(),
              [](const EventInfo& a, const EventInfo& b) { return a.start < b.start; });
    guessAddresses();
    recompute();
}

void MeetingManager::recompute()
{
    QList<Meeting> merged;
    merged.reserve(m_upcoming.size() + m_manual.meetings().size());
    for (const EventInfo& event : m_upcoming)
        merged.append(Meeting(event));
    const EventWindow shown = window();
    for (const ManualMeeting& own : m_manual.meetings()) {
        if (shown.overlaps(own.start, own.end))
            merged.append(Meeting(own));
    }
    std::stable_sort(merged.begin(), merged.end(),
                     [](const Meeting& a, const Meeting& b) { return a.start() < b.start(); });
    if (merged != m_events) {
        m_events = std::move(merged);
        m_days = computeEventDays(m_events, m_zone);
        emit eventsChanged();
    }
    chooseFaceMeeting();
}

QList<CalendarDay> MeetingManager::computeEventDays(const QList<Meeting>& merged, const QTimeZone& zone)
{
    QList<CalendarDay> days;
    for (const Meeting& meeting : merged) {
        const QDate day = meeting.start().toTimeZone(zone).date();
        if (days.isEmpty() || days.back().day != day)
            days.append({day, {}});
        days.back().meetings.append(meeting);
    }
    return days;
}

void MeetingManager::chooseFaceMeeting()
{
    const QDateTime now = m_clock.now();
    const Seconds lead = m_settings.leadTime();
    auto choice = FaceMeetingChooser::choose(m_events, now, lead, m_settings.addresses());
    for (const auto& [meeting, why] : choice.rejected) {
        const QString key = meeting.key() + QLatin1Char('|') + why;
        if (m_loggedRejections.contains(key))
            continue;
        m_loggedRejections.insert(key);
        logLine(QStringLiteral("Norva calendar: ") + meeting.title() + QStringLiteral(" at ") +
                whenText(meeting, m_zone) + QStringLiteral(" stays off the notch (it is not a meeting: ") +
                why + QLatin1Char(')'));
    }
    if (choice.meeting != m_face) {
        m_face = std::move(choice.meeting);
        emit faceMeetingChanged();
    }

    // The next moment the choice can change: a meeting enters its lead time, or the shown one ends.
    QDateTime next;
    const auto consider = [&](const QDateTime& at) {
        if (at > now && (!next.isValid() || at < next))
            next = at;
    };
    const qint64 leadMs = qint64(lead.count() * 1000);
    for (const Meeting& meeting : m_events) {
        consider(meeting.start().addMSecs(-leadMs));
        consider(meeting.end());
    }
    if (next.isValid() && m_running)
        m_faceTick = m_clock.at(next, [this] { chooseFaceMeeting(); });
    else
        m_faceTick.cancel();
}

// The person's addresses, when they never set them: the one address on most of the invitations in
// their calendars is almost surely theirs (every invitation they receive names them).
void MeetingManager::guessAddresses()
{
    if (m_settings.hasAddresses())
        return;
    QHash<QString, int> seen;
    int invitations = 0;
    for (const EventInfo& event : m_upcoming) {
        if (event.attendees.isEmpty())
            continue;
        ++invitations;
        QSet<QString> onThis;
        for (const EventAttendee& attendee : event.attendees)
            onThis.insert(attendee.address);
        for (const QString& address : onThis)
            ++seen[address];
    }
    if (invitations < kFewestInvitationsForAGuess)
        return;
    QString best;
    for (auto it = seen.constBegin(); it != seen.constEnd(); ++it) {
        if (!it.key().isEmpty() && it.value() * 2 > invitations &&
            (best.isEmpty() || it.value() > seen.value(best)))
            best = it.key();
    }
    if (best.isEmpty())
        return;
    m_settings.setAddresses({best});
    logLine(QStringLiteral("Norva calendar: took ") + best +
            QStringLiteral(" as your address, from the invitations in your calendars"));
}

std::optional<Meeting> MeetingManager::meeting(const QString& key) const
{
    for (const Meeting& meeting : m_events) {
        if (meeting.key() == key)
            return meeting;
    }
    for (const ManualMeeting& own : m_manual.meetings()) {
        if (Meeting(own).key() == key)
            return Meeting(own);
    }
    return std::nullopt;
}

void MeetingManager::logWriteFailure(const QString& opening, const QString& action, const QString& why) const
{
    logLine(QStringLiteral("Norva calendar: ") + opening + QStringLiteral(" (") + action +
            QStringLiteral(": ") + why + QLatin1Char(')'));
}

QString MeetingManager::preferredCalendar() const
{
    const QString chosen = m_settings.newEventsCalendar();
    for (const CalendarInfo& calendar : m_calendars) {
        if (calendar.id == chosen)
            return chosen;
    }
    return m_calendars.isEmpty() ? QString() : m_calendars.front().id;
}

bool MeetingManager::addCalendarEvent(const QString& calendarId, const EventDraft& draft)
{
    if (const auto why = m_store.add(calendarId, draft)) {
        logWriteFailure(QStringLiteral("an event was not saved"), QStringLiteral("adding a Norva meeting"),
                        *why);
        return false;
    }
    if (calendarId != m_settings.newEventsCalendar())
        m_settings.setNewEventsCalendar(calendarId);
    refresh();
    return true;
}

bool MeetingManager::updateCalendarEvent(const EventOccurrence& occurrence, const EventDraft& draft)
{
    if (const auto why = m_store.change(occurrence, draft)) {
        logWriteFailure(QStringLiteral("an event was not changed"), QStringLiteral("changing an event"),
                        *why);
        return false;
    }
    refresh();
    return true;
}

bool MeetingManager::deleteCalendarEvent(const EventOccurrence& occurrence)
{
    if (const auto why = m_store.remove(occurrence)) {
        logWriteFailure(QStringLiteral("an event was not deleted"), QStringLiteral("deleting an event"),
                        *why);
        return false;
    }
    refresh();
    return true;
}

void MeetingManager::addManualMeeting(const EventDraft& draft)
{
    m_manual.add({QUuid::createUuid(), draft.title, draft.start, draft.end, draft.joinUrl});
    recompute();
}

bool MeetingManager::updateManualMeeting(const QUuid& id, const EventDraft& draft)
{
    const bool done = m_manual.update({id, draft.title, draft.start, draft.end, draft.joinUrl});
    recompute();
    return done;
}

bool MeetingManager::removeManualMeeting(const QUuid& id)
{
    const bool done = m_manual.remove(id);
    recompute();
    return done;
}

bool MeetingManager::join(const Meeting& meeting)
{
    const auto link = meeting.joinUrl();
    if (!link) {
        logLine(QStringLiteral("Norva calendar: ") + meeting.title() +
                QStringLiteral(" was not joined (it has no link of a known video-call service)"));
        return false;
    }
    if (!m_openUrl(*link)) {
        logLine(QStringLiteral("Norva calendar: ") + meeting.title() +
                QStringLiteral(" was not joined (the desktop did not open its link)"));
        return false;
    }
    return true;
}

std::optional<QUrl> MeetingManager::detectMeetingLink(const QString& text)
{
    return MeetingLinks::detectMeetingLink(text);
}

} // namespace norva
