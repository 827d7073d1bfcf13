#include "agents/team/TeamPlatform.h"
#include "app/Platform.h"
#include "shelf/ShelfPlatform.h"

// The facts of macOS that Norva's folders ask for. The seams' implementations are chosen here too as
// they are written for macOS.
namespace norva::Platform {

QString thisComputer()
{
    return QStringLiteral("this Mac");
}

QString managedTeamRulesFile()
{
    return QStringLiteral("/Library/Application Support/Norva/team-rules.json");
}

bool zipsWithDitto()
{
    return true;
}

} // namespace norva::Platform
