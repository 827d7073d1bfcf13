#pragma once

#include "agents/hooks/HookPresence.h"
#include "settings/DesktopColorScheme.h"
#include "settings/FirstRunGuide.h"
#include "settings/SettingsWindowModel.h"

#include <QList>
#include <QObject>

#include <memory>
#include <utility>

namespace norva {

class SettingsStore;

// The settings in one piece until the shell makes a module of them: the settings window's model,
// the desktop's colour scheme it follows, and the first-run guide with What's new. The windows are
// the app's: it makes the settings window from QML and opens the notch while the guide wants it.
class SettingsFeature : public QObject {
    Q_OBJECT
public:
    SettingsFeature(SettingsStore& settings, bool firstLaunch, bool demo);
    ~SettingsFeature() override;

    // "settingsWindow", "firstRun" and "desktopScheme", the names the settings' QML uses.
    QList<std::pair<QString, QObject*>> qmlObjects() const;
    FirstRunGuide& guide() const { return *m_guide; }

private:
    std::unique_ptr<HookPresence> m_hooks;
    std::unique_ptr<DesktopColorScheme> m_scheme;
    std::unique_ptr<SettingsWindowModel> m_window;
    std::unique_ptr<FirstRunGuide> m_guide;
};

} // namespace norva
