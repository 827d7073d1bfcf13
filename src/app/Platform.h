#pragma once

#include "app/PreferencesDatabase.h"

#include <memory>

namespace norva::Platform {

// The one place that picks each platform seam's implementation for the running system.
std::unique_ptr<PreferencesDatabase> makePreferencesDatabase();

} // namespace norva::Platform
