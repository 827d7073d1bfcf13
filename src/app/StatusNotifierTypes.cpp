#include "app/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

namespace norva {

DBusImage DBusImage::fromImage(const QImage& image)
{
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    DBusImage out{argb.width(), argb.height(), {}};
    out.pixels.resize(qsizetype(argb.width()) * argb.height() * 4);
    auto* target = reinterpret_cast<quint32*>(out.pixels.data());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x)
            *target++ = qToBigEndian(line[x]);
    }
    return out;
}

void registerStatusNotifierTypes()
{
    static const bool registered = [] {
        qDBusRegisterMetaType<DBusImage>();
        qDBusRegisterMetaType<DBusImageList>();
        qDBusRegisterMetaType<DBusToolTip>();
        qDBusRegisterMetaType<DBusMenuLayout>();
        qDBusRegisterMetaType<DBusMenuItemProperties>();
        qDBusRegisterMetaType<DBusMenuItemPropertiesList>();
        qDBusRegisterMetaType<QList<int>>();
        return true;
    }();
    Q_UNUSED(registered);
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusImage& image)
{
    argument.beginStructure();
    argument << image.width << image.height << image.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusImage& image)
{
    argument.beginStructure();
    argument >> image.width >> image.height >> image.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusToolTip& tip)
{
    argument.beginStructure();
    argument << tip.iconName << tip.image << tip.title << tip.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusToolTip& tip)
{
    argument.beginStructure();
    argument >> tip.iconName >> tip.image >> tip.title >> tip.text;
    argument.endStructure();
    return argument;
}

// Children travel as variants ("av"), each holding a whole layout of its own.
QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayout& layout)
{
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(qMetaTypeId<QDBusVariant>());
    for (const DBusMenuLayout& child : layout.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayout& layout)
{
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    layout.children.clear();
    while (!argument.atEnd()) {
        QDBusVariant variant;
        argument >> variant;
        DBusMenuLayout child;
        variant.variant().value<QDBusArgument>() >> child;
        layout.children.append(child);
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemProperties& item)
{
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemProperties& item)
{
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

} // namespace norva
