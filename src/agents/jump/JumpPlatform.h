#pragma once

#include "agents/jump/WindowActivator.h"

#include <memory>

namespace norva::Platform {

// What brings a window forward on the running desktop (X11 activation on Linux).
std::unique_ptr<WindowActivator> makeWindowActivator();

} // namespace norva::Platform
