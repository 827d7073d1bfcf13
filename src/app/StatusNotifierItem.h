#pragma once

#include "app/DBusMenu.h"
#include "app/StatusNotifierTypes.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QImage>
#include <QObject>

namespace norva {

// Norva's icon in the desktop's panel through the StatusNotifierItem protocol over D-Bus (KDE,
// GNOME with the AppIndicator extension, and most other panels show it), with its menu as a
// DBusMenu. Needs no widgets: the panel draws both. Shown items register with the panel's
// watcher ("org.kde.StatusNotifierWatcher"), again whenever a watcher appears.
class StatusNotifierItem : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ emptyName)
    Q_PROPERTY(norva::DBusImageList IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyName)
    Q_PROPERTY(norva::DBusImageList OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ emptyName)
    Q_PROPERTY(norva::DBusImageList AttentionIconPixmap READ noPixmap)
    Q_PROPERTY(norva::DBusToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menuPath)

public:
    static const QString kWatcherService; // "org.kde.StatusNotifierWatcher"

    StatusNotifierItem(QDBusConnection bus, QString id, QString title, const QImage& icon,
                       QList<DBusMenu::Entry> menu, QObject* parent = nullptr);
    ~StatusNotifierItem() override;

    // Puts the icon in the panel or takes it away.
    void setShown(bool shown);
    bool isShown() const { return m_shown; }
    QString serviceName() const { return m_serviceName; }

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return m_id; }
    QString title() const { return m_title; }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString emptyName() const { return {}; }
    DBusImageList iconPixmap() const { return m_icon; }
    DBusImageList noPixmap() const { return {}; }
    DBusToolTip toolTip() const { return {{}, {}, m_title, {}}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menuPath() const;

public slots:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString& orientation);

signals:
    // A click on the icon itself.
    void activated();
    // An entry of the menu was chosen (its id counts from 1, as in DBusMenu).
    void menuTriggered(int id);
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString& status);

private:
    void registerWithWatcher();
    void withdraw();

    QDBusConnection m_bus;
    QString m_id;
    QString m_title;
    DBusImageList m_icon;
    DBusMenu m_menu;
    QString m_serviceName;
    QDBusServiceWatcher m_watcherWatch;
    bool m_shown = false;
    bool m_toldNoWatcher = false;
};

} // namespace norva
