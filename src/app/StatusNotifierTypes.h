#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

class QImage;

namespace norva {

// The D-Bus shapes of the StatusNotifierItem and com.canonical.dbusmenu protocols, which the
// desktop's panel reads to show Norva's tray icon and its menu.

// One icon size: width, height and ARGB32 pixels in network byte order, "(iiay)".
struct DBusImage {
    int width = 0;
    int height = 0;
    QByteArray pixels;
    static DBusImage fromImage(const QImage& image);
};
using DBusImageList = QList<DBusImage>;

// The tool tip: icon name, icon, title and text, "(sa(iiay)ss)".
struct DBusToolTip {
    QString iconName;
    DBusImageList image;
    QString title;
    QString text;
};

// One menu item with its properties and its children, "(ia{sv}av)".
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuLayout> children;
};

// One item's properties, "(ia{sv})".
struct DBusMenuItemProperties {
    int id = 0;
    QVariantMap properties;
};
using DBusMenuItemPropertiesList = QList<DBusMenuItemProperties>;

// Makes the types known to Qt's D-Bus layer; safe to call more than once.
void registerStatusNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const DBusImage& image);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusImage& image);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusToolTip& tip);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusToolTip& tip);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemProperties& item);
const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemProperties& item);

} // namespace norva

Q_DECLARE_METATYPE(norva::DBusImage)
Q_DECLARE_METATYPE(norva::DBusToolTip)
Q_DECLARE_METATYPE(norva::DBusMenuLayout)
Q_DECLARE_METATYPE(norva::DBusMenuItemProperties)
