#pragma once

#include "agents/PromptAlerts.h"

#include <QString>

namespace norva {

// Prompt alerts on a freedesktop desktop: the notification through org.freedesktop.Notifications on
// the session bus, the chime through the sound theme's "message-new-instant" played by
// canberra-gtk-play. Where either is missing Norva stays silent rather than noisy.
class DesktopPromptAlerts final : public PromptAlerts {
public:
    void chime() override;
    void notify(const QString& title, const QString& body) override;

    static const QString chimeSound;
};

} // namespace norva
