#include "platform/linux/LinuxNotchSurface.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <vector>
#include <xcb/shape.h>

#ifdef NORVA_LAYER_SHELL
#include "platform/linux/layershell/NotchLayer.h"
#endif

namespace norva {
namespace {

// Qt's X11 interface exists whenever Qt was built with xcb, even on the offscreen platform, where
// its connection is null: only a real one is worth talking to.
xcb_connection_t* xConnection()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// Through XWayland only the input is shaped and the rest of the window is see-through: pixels
// outside a bounding shape are never drawn again, and a Wayland compositor that shows the whole
// window (weston) then shows what an earlier, larger notch left there.
void setXInputShape(QWindow& window, const QRegion& shape)
{
    xcb_connection_t* connection = xConnection();
    if (!connection) {
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
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
                         static_cast<xcb_window_t>(window.winId()), 0, 0,
                         static_cast<uint32_t>(rectangles.size()), rectangles.data());
    xcb_flush(connection);
}

// The window changes size with the notch, centred at the top: until it is drawn again at its new
// size, the X server keeps its old pixels centred too, where the shape still is.
void keepPixelsCentred(QWindow& window)
{
    xcb_connection_t* connection = xConnection();
    if (!connection)
        return;
    const uint32_t gravity = XCB_GRAVITY_NORTH;
    xcb_change_window_attributes(connection, static_cast<xcb_window_t>(window.winId()), XCB_CW_BIT_GRAVITY,
                                 &gravity);
}

} // namespace

LinuxNotchSurface::LinuxNotchSurface(QWindow& window, DrawingPath path) : m_window(window), m_path(path) {}

void LinuxNotchSurface::prepare()
{
    Qt::WindowFlags flags =
        Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool | Qt::NoDropShadowWindowHint;
    // Through XWayland the notch bypasses the window manager: the compositors' X11 window managers
    // (weston, Sway, Hyprland) place or tile a managed window where they like, while every one of
    // them shows an override-redirect window where it asks to be, above the others.
    if (m_path == DrawingPath::xwayland)
        flags |= Qt::BypassWindowManagerHint;
    m_window.setFlags(flags);
    keepPixelsCentred(m_window);
#ifdef NORVA_LAYER_SHELL
    if (m_path == DrawingPath::notchLayer)
        NotchLayer::placeOnTopLayer(m_window);
#endif
}

void LinuxNotchSurface::place(QScreen& screen, const QSize& size)
{
    const QRect area = screen.geometry();
    m_window.setScreen(&screen);
    m_window.setGeometry(area.x() + (area.width() - size.width()) / 2, area.y(), size.width(), size.height());
}

void LinuxNotchSurface::setInputShape(const QRegion& shape)
{
    // On X11 the bounding shape also keeps the see-through part off screens without a compositor;
    // on a Wayland layer QWindow::setMask sets the surface's input region.
    if (m_path == DrawingPath::xwayland)
        setXInputShape(m_window, shape);
    else
        m_window.setMask(shape);
}

} // namespace norva
