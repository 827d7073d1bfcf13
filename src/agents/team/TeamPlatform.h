#pragma once

#include <QString>

namespace norva::Platform {

// Where an administrator puts the team's rules for every person of the machine
// ("/etc/norva/team-rules.json" on Linux); a copy there outranks the person's own.
QString managedTeamRulesFile();

} // namespace norva::Platform
