#include "app/StatusNotifierItem.h"

#include "app/Log.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace norva {
namespace {

const QString kItemPath = QStringLiteral("/StatusNotifierItem");
const QString kMenuPath = QStringLiteral("/MenuBar");
const QString kWatcherPath = QStringLiteral("/StatusNotifierWatcher");

constexpr QDBusConnection::RegisterOptions kExported =
    QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties;

} // namespace

const QString StatusNotifierItem::kWatcherService = QStringLiteral("org.kde.StatusNotifierWatcher");

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, QString id, QString title, const QImage& icon,
                                       QList<DBusMenu::Entry> menu, QObject* parent)
    : QObject(parent), m_bus(std::move(bus)), m_id(std::move(id)),
      m_title(std::move(title)), m_icon{DBusImage::fromImage(icon)}, m_menu(std::move(menu)),
      // One name per process, as the protocol asks: "org.kde.StatusNotifierItem-<pid>-<n>".
      m_serviceName(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()))
{
    registerStatusNotifierTypes();
    connect(&m_menu, &DBusMenu::triggered, this, &StatusNotifierItem::menuTriggered);
    m_watcherWatch.setConnection(m_bus);
    m_watcherWatch.addWatchedService(kWatcherService);
    m_watcherWatch.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    // A panel that starts (or restarts) after Norva learns of the icon from its new watcher.
    connect(&m_watcherWatch, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (m_shown)
            registerWithWatcher();
    });
}

StatusNotifierItem::~StatusNotifierItem()
{
    withdraw();
}

QDBusObjectPath StatusNotifierItem::menuPath() const
{
    return QDBusObjectPath(kMenuPath);
}

void StatusNotifierItem::setShown(bool shown)
{
    if (shown == m_shown)
        return;
    m_shown = shown;
    if (!shown) {
        withdraw();
        return;
    }
    if (!m_bus.isConnected() || !m_bus.registerObject(kItemPath, this, kExported) ||
        !m_bus.registerObject(kMenuPath, &m_menu, kExported) || !m_bus.registerService(m_serviceName)) {
        logLine(
            QStringLiteral("Norva: the tray icon is not shown (the session bus did not take it: ") +
            (m_bus.lastError().isValid() ? m_bus.lastError().message() : QStringLiteral("no session bus")) +
            QLatin1Char(')'));
        withdraw();
        m_shown = false;
        return;
    }
    registerWithWatcher();
}

// Taking the name away is what tells the watcher, and through it the panel, that the icon left.
void StatusNotifierItem::withdraw()
{
    if (!m_bus.isConnected())
        return;
    m_bus.unregisterService(m_serviceName);
    m_bus.unregisterObject(kMenuPath);
    m_bus.unregisterObject(kItemPath);
}

void StatusNotifierItem::registerWithWatcher()
{
    QDBusMessage call = QDBusMessage::createMethodCall(kWatcherService, kWatcherPath, kWatcherService,
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_serviceName;
    auto* pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        finished->deleteLater();
        const QDBusPendingReply<> reply = *finished;
        if (!reply.isError()) {
            m_toldNoWatcher = false;
            return;
        }
        // Said once: a desktop without a panel that shows these icons stays without one.
        if (!m_toldNoWatcher)
            logLine(QStringLiteral(
                        "Norva: the tray icon waits for a panel (no status-notifier watcher answered: ") +
                    reply.error().message() + QLatin1Char(')'));
        m_toldNoWatcher = true;
    });
}

void StatusNotifierItem::Activate(int x, int y)
{
    Q_UNUSED(x);
    Q_UNUSED(y);
    emit activated();
}

void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    Q_UNUSED(x);
    Q_UNUSED(y);
}

// The panel shows the menu itself from the Menu property; nothing to draw here.
void StatusNotifierItem::ContextMenu(int x, int y)
{
    Q_UNUSED(x);
    Q_UNUSED(y);
}

void StatusNotifierItem::Scroll(int delta, const QString& orientation)
{
    Q_UNUSED(delta);
    Q_UNUSED(orientation);
}

} // namespace norva
