#pragma once

#include "agents/prompts/PromptAlerts.h"

#include <QDBusConnection>
#include <QString>

namespace norva {

// Prompt alerts on a freedesktop desktop: the notification through org.freedesktop.Notifications on
// the session bus, the chime through the sound theme's "message-new-instant" played by
// canberra-gtk-play. Where either is missing Norva stays silent rather than noisy.
class DesktopPromptAlerts final : public PromptAlerts {
public:
    explicit DesktopPromptAlerts(QDBusConnection bus = QDBusConnection::sessionBus()) : m_bus(std::move(bus))
    {}

    void chime() override;
    void notify(const QString& title, const QString& body) override;

    static const QString chimeSound;

private:
    QDBusConnection m_bus;
};

} // namespace norva
