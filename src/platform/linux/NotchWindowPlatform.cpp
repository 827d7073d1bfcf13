#include "notch/NotchWindowPlatform.h"

#include <QGuiApplication>
#include <QWindow>

#include <vector>
#include <xcb/shape.h>

#ifdef NORVA_LAYER_SHELL
#include "platform/linux/layershell/NotchLayer.h"
#endif

namespace norva::Platform {
namespace {

// Through XWayland only the input is shaped and the rest of the window is see-through: pixels
// outside a bounding shape are never drawn again, and a Wayland compositor that shows the whole
// window (weston) then shows what an earlier, larger notch left there.
void setInputShape(QWindow& window, const QRegion& shape)
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) {
        window.setMask(shape);
        return;
    }
    const qreal scale = window.devicePixelRatio();
    std::vector<xcb_rectangle_t> rectangles;
    for (const QRect& rect : shape) {
        const QRect native(QPoint(qRound(rect.x() * scale), qRound(rect.y() * scale)),
                           QSize(qRound(rect.width() * scale), qRound(rect.height() * scale)));
        rectangles.push_back({static_cast<int16_t>(native.x()), static_cast<int16_t>(native.y()),
                              static_cast<uint16_t>(native.width()), static_cast<uint16_t>(native.height())});
    }
    xcb_shape_rectangles(x11->connection(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         static_cast<xcb_window_t>(window.winId()), 0, 0,
                         static_cast<uint32_t>(rectangles.size()), rectangles.data());
    xcb_flush(x11->connection());
}

// The window changes size with the notch, centred at the top: until it is drawn again at its new
// size, the X server keeps its old pixels centred too, where the shape still is.
void keepPixelsCentred(QWindow& window)
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    const uint32_t gravity = XCB_GRAVITY_NORTH;
    xcb_change_window_attributes(x11->connection(), static_cast<xcb_window_t>(window.winId()),
                                 XCB_CW_BIT_GRAVITY, &gravity);
}

} // namespace

void prepareNotchWindow(QWindow& window, DrawingPath path)
{
    Qt::WindowFlags flags =
        Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool | Qt::NoDropShadowWindowHint;
    // Through XWayland the notch bypasses the window manager: the compositors' X11 window managers
    // (weston, Sway, Hyprland) place or tile a managed window where they like, while every one of
    // them shows an override-redirect window where it asks to be, above the others.
    if (path == DrawingPath::xwayland)
        flags |= Qt::BypassWindowManagerHint;
    window.setFlags(flags);
    keepPixelsCentred(window);
#ifdef NORVA_LAYER_SHELL
    if (path == DrawingPath::notchLayer)
        NotchLayer::placeOnTopLayer(window);
#endif
}

void setNotchShape(QWindow& window, const QRegion& shape, DrawingPath path)
{
    // On X11 the bounding shape also keeps the see-through part off screens without a compositor;
    // on a Wayland layer QWindow::setMask sets the surface's input region.
    if (path == DrawingPath::xwayland)
        setInputShape(window, shape);
    else
        window.setMask(shape);
}

} // namespace norva::Platform
