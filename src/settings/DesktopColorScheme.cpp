#include "settings/DesktopColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>

namespace norva {
namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kColorScheme = QStringLiteral("color-scheme");

// The portal wraps the value once more in Read's answer; unwrap until it is a number.
uint unwrap(QVariant value)
{
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

DesktopColorScheme::DesktopColorScheme(QObject* parent) : QObject(parent)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(kPortalService, kPortalPath, kSettingsInterface, QStringLiteral("SettingChanged"), this,
                SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    ask();
}

std::optional<bool> DesktopColorScheme::fromPortal(uint preference)
{
    if (preference == 1)
        return true;
    if (preference == 2)
        return false;
    return std::nullopt;
}

bool DesktopColorScheme::dark() const
{
    if (m_portal)
        return *m_portal;
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    return window.lightness() < 128;
}

void DesktopColorScheme::ask()
{
    QDBusMessage read = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kSettingsInterface,
                                                       QStringLiteral("Read"));
    read << kAppearance << kColorScheme;
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(read, 2000), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* call) {
        const QDBusPendingReply<QVariant> reply = *call;
        call->deleteLater();
        if (!reply.isError()) // no portal: the palette decides, as before
            take(fromPortal(unwrap(reply.value())));
    });
}

void DesktopColorScheme::onSettingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group == kAppearance && key == kColorScheme)
        take(fromPortal(unwrap(value.variant())));
}

void DesktopColorScheme::take(std::optional<bool> portal)
{
    const bool wasDark = dark();
    m_portal = portal;
    if (dark() != wasDark)
        emit darkChanged();
}

} // namespace norva
