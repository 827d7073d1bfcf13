#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickWindow>

class QQmlEngine;

namespace norva {

// The settings window, made from SettingsWindow.qml the first time it is asked for and kept (only
// hidden when closed), so it opens again at once where the person left it.
class SettingsWindowHost : public QObject {
    Q_OBJECT
public:
    explicit SettingsWindowHost(QQmlEngine& engine, QObject* parent = nullptr);
    ~SettingsWindowHost() override;

    // Shows the window and brings it forward; false when it could not be made (logged once).
    bool open();
    QQuickWindow* window() const { return m_window; }

private:
    QQmlEngine& m_engine;
    QPointer<QQuickWindow> m_window;
};

} // namespace norva
