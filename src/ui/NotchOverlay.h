#pragma once

#include "notch/DisplayPicker.h"
#include "notch/NotchSurface.h"
#include "notch/NotchViewModel.h"
#include "notch/WindowSystemChoice.h"

#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QSize>
#include <QSizeF>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace norva {

class KeyboardHandback;
class SettingsStore;

// The notch on one display: a frameless window above all others at the top centre of the screen,
// with its own view model, as large as what it shows (closed, peeking or open) and a margin.
// Outside the visible shape the pointer passes through to what is below.
class NotchOverlay : public QObject {
    Q_OBJECT
    Q_PROPERTY(NotchViewModel* notch READ notch CONSTANT)
    Q_PROPERTY(QString displayName READ displayName CONSTANT)

public:
    NotchOverlay(QQmlEngine& engine, QScreen* screen, const DisplayInfo& display, Clock& clock,
                 SettingsStore& settings, DrawingPath path = DrawingPath::x11, QObject* parent = nullptr);
    ~NotchOverlay() override;

    bool isValid() const { return m_window != nullptr; }
    NotchViewModel* notch() { return &m_notch; }
    QString displayName() const { return m_display.name; }
    QScreen* screen() const { return m_screen; }
    QQuickWindow* window() const { return m_window; }

    // The visible shape, hanging from the top centre of the window; everything outside lets the
    // pointer through.
    Q_INVOKABLE void setShape(const QSizeF& size, double bottomRadius);
    // Sizes the window to the shape heading for `target` and drawn at `shape` now (see
    // NotchLayout::windowSize), keeping it at the top centre of the display.
    Q_INVOKABLE void fit(const QSizeF& target, const QSizeF& shape, bool moving);
    QSize windowSize() const { return m_size; }

private:
    void place();
    void applyShape();
    void followKeyboard();

    NotchViewModel m_notch;
    DisplayInfo m_display;
    QPointer<QScreen> m_screen;
    QQuickWindow* m_window = nullptr;
    std::unique_ptr<NotchSurface> m_surface; // made with the window
    QSize m_size;
    QSizeF m_shape;
    double m_bottomRadius = 0;
    std::unique_ptr<KeyboardHandback> m_keyboard;
    bool m_holdsKeyboard = false;
};

} // namespace norva
