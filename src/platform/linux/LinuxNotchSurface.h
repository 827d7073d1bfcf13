#pragma once

#include "notch/NotchSurface.h"
#include "notch/WindowSystemChoice.h"

class QWindow;

namespace norva {

// The notch window on a Linux desktop: an X11 window, placed and above (directly, or through
// XWayland outside the window manager with only its input shaped), a layer surface where Norva was
// built with the layer, or a plain Wayland window that the compositor places.
class LinuxNotchSurface final : public NotchSurface {
public:
    LinuxNotchSurface(QWindow& window, DrawingPath path);

    void prepare() override;
    void place(QScreen& screen, const QSize& size) override;
    void setInputShape(const QRegion& shape) override;

private:
    QWindow& m_window;
    DrawingPath m_path;
};

} // namespace norva
