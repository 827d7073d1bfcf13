#pragma once

#include "app/Clock.h"
#include "shelf/ScreenshotSource.h"

#include <memory>

namespace norva::Platform {

// What tells the shelf of new screenshots on the running system (the screenshots folder on
// Linux, the Spotlight query on macOS).
std::unique_ptr<ScreenshotSource> makeScreenshotSource(Clock& clock);

} // namespace norva::Platform
