#pragma once

#include <QRect>
#include <QString>

#include <optional>

namespace norva {

// The program in front, as the X11 window manager tells it (_NET_ACTIVE_WINDOW and that window's
// WM_CLASS). Elsewhere (Wayland, no window manager) the desktop does not say, and the answer is none.
class ActiveWindow {
public:
    static std::optional<QString> applicationName();
    // Whether the window in front says it is full-screen (_NET_WM_STATE_FULLSCREEN) and its centre
    // lies on the display with this geometry, in the X server's pixels.
    static bool isFullscreenOn(const QRect& displayGeometry);
};

} // namespace norva
