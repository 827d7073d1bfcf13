#pragma once

#include "hotkeys/HotKeyGrab.h"
#include "hotkeys/HotKeys.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// Norva's hot keys for the whole desktop. The demo grabs none, so it never takes a key from the
// person's own Norva; what a key opens is the app's to say (it listens to `pressed`).
class HotKeysModule : public FeatureModule {
    Q_OBJECT
public:
    explicit HotKeysModule(Shell& shell);
    ~HotKeysModule() override;

    void start() override;
    QList<QObject*> qmlObjects() const override;
    HotKeys& hotKeys() const { return *m_hotKeys; }

private:
    Shell& m_shell;
    std::unique_ptr<HotKeyGrab> m_grab;
    std::unique_ptr<HotKeys> m_hotKeys;
};

} // namespace norva
