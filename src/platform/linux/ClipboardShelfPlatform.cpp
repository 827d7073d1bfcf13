#include "clipboard/ClipboardPlatform.h"
#include "platform/linux/QtClipboardSource.h"
#include "platform/linux/ScreenshotFolderWatcher.h"
#include "shelf/ShelfPlatform.h"

namespace norva::Platform {

std::unique_ptr<ClipboardSource> makeClipboardSource()
{
    return std::make_unique<QtClipboardSource>();
}

std::unique_ptr<ScreenshotSource> makeScreenshotSource(Clock& clock)
{
    return std::make_unique<ScreenshotFolderWatcher>(clock);
}

} // namespace norva::Platform
