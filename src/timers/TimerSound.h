#pragma once

namespace norva {

// The sound a timer makes when it completes. On a freedesktop desktop it is the sound theme's
// "complete" event through the desktop's own player; a machine without one stays quiet.
class TimerSound {
public:
    virtual ~TimerSound() = default;
    virtual void playCompletion() = 0;
};

} // namespace norva
