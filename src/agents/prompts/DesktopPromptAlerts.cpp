#include "agents/prompts/DesktopPromptAlerts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QVariantMap>

namespace norva {

const QString DesktopPromptAlerts::chimeSound = QStringLiteral("message-new-instant");

namespace {
constexpr int notificationTimeoutDefault = -1; // the notification server decides how long it shows
}

void DesktopPromptAlerts::chime()
{
    const QString player = QStandardPaths::findExecutable(QStringLiteral("canberra-gtk-play"));
    if (player.isEmpty())
        return;
    QProcess::startDetached(
        player, {QStringLiteral("-i"), chimeSound, QStringLiteral("-d"), QStringLiteral("Norva")});
}

void DesktopPromptAlerts::notify(const QString& title, const QString& body)
{
    if (!m_bus.isConnected())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    // Servers with "body-markup" read the body as markup; a command or path must show as written.
    call << QStringLiteral("Norva") << uint(0) << QString() << title << body.toHtmlEscaped() << QStringList()
         << QVariantMap() << notificationTimeoutDefault;
    m_bus.asyncCall(call);
}

} // namespace norva
