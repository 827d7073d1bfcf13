#pragma once

#include "notch/KeyboardHandback.h"

#include <xcb/xcb.h>

namespace norva {

// The keyboard's hand-back on X11: the holder is the window manager's active window
// (_NET_ACTIVE_WINDOW), or without a window manager the input focus; it is given back by asking
// the window manager to activate it again. Without an X server it does nothing.
class X11KeyboardHandback final : public KeyboardHandback {
public:
    // `connection` null uses Qt's.
    explicit X11KeyboardHandback(xcb_connection_t* connection = nullptr);

    void noteHolder(quintptr notchWindow) override;
    void giveBack() override;
    xcb_window_t holder() const { return m_holder; }

private:
    xcb_window_t currentHolder() const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    xcb_window_t m_holder = XCB_WINDOW_NONE;
};

} // namespace norva
