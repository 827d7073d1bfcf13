#include "platform/linux/ActiveWindow.h"

#include <QGuiApplication>
#include <QList>

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

xcb_connection_t* qtConnection()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

// The window the window manager names as active, with the root window it lives under.
std::optional<std::pair<xcb_window_t, xcb_window_t>> activeWindow(xcb_connection_t* connection)
{
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
    return std::pair{window, screen->root};
}

} // namespace

std::optional<QString> ActiveWindow::applicationName()
{
    xcb_connection_t* connection = qtConnection();
    const auto active = connection ? activeWindow(connection) : std::nullopt;
    if (!active)
        return std::nullopt;
    const xcb_window_t window = active->first;
    // WM_CLASS holds "instance\0Class\0"; the class is the program's name as people know it.
    const QList<QByteArray> wmClass =
        property(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).split('\0');
    if (wmClass.size() >= 2 && !wmClass.at(1).isEmpty())
        return QString::fromLocal8Bit(wmClass.at(1));
    const QByteArray title =
        property(connection, window, atom(connection, "_NET_WM_NAME"), atom(connection, "UTF8_STRING"));
    if (!title.isEmpty())
        return QString::fromUtf8(title);
    return std::nullopt;
}

bool ActiveWindow::isFullscreenOn(const QRect& displayGeometry)
{
    xcb_connection_t* connection = qtConnection();
    const auto active = connection ? activeWindow(connection) : std::nullopt;
    if (!active)
        return false;
    const auto [window, root] = *active;
    const xcb_atom_t fullscreen = atom(connection, "_NET_WM_STATE_FULLSCREEN");
    const QByteArray states = property(connection, window, atom(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM);
    const auto* first = reinterpret_cast<const xcb_atom_t*>(states.constData());
    const QList<xcb_atom_t> stateList(first, first + states.size() / int(sizeof(xcb_atom_t)));
    if (fullscreen == XCB_ATOM_NONE || !stateList.contains(fullscreen))
        return false;
    // The window's own geometry is relative to its parent (the window manager's frame), so its
    // centre is translated to root coordinates before asking which display it is on.
    xcb_get_geometry_reply_t* geometry =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    if (!geometry)
        return false;
    const auto centreX = int16_t(geometry->width / 2);
    const auto centreY = int16_t(geometry->height / 2);
    free(geometry);
    xcb_translate_coordinates_reply_t* onRoot = xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, window, root, centreX, centreY), nullptr);
    if (!onRoot)
        return false;
    const QPoint centre(onRoot->dst_x, onRoot->dst_y);
    free(onRoot);
    return displayGeometry.contains(centre);
}

} // namespace norva
