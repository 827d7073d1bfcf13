#include "calendar/CalendarFeature.h"

#include "calendar/CalendarPageModel.h"
#include "calendar/ManualMeetings.h"
#include "calendar/MeetingActivity.h"
#include "calendar/MeetingManager.h"
#include "calendar/MeetingSettings.h"
#include "calendar/VdirEventStore.h"

#include <QDesktopServices>

namespace norva {

CalendarFeature::CalendarFeature(SettingsStore& settings, Clock& clock, LiveActivityCoordinator& activities,
                                 Setup setup)
    : m_settings(std::make_unique<MeetingSettings>(settings)),
      m_manual(std::make_unique<ManualMeetings>(setup.dataFolder, clock)),
      m_store(std::make_unique<VdirEventStore>(setup.calendarsRoot, clock))
{
    // The desktop's URL handler opens a join link in the service's app or the browser.
    m_manager =
        std::make_unique<MeetingManager>(clock, *m_store, *m_manual, *m_settings,
                                         [](const QUrl& link) { return QDesktopServices::openUrl(link); });
    m_page = std::make_unique<CalendarPageModel>(*m_manager, clock);
    MeetingManager* manager = m_manager.get();
    m_activity = std::make_unique<MeetingActivity>(
        activities, clock, [manager](const Meeting& meeting) { manager->join(meeting); },
        std::move(setup.openPage));
    QObject::connect(manager, &MeetingManager::faceMeetingChanged, manager,
                     [this] { m_activity->show(m_manager->faceMeeting()); });
}

CalendarFeature::~CalendarFeature()
{
    stop();
}

void CalendarFeature::start()
{
    m_manager->beginRefreshing();
}

void CalendarFeature::stop()
{
    if (m_manager)
        m_manager->stop();
}

} // namespace norva
