#include "platform/linux/ActiveWindow.h"

#include <QGuiApplication>

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace norva {
namespace {

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    const auto cookie = xcb_intern_atom(connection, 1, static_cast<uint16_t>(strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t found = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return found;
}

QByteArray property(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t name, xcb_atom_t type)
{
    constexpr uint32_t kLongsToRead = 256;
    const auto cookie = xcb_get_property(connection, 0, window, name, type, 0, kLongsToRead);
    xcb_get_property_reply_t* reply = xcb_get_property_reply(connection, cookie, nullptr);
    QByteArray value;
    if (reply && reply->type != XCB_ATOM_NONE) {
        value = QByteArray(static_cast<const char*>(xcb_get_property_value(reply)),
                           xcb_get_property_value_length(reply));
    }
    free(reply);
    return value;
}

} // namespace

std::optional<QString> ActiveWindow::applicationName()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t activeAtom = atom(connection, "_NET_ACTIVE_WINDOW");
    if (!screen || activeAtom == XCB_ATOM_NONE)
        return std::nullopt;
    const QByteArray active = property(connection, screen->root, activeAtom, XCB_GET_PROPERTY_TYPE_ANY);
    if (active.size() < int(sizeof(xcb_window_t)))
        return std::nullopt;
    const xcb_window_t window = *reinterpret_cast<const xcb_window_t*>(active.constData());
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    // WM_CLASS holds "instance\0Class\0"; the class is the program's name as people know it.
    const QList<QByteArray> wmClass = property(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).split('\0');
    if (wmClass.size() >= 2 && !wmClass.at(1).isEmpty())
        return QString::fromLocal8Bit(wmClass.at(1));
    const QByteArray title = property(connection, window, atom(connection, "_NET_WM_NAME"),
                                      atom(connection, "UTF8_STRING"));
    if (!title.isEmpty())
        return QString::fromUtf8(title);
    return std::nullopt;
}

} // namespace norva
