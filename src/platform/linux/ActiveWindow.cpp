#include "platform/linux/ActiveWindow.h"

#include "platform/linux/X11Properties.h"

#include <QGuiApplication>

#include <cstdlib>
#include <xcb/xcb.h>

namespace norva {
namespace {

using x11::qtConnection;

// The window the window manager names as active, with the root window it lives under.
std::optional<std::pair<xcb_window_t, xcb_window_t>> activeWindow(xcb_connection_t* connection)
{
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return std::nullopt;
    const QList<quint32> active = x11::propertyWords(
        connection, screen->root, x11::atom(connection, "_NET_ACTIVE_WINDOW"), XCB_GET_PROPERTY_TYPE_ANY);
    if (active.isEmpty() || active.first() == XCB_WINDOW_NONE)
        return std::nullopt;
    return std::pair{xcb_window_t(active.first()), screen->root};
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
        x11::propertyBytes(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING).split('\0');
    if (wmClass.size() >= 2 && !wmClass.at(1).isEmpty())
        return QString::fromLocal8Bit(wmClass.at(1));
    const QByteArray title = x11::propertyBytes(connection, window, x11::atom(connection, "_NET_WM_NAME"),
                                                x11::atom(connection, "UTF8_STRING"));
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
    const QList<quint32> states =
        x11::propertyWords(connection, window, x11::atom(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM);
    if (!states.contains(x11::atom(connection, "_NET_WM_STATE_FULLSCREEN")))
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
