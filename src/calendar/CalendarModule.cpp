#include "calendar/CalendarModule.h"

#include "app/Paths.h"
#include "calendar/CalendarPageModel.h"
#include "calendar/ManualMeetings.h"
#include "calendar/MeetingActivity.h"
#include "calendar/MeetingManager.h"
#include "calendar/MeetingSettings.h"
#include "calendar/VdirEventStore.h"
#include "shell/Shell.h"
#include "storage/VdirRoot.h"

#include <QDesktopServices>

namespace norva {
namespace {

const QString kPageId = QStringLiteral("calendar");

} // namespace

CalendarModule::CalendarModule(Shell& shell)
    : m_shell(shell), m_settings(std::make_unique<MeetingSettings>(shell.settings())),
      m_manual(std::make_unique<ManualMeetings>(shell.dataFolder(), shell.clock())),
      m_store(std::make_unique<VdirEventStore>(VdirRoot::locate({}), shell.clock()))
{
    // The desktop's URL handler opens a join link in the service's app or the browser.
    m_manager =
        std::make_unique<MeetingManager>(shell.clock(), *m_store, *m_manual, *m_settings,
                                         [](const QUrl& link) { return QDesktopServices::openUrl(link); });
    m_page = std::make_unique<CalendarPageModel>(*m_manager, shell.clock());
    MeetingManager* manager = m_manager.get();
    m_activity = std::make_unique<MeetingActivity>(
        shell.activities(), shell.clock(), [manager](const Meeting& meeting) { manager->join(meeting); },
        [this] { m_shell.openPage(kPageId); });
    connect(manager, &MeetingManager::faceMeetingChanged, this,
            [this] { m_activity->show(m_manager->faceMeeting()); });
}

CalendarModule::~CalendarModule() = default;

void CalendarModule::start()
{
    if (!m_shell.demo().on)
        m_manager->beginRefreshing();
}

void CalendarModule::stop()
{
    m_manager->stop();
}

QList<FeaturePage> CalendarModule::pages() const
{
    return {{kPageId, QStringLiteral("Calendar"), QStringLiteral("CalendarPage.qml"),
             QStringLiteral("Your next meetings will be here."), 60}};
}

QList<QObject*> CalendarModule::qmlObjects() const
{
    return {m_page.get()};
}

} // namespace norva
