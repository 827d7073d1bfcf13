#include "platform/linux/X11Properties.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace norva::x11 {
namespace {

constexpr uint32_t kLongestPropertyWords = 4096;

using PropertyReply = std::unique_ptr<xcb_get_property_reply_t, decltype(&free)>;

PropertyReply readProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                           xcb_atom_t type)
{
    const auto cookie = xcb_get_property(connection, 0, window, property, type, 0, kLongestPropertyWords);
    return PropertyReply(xcb_get_property_reply(connection, cookie, nullptr), &free);
}

} // namespace

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    const auto cookie = xcb_intern_atom(connection, 0, uint16_t(strlen(name)), name);
    std::unique_ptr<xcb_intern_atom_reply_t, decltype(&free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray propertyBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    const PropertyReply reply = readProperty(connection, window, property, type);
    if (!reply || reply->type == XCB_ATOM_NONE)
        return {};
    return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

QList<quint32> propertyWords(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                             xcb_atom_t type)
{
    const PropertyReply reply = readProperty(connection, window, property, type);
    QList<quint32> items;
    if (!reply || reply->format != 32)
        return items;
    const auto* values = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
    const int count = xcb_get_property_value_length(reply.get()) / 4;
    for (int index = 0; index < count; ++index)
        items.append(values[index]);
    return items;
}

} // namespace norva::x11
