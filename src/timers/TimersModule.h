#pragma once

#include "shell/FeatureModule.h"
#include "timers/TimerManager.h"
#include "timers/TimerSound.h"

#include <memory>

namespace norva {

class Shell;

// The timer with focus rounds, its page and its countdown on the closed notch: the desktop's
// completion sound and the manager, which picks up a countdown that an earlier run left in
// "timer.json". The demo keeps its timer in the shell's data folder for the demo.
class TimersModule : public FeatureModule {
    Q_OBJECT
public:
    explicit TimersModule(Shell& shell);
    ~TimersModule() override;

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

private:
    Shell& m_shell;
    std::unique_ptr<TimerSound> m_sound;
    std::unique_ptr<TimerManager> m_timer;
};

} // namespace norva
