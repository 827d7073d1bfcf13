#pragma once

#include "clipboard/ClipboardSource.h"

#include <memory>

namespace norva::Platform {

// The desktop's clipboard for the running system (Qt's on Linux, NSPasteboard on macOS).
std::unique_ptr<ClipboardSource> makeClipboardSource();

} // namespace norva::Platform
