#pragma once

#include "app/StatusNotifierTypes.h"

#include <QDBusVariant>
#include <QObject>
#include <QStringList>

namespace norva {

// A flat menu exported over D-Bus as com.canonical.dbusmenu, the menu protocol that
// StatusNotifierItem panels read: the panel draws the menu and sends back which entry was
// clicked. Entry ids are their position counted from 1; 0 is the menu itself.
class DBusMenu : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    struct Entry {
        QString label; // empty for a separator
    };

    explicit DBusMenu(QList<Entry> entries, QObject* parent = nullptr);

    uint version() const { return 3; }
    QString textDirection() const { return QStringLiteral("ltr"); }
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

    // The menu with its entries, as a panel asks for it.
    DBusMenuLayout layout() const;

public slots:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                norva::DBusMenuLayout& layout);
    Q_SCRIPTABLE norva::DBusMenuItemPropertiesList GetGroupProperties(const QList<int>& ids,
                                                                      const QStringList& propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    // An entry was clicked in the panel's menu.
    void triggered(int id);

private:
    QVariantMap propertiesOf(int id) const;

    QList<Entry> m_entries;
};

} // namespace norva
