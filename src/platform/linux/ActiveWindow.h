#pragma once

#include <QString>

#include <optional>

namespace norva {

// The program in front, as the X11 window manager tells it (_NET_ACTIVE_WINDOW and that window's
// WM_CLASS). Elsewhere (Wayland, no window manager) the desktop does not say, and the answer is none.
class ActiveWindow {
public:
    static std::optional<QString> applicationName();
};

} // namespace norva
