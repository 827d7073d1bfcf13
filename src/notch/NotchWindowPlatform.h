#pragma once

#include "notch/NotchSurface.h"
#include "notch/WindowSystemChoice.h"

#include <memory>

class QWindow;

namespace norva::Platform {

// The surface of one notch window for the way this desktop draws it (`path`).
std::unique_ptr<NotchSurface> makeNotchSurface(QWindow& window, DrawingPath path);

} // namespace norva::Platform
