#pragma once

#include "reminders/DueAlertMonitor.h"

#include <functional>

namespace norva {

class PromptAlerts;

// A due to-do the person cannot see on the notch: while a full-screen window covers the notch
// (a film, a presentation), the alert also goes to the desktop as a notification, so it is not
// missed. With the notch in sight the closed notch alone shows it.
class DueDesktopNotice {
public:
    DueDesktopNotice(PromptAlerts& notifications, std::function<bool()> notchCovered);

    // For DueAlertMonitor::Operations::notifyDesktop.
    void tell(const DueAlertMonitor::TaskDue& task) const;

private:
    PromptAlerts& m_notifications;
    std::function<bool()> m_notchCovered;
};

} // namespace norva
