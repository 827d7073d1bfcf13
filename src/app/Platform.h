#pragma once

#include "app/LaunchAtLogin.h"
#include "app/PreferencesDatabase.h"

#include <QRect>

#include <memory>

namespace norva::Platform {

// The one place that picks each platform seam's implementation for the running system.
std::unique_ptr<PreferencesDatabase> makePreferencesDatabase();
std::unique_ptr<LaunchAtLogin> makeLaunchAtLogin();
// Whether the window in front is full-screen on the display with this geometry (in the display
// server's pixels). False whenever the desktop does not say.
bool frontWindowIsFullscreenOn(const QRect& displayGeometry);
// How the texts name the person's machine: "this computer" on Linux, "this Mac" on macOS.
QString thisComputer();

} // namespace norva::Platform
