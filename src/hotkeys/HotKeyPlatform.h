#pragma once

#include "hotkeys/HotKeyGrab.h"

#include <memory>

namespace norva::Platform {

// The desktop's way of handing a key combination to Norva.
std::unique_ptr<HotKeyGrab> makeHotKeyGrab();

} // namespace norva::Platform
