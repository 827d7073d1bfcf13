#pragma once

#include "app/StatusNotifierItem.h"

#include <QObject>

namespace norva {

class SettingsStore;

// The status-area icon with Open, Settings and Quit, shown while "showMenuBarIcon" is on. It is a
// StatusNotifierItem on the session bus, so Norva needs no widgets for it.
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
    StatusNotifierItem m_item;
};

} // namespace norva
