#include "platform/linux/X11Properties.h"

#include <QGuiApplication>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace norva::x11 {
namespace {

constexpr uint32_t kLongestPropertyWords = 4096;
// The source indication of _NET_ACTIVE_WINDOW: 2 is a pager, which window managers obey at once,
// where a request from an application (1) may only make the window ask for attention.
constexpr quint32 kSourcePager = 2;

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

QByteArray propertyBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
                         xcb_atom_t type)
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

xcb_connection_t* qtConnection()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

void sync(xcb_connection_t* connection)
{
    free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

void activateWindow(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(connection, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = kSourcePager;
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));

    const bool managed =
        !propertyWords(connection, root, atom(connection, "_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW)
             .isEmpty();
    if (!managed) {
        // Nobody answers the message without a window manager: raise and focus the window here.
        const uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        sync(connection);
        std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&free)> attributes(
            xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                            nullptr),
            &free);
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    }
    sync(connection);
}

} // namespace norva::x11
