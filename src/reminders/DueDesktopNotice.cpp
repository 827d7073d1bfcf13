#include "reminders/DueDesktopNotice.h"

#include "agents/prompts/PromptAlerts.h"

#include <QObject>

namespace norva {

DueDesktopNotice::DueDesktopNotice(PromptAlerts& notifications, std::function<bool()> notchCovered)
    : m_notifications(notifications), m_notchCovered(std::move(notchCovered))
{}

void DueDesktopNotice::tell(const DueAlertMonitor::TaskDue& task) const
{
    if (m_notchCovered && m_notchCovered())
        m_notifications.notify(QObject::tr("Due now"), task.title);
}

} // namespace norva
