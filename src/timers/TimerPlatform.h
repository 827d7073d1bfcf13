#pragma once

#include "timers/TimerSound.h"

#include <memory>

namespace norva::Platform {

// The completion sound of the running desktop.
std::unique_ptr<TimerSound> makeTimerSound();

} // namespace norva::Platform
