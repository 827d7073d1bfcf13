#pragma once

#include "app/Clock.h"
#include "shelf/FileOpener.h"
#include "shelf/ScreenshotSource.h"

#include <memory>

namespace norva::Platform {

// What tells the shelf of new screenshots on the running system (the screenshots folder on
// Linux, the Spotlight query on macOS).
std::unique_ptr<ScreenshotSource> makeScreenshotSource(Clock& clock);
// What opens a shelved file in the desktop's app for it (xdg-open on Linux).
std::unique_ptr<FileOpener> makeFileOpener();
// Whether a folder is zipped with "/usr/bin/ditto", as Finder does (macOS), rather than with Norva's
// own ZipWriter.
bool zipsWithDitto();

} // namespace norva::Platform
