#pragma once

#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class CalendarPageModel;
class EventStore;
class ManualMeetings;
class MeetingActivity;
class MeetingManager;
class MeetingSettings;
class Shell;

// Meetings from the person's calendars folder (the one khal and todoman use) and Norva's own: the
// manager, the calendar page's model and the closed notch's "meeting". The demo reads none of the
// person's own, so its page stays empty.
class CalendarModule : public FeatureModule {
    Q_OBJECT
public:
    explicit CalendarModule(Shell& shell);
    ~CalendarModule() override;

    void start() override;
    // A Norva-only meeting saved a moment ago is written now.
    void stop() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

private:
    Shell& m_shell;
    std::unique_ptr<MeetingSettings> m_settings;
    std::unique_ptr<ManualMeetings> m_manual;
    std::unique_ptr<EventStore> m_store;
    std::unique_ptr<MeetingManager> m_manager;
    std::unique_ptr<CalendarPageModel> m_page;
    std::unique_ptr<MeetingActivity> m_activity;
};

} // namespace norva
