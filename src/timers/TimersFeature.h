#pragma once

#include "timers/TimerManager.h"
#include "timers/TimerSound.h"

#include <memory>

namespace norva {

class SettingsStore;

// The timer as Norva runs it: the desktop's completion sound and the manager, which picks up a
// countdown that an earlier run left in "timer.json".
class TimersFeature {
public:
    TimersFeature(Clock& clock, LiveActivityCoordinator& activities, SettingsStore& settings,
                  const QString& dataFolder, bool restore);

    TimerManager& timer() { return *m_timer; }

private:
    std::unique_ptr<TimerSound> m_sound;
    std::unique_ptr<TimerManager> m_timer;
};

} // namespace norva
