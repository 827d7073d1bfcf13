#include "app/Platform.h"

#include "app/Paths.h"
#include "platform/linux/PreferencesFile.h"

namespace norva::Platform {

std::unique_ptr<PreferencesDatabase> makePreferencesDatabase()
{
    return std::make_unique<PreferencesFile>(Paths::preferencesFile());
}

} // namespace norva::Platform
