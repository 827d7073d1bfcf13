#pragma once

#include "app/Clock.h"
#include "calendar/CalendarDay.h"
#include "calendar/EventDraft.h"
#include "calendar/EventStore.h"
#include "calendar/Meeting.h"

#include <QObject>
#include <QSet>
#include <QTimeZone>

#include <functional>
#include <optional>

namespace norva {

class ManualMeetings;
class MeetingSettings;

// Gathers the person's upcoming events from their calendars and their Norva-only meetings, finds
// each one's join link, groups them by day for the calendar page and picks the meeting the closed
// notch offers (faceMeeting). Main thread; the calendars are read off it by the event store.
class MeetingManager : public QObject {
    Q_OBJECT
public:
    enum class CalendarAccess { notAsked, granted, denied };

    // The window of events Norva looks at: from an hour ago to two weeks ahead.
    static constexpr qint64 kWindowBeforeSecs = 60 * 60;
    static constexpr qint64 kWindowAfterSecs = 14 * 24 * 60 * 60; // 1,209,600 s
    // The window moves on with time; nothing else needs a fresh read while the calendars are still.
    static constexpr Seconds kWindowRefresh{60 * 60};

    using UrlOpener = std::function<bool(const QUrl&)>;

    MeetingManager(Clock& clock, EventStore& store, ManualMeetings& manual, MeetingSettings& settings,
                   UrlOpener openUrl, QObject* parent = nullptr);
    ~MeetingManager() override;

    // Starts following the calendars and the clock; refresh() reads them again now.
    void beginRefreshing();
    void refresh();
    void stop();

    CalendarAccess calendarAccess() const { return m_access; }
    const QList<CalendarInfo>& calendars() const { return m_calendars; }
    const QList<EventInfo>& upcomingEvents() const { return m_upcoming; }
    QList<Meeting> events() const { return m_events; }
    const QList<CalendarDay>& eventDays() const { return m_days; }
    const std::optional<Meeting>& faceMeeting() const { return m_face; }
    std::optional<Meeting> meeting(const QString& key) const;
    // The calendar a new meeting goes into: the one chosen last, while it exists, else the first.
    QString preferredCalendar() const;
    EventWindow window() const;

    bool addCalendarEvent(const QString& calendarId, const EventDraft& draft);
    bool updateCalendarEvent(const EventOccurrence& occurrence, const EventDraft& draft);
    bool deleteCalendarEvent(const EventOccurrence& occurrence);
    void addManualMeeting(const EventDraft& draft);
    bool updateManualMeeting(const QUuid& id, const EventDraft& draft);
    bool removeManualMeeting(const QUuid& id);

    bool join(const Meeting& meeting);
    static std::optional<QUrl> detectMeetingLink(const QString& text);

    // The person's zone for days and all-day events (the system's, unless a test says otherwise).
    void setTimeZone(const QTimeZone& zone) { m_zone = zone; }
    const QTimeZone& timeZone() const { return m_zone; }

    // Merged and grouped: Norva-only meetings beside the calendar's, by the local day they start.
    static QList<CalendarDay> computeEventDays(const QList<Meeting>& merged, const QTimeZone& zone);

signals:
    void eventsChanged();
    void faceMeetingChanged();
    void calendarAccessChanged();

private:
    void takeSnapshot(EventStore::Snapshot snapshot);
    void recompute();
    void chooseFaceMeeting();
    void guessAddresses();
    void logWriteFailure(const QString& opening, const QString& action, const QString& why) const;

    Clock& m_clock;
    EventStore& m_store;
    ManualMeetings& m_manual;
    MeetingSettings& m_settings;
    UrlOpener m_openUrl;
    QTimeZone m_zone = QTimeZone::systemTimeZone();
    CalendarAccess m_access = CalendarAccess::notAsked;
    QList<CalendarInfo> m_calendars;
    QList<EventInfo> m_upcoming;
    QList<Meeting> m_events;
    QList<CalendarDay> m_days;
    std::optional<Meeting> m_face;
    QSet<QString> m_loggedRejections;
    bool m_running = false;
    bool m_fetching = false;
    bool m_fetchAgain = false;
    ScheduledWork m_windowTick;
    ScheduledWork m_faceTick;
};

} // namespace norva
