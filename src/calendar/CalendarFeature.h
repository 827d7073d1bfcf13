#pragma once

#include "app/Clock.h"

#include <QString>

#include <functional>
#include <memory>

namespace norva {

class CalendarPageModel;
class EventStore;
class LiveActivityCoordinator;
class ManualMeetings;
class MeetingActivity;
class MeetingManager;
class MeetingSettings;
class SettingsStore;

// Everything of the meetings in one place for start-up: the person's calendars folder, the
// Norva-only meetings, the manager, the calendar page's model and the closed notch's "meeting".
class CalendarFeature {
public:
    struct Setup {
        QString calendarsRoot; // the vdir root of the person's calendars
        QString dataFolder;    // Norva's own, for the Norva-only meetings
        std::function<void()> openPage;
    };

    CalendarFeature(SettingsStore& settings, Clock& clock, LiveActivityCoordinator& activities, Setup setup);
    ~CalendarFeature();

    void start();
    void stop();

    MeetingManager& manager() const { return *m_manager; }
    CalendarPageModel& page() const { return *m_page; }

private:
    std::unique_ptr<MeetingSettings> m_settings;
    std::unique_ptr<ManualMeetings> m_manual;
    std::unique_ptr<EventStore> m_store;
    std::unique_ptr<MeetingManager> m_manager;
    std::unique_ptr<CalendarPageModel> m_page;
    std::unique_ptr<MeetingActivity> m_activity;
};

} // namespace norva
