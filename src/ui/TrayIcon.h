#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace norva {

class SettingsStore;

// The status-area icon with Open, Settings and Quit, shown while "showMenuBarIcon" is on.
class TrayIcon : public QObject {
    Q_OBJECT
public:
    explicit TrayIcon(SettingsStore& settings, QObject* parent = nullptr);

signals:
    void openRequested();
    void settingsRequested();
    void quitRequested();

private:
    void follow();

    SettingsStore& m_settings;
    QMenu m_menu;
    QSystemTrayIcon m_icon;
};

} // namespace norva
