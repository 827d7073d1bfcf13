#pragma once

#include "notch/DisplayPicker.h"
#include "notch/NotchLayout.h"
#include "notch/NotchViewModel.h"
#include "notch/WindowSystemChoice.h"

#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QScreen>

#include <memory>

class QQmlEngine;
class QQuickWindow;


namespace norva {

class SettingsStore;

// The notch on one display: a frameless window above all others at the top centre of the screen,
// with its own view model. Outside the visible shape the pointer passes through to what is below.
class NotchOverlay : public QObject {
    Q_OBJECT
    Q_PROPERTY(NotchViewModel* notch READ notch CONSTANT)
    Q_PROPERTY(QString displayName READ displayName CONSTANT)

public:
    // Room for the open panel at its tallest, with both banners and the shape's soft edge.
    static constexpr int windowWidth = int(NotchLayout::openWidth + 2 * NotchLayout::windowMargin);
    static constexpr int windowHeight = int(NotchLayout::maxPanelHeight + NotchLayout::meetingBanner +
                                            NotchLayout::alertBanner + NotchLayout::windowMargin);

    NotchOverlay(QQmlEngine& engine, QScreen* screen, const DisplayInfo& display, Clock& clock,
                 SettingsStore& settings, DrawingPath path = DrawingPath::x11, QObject* parent = nullptr);
    ~NotchOverlay() override;

    bool isValid() const { return m_window != nullptr; }
    NotchViewModel* notch() { return &m_notch; }
    QString displayName() const { return m_display.name; }
    QScreen* screen() const { return m_screen; }
    QQuickWindow* window() const { return m_window; }

    // The visible shape in window coordinates; everything outside lets the pointer through.
    Q_INVOKABLE void setShape(const QRectF& rect, double bottomRadius);

private:
    void place();

    NotchViewModel m_notch;
    DisplayInfo m_display;
    DrawingPath m_path;
    QPointer<QScreen> m_screen;
    QQuickWindow* m_window = nullptr;
};

} // namespace norva
