#pragma once

#include "agents/hooks/HookPresence.h"
#include "settings/DesktopColorScheme.h"
#include "settings/FirstRunGuide.h"
#include "settings/SettingsWindowModel.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// The settings: the notch's Settings page, the settings window's model, the desktop's colour scheme
// it follows, and the first-run guide with What's new. The windows are the app's: it makes the
// settings window from QML and opens the notch while the guide wants it.
class SettingsModule : public FeatureModule {
    Q_OBJECT
public:
    explicit SettingsModule(Shell& shell);
    ~SettingsModule() override;

    void start() override {}
    QList<FeaturePage> pages() const override;
    // "settingsWindow", "firstRun" and "desktopScheme", the names the settings' QML uses.
    QList<QObject*> qmlObjects() const override;
    FirstRunGuide& guide() const { return *m_guide; }

private:
    std::unique_ptr<HookPresence> m_hooks;
    std::unique_ptr<DesktopColorScheme> m_scheme;
    std::unique_ptr<SettingsWindowModel> m_window;
    std::unique_ptr<FirstRunGuide> m_guide;
};

} // namespace norva
