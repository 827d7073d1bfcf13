#include "platform/linux/X11KeyboardHandback.h"

#include "platform/linux/X11Properties.h"

#include <cstdlib>
#include <memory>

namespace norva {

X11KeyboardHandback::X11KeyboardHandback(xcb_connection_t* connection)
    : m_connection(connection ? connection : x11::qtConnection())
{
    if (!m_connection)
        return;
    if (const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data)
        m_root = screen->root;
}

xcb_window_t X11KeyboardHandback::currentHolder() const
{
    const QList<quint32> active = x11::propertyWords(
        m_connection, m_root, x11::atom(m_connection, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (!active.isEmpty())
        return active.first();
    std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&free)> focus(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr), &free);
    // PointerRoot (1) and None (0) name no window.
    return focus && focus->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? focus->focus
                                                                : xcb_window_t(XCB_WINDOW_NONE);
}

void X11KeyboardHandback::noteHolder(quintptr notchWindow)
{
    if (!m_connection || m_root == XCB_WINDOW_NONE)
        return;
    const xcb_window_t holder = currentHolder();
    // A second opening while the notch already has the keyboard keeps the first holder.
    if (holder != XCB_WINDOW_NONE && holder != xcb_window_t(notchWindow) && holder != m_root)
        m_holder = holder;
}

void X11KeyboardHandback::giveBack()
{
    const xcb_window_t holder = m_holder;
    m_holder = XCB_WINDOW_NONE;
    if (!m_connection || holder == XCB_WINDOW_NONE)
        return;
    std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&free)> stillThere(
        xcb_get_window_attributes_reply(m_connection, xcb_get_window_attributes(m_connection, holder),
                                        nullptr),
        &free);
    if (stillThere)
        x11::activateWindow(m_connection, m_root, holder);
}

std::unique_ptr<KeyboardHandback> Platform::makeKeyboardHandback()
{
    return std::make_unique<X11KeyboardHandback>();
}

} // namespace norva
