#pragma once

#include "notch/WindowSystemChoice.h"

#include <QRegion>

class QWindow;

namespace norva::Platform {

// Readies a notch window for the way this desktop draws it, before the window is first shown: its
// flags, and on a Wayland layer its layer surface.
void prepareNotchWindow(QWindow& window, DrawingPath path);

// Lets the pointer reach the notch only inside `shape` (window coordinates); outside it, the
// pointer reaches the windows below.
void setNotchShape(QWindow& window, const QRegion& shape, DrawingPath path);

} // namespace norva::Platform
