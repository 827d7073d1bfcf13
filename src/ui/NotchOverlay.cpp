#include "ui/NotchOverlay.h"

#include "app/Log.h"
#include "app/Platform.h"
#include "notch/ConnectedDisplays.h"
#include "notch/KeyboardHandback.h"
#include "notch/NotchLayout.h"
#include "notch/NotchWindowPlatform.h"

#include <QCursor>
#include <QPainterPath>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QRegion>
#include <QScreen>

namespace norva {

NotchOverlay::NotchOverlay(QQmlEngine& engine, QScreen* screen, const DisplayInfo& display, Clock& clock,
                           SettingsStore& settings, DrawingPath path, QObject* parent)
    : QObject(parent), m_notch(clock, settings), m_display(display), m_screen(screen),
      m_shape(NotchLayout::closedSize({})), m_bottomRadius(0)
{
    m_size = NotchLayout::windowSize(m_shape, m_shape, false, {});
    m_notch.setFullscreenProbe([this] { return m_screen && fullscreenWindowOn(*m_screen); });
    // The open panel grows with its page as far as this display has room for.
    const auto followDisplayHeight = [this] {
        if (m_screen)
            m_notch.setDisplayHeight(m_screen->geometry().height());
    };
    followDisplayHeight();
    m_notch.setPointerProbe([this] {
        return m_window && m_window->mask().contains(m_window->mapFromGlobal(QCursor::pos(m_screen)));
    });
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/Norva/NotchWindow.qml")));
    // Qt 6.4 crashes creating a component that did not compile, rather than saying why.
    QObject* created = component.isError() ? nullptr
                                           : component.createWithInitialProperties(
                                                 {{QStringLiteral("overlay"), QVariant::fromValue(this)},
                                                  {QStringLiteral("notch"), QVariant::fromValue(&m_notch)}});
    m_window = qobject_cast<QQuickWindow*>(created);
    if (!m_window) {
        logLine(QStringLiteral("Norva: the notch window on ") + display.name +
                QStringLiteral(" could not be made (") + component.errorString().trimmed() +
                QStringLiteral(")"));
        delete created;
        return;
    }
    m_surface = Platform::makeNotchSurface(*m_window, path);
    m_surface->prepare();
    m_window->setColor(Qt::transparent);
    place();
    applyShape();
    connect(screen, &QScreen::geometryChanged, this, &NotchOverlay::place);
    connect(screen, &QScreen::geometryChanged, this, followDisplayHeight);
    m_keyboard = Platform::makeKeyboardHandback();
    connect(&m_notch, &NotchViewModel::stateChanged, this, &NotchOverlay::followKeyboard);
    // Shown without taking the keyboard (on X11 a user time of 0 asks the window manager not to
    // focus it): the closed notch is no place to type, and it takes the keyboard when it opens.
    m_window->setProperty("_q_showWithoutActivating", true);
    m_window->show();
}

// The open panel takes the keyboard, so its pages work from the keys and Escape closes it; once
// closed, the keyboard goes back to the window that had it.
void NotchOverlay::followKeyboard()
{
    const bool open = m_notch.state() == NotchViewModel::State::open;
    if (open && !m_holdsKeyboard) {
        m_holdsKeyboard = true;
        m_keyboard->noteHolder(m_window->winId());
        m_window->requestActivate();
    } else if (!open && m_holdsKeyboard) {
        m_holdsKeyboard = false;
        if (m_window->isActive())
            m_keyboard->giveBack();
    }
}

NotchOverlay::~NotchOverlay()
{
    m_surface.reset();
    delete m_window;
}

void NotchOverlay::place()
{
    if (!m_window || !m_screen)
        return;
    m_surface->place(*m_screen, m_size);
}

void NotchOverlay::fit(const QSizeF& target, const QSizeF& shape, bool moving)
{
    const QSize size = NotchLayout::windowSize(target, shape, moving, m_size);
    if (size == m_size)
        return;
    m_size = size;
    // The shape's region for the new size goes out with the new geometry, in the same flush: the
    // shape keeps its place on screen while the window around it changes.
    applyShape();
    place();
}

void NotchOverlay::setShape(const QSizeF& size, double bottomRadius)
{
    m_shape = size;
    m_bottomRadius = bottomRadius;
    applyShape();
}

void NotchOverlay::applyShape()
{
    if (!m_window)
        return;
    // A few points of slack so the soft edge is not clipped while it moves.
    const QRectF rect((m_size.width() - m_shape.width()) / 2 - 1, 0, m_shape.width() + 2,
                      m_shape.height() + 1);
    const double bottomRadius = m_bottomRadius;
    // Square top corners against the screen edge, rounded bottom ones, like the notch itself.
    QPainterPath path;
    const double r = std::min({bottomRadius, rect.width() / 2, rect.height()});
    path.moveTo(rect.topLeft());
    path.lineTo(rect.topRight());
    path.lineTo(rect.right(), rect.bottom() - r);
    path.quadTo(rect.bottomRight(), QPointF(rect.right() - r, rect.bottom()));
    path.lineTo(rect.left() + r, rect.bottom());
    path.quadTo(rect.bottomLeft(), QPointF(rect.left(), rect.bottom() - r));
    path.closeSubpath();
    m_surface->setInputShape(QRegion(path.toFillPolygon().toPolygon()));
}

} // namespace norva
