#pragma once

#include "app/Clock.h"
#include "media/OutputVolume.h"

#include <memory>

namespace norva::Platform {

// The default output device's volume on the running system (pactl on Linux, AppleScript on macOS).
std::unique_ptr<OutputVolume> makeOutputVolume(Clock& clock);

} // namespace norva::Platform
