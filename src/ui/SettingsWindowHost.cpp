#include "ui/SettingsWindowHost.h"

#include "app/Log.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace norva {

SettingsWindowHost::SettingsWindowHost(QQmlEngine& engine, QObject* parent)
    : QObject(parent), m_engine(engine)
{}

SettingsWindowHost::~SettingsWindowHost()
{
    delete m_window; // before the engine its bindings read from
}

bool SettingsWindowHost::open()
{
    if (!m_window) {
        QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/Norva/SettingsWindow.qml")));
        m_window = qobject_cast<QQuickWindow*>(component.create());
        if (!m_window) {
            logLine(QStringLiteral("Norva settings: the settings window could not be made (") +
                    component.errorString().trimmed() +
                    QStringLiteral("); the notch's Settings page still works"));
            return false;
        }
    }
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
    return true;
}

} // namespace norva
