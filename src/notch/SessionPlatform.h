#pragma once

#include "notch/WindowSystemChoice.h"

namespace norva::Platform {

// Reads the session before Qt starts: the environment, and on a Wayland desktop whose person chose
// no platform, whether XWayland answers and whether the compositor offers a layer for the notch.
SessionEnvironment readSessionEnvironment(const QStringList& arguments);

} // namespace norva::Platform
