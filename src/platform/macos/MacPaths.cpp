#include "app/Paths.h"

// Norva's folders on macOS: its own under Application Support, the preferences domain's folder.
namespace norva::Paths {

QString dataFolder()
{
    return home() + QStringLiteral("/Library/Application Support/Norva");
}

QString configFolder()
{
    return home() + QStringLiteral("/Library/Preferences");
}

QString stateFolder()
{
    return dataFolder();
}

} // namespace norva::Paths
