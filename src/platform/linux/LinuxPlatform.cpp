#include "app/Platform.h"

#include "app/Paths.h"
#include "platform/linux/ActiveWindow.h"
#include "platform/linux/PreferencesFile.h"

namespace norva::Platform {

std::unique_ptr<PreferencesDatabase> makePreferencesDatabase()
{
    return std::make_unique<PreferencesFile>(Paths::preferencesFile());
}

bool frontWindowIsFullscreenOn(const QRect& displayGeometry)
{
    return ActiveWindow::isFullscreenOn(displayGeometry);
}

} // namespace norva::Platform
