#include "platform/linux/X11WindowActivator.h"

#include "platform/linux/X11Properties.h"

#include <xcb/xcb.h>

#include <QByteArray>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace norva {
namespace {

// ICCCM WM_STATE values.
constexpr quint32 kIconicState = 3;

struct Connection {
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = XCB_WINDOW_NONE;

    explicit Connection(const QString& display)
    {
        int screenNumber = 0;
        const QByteArray name = display.toLocal8Bit();
        connection = xcb_connect(name.isEmpty() ? nullptr : name.constData(), &screenNumber);
        if (xcb_connection_has_error(connection))
            return;
        xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
        for (int index = 0; screens.rem > 0; ++index, xcb_screen_next(&screens)) {
            if (index == screenNumber) {
                root = screens.data->root;
                break;
            }
        }
    }
    ~Connection() { xcb_disconnect(connection); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    bool ok() const { return !xcb_connection_has_error(connection) && root != XCB_WINDOW_NONE; }

    xcb_atom_t atom(const char* name) const { return x11::atom(connection, name); }
    QList<quint32> property(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const
    {
        return x11::propertyWords(connection, window, property, type);
    }

    QList<quint32> children(xcb_window_t window) const
    {
        std::unique_ptr<xcb_query_tree_reply_t, decltype(&free)> reply(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr), &free);
        QList<quint32> result;
        if (!reply)
            return result;
        const xcb_window_t* list = xcb_query_tree_children(reply.get());
        for (int index = 0; index < xcb_query_tree_children_length(reply.get()); ++index)
            result.append(list[index]);
        return result;
    }

    bool isViewable(xcb_window_t window) const
    {
        std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&free)> reply(
            xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                            nullptr),
            &free);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    bool isMinimised(xcb_window_t window) const
    {
        const xcb_atom_t wmState = atom("WM_STATE");
        const QList<quint32> state = property(window, wmState, wmState);
        if (!state.isEmpty() && state.first() == kIconicState)
            return true;
        const QList<quint32> netState = property(window, atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
        return netState.contains(atom("_NET_WM_STATE_HIDDEN"));
    }

    void sync() const { x11::sync(connection); }

    QList<quint32> windowsOf(qint64 pid) const
    {
        const xcb_atom_t pidAtom = atom("_NET_WM_PID");
        QList<quint32> candidates = property(root, atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
        if (candidates.isEmpty()) {
            // No EWMH window manager: the top-level windows, and one level below for reparenting ones.
            for (const quint32 top : children(root))
                candidates << top << children(top);
        }
        QList<quint32> result;
        for (const quint32 window : candidates) {
            const QList<quint32> owner = property(window, pidAtom, XCB_ATOM_CARDINAL);
            if (!owner.isEmpty() && qint64(owner.first()) == pid)
                result.append(window);
        }
        return result;
    }
};

} // namespace

X11WindowActivator::X11WindowActivator(QString display) : m_display(std::move(display)) {}

bool X11WindowActivator::isRunning(qint64 pid) const
{
    return pid >= 2 && (::kill(pid_t(pid), 0) == 0 || errno == EPERM);
}

QList<quint32> X11WindowActivator::windowsOf(qint64 pid) const
{
    const Connection x(m_display);
    return x.ok() ? x.windowsOf(pid) : QList<quint32>();
}

bool X11WindowActivator::activate(qint64 pid)
{
    if (!isRunning(pid))
        return false;
    const Connection x(m_display);
    if (!x.ok())
        return true;
    const QList<quint32> windows = x.windowsOf(pid);
    if (windows.isEmpty())
        return true;
    xcb_window_t window = windows.first();
    for (const quint32 candidate : windows) {
        if (x.isViewable(candidate)) {
            window = candidate;
            break;
        }
    }
    if (!x.isViewable(window))
        xcb_map_window(x.connection, window);

    x11::activateWindow(x.connection, x.root, window);
    return true;
}

void X11WindowActivator::unminimize(qint64 pid)
{
    const Connection x(m_display);
    if (!x.ok())
        return;
    for (const quint32 window : x.windowsOf(pid)) {
        // Mapping an iconic window asks the window manager to restore it (ICCCM 4.1.4).
        if (x.isMinimised(window))
            xcb_map_window(x.connection, window);
    }
    x.sync();
}

} // namespace norva
