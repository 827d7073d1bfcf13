#pragma once

#include <QString>

namespace norva {

// What a team rule does with a matching tool call: never lets it run, or always lets it run.
enum class TeamAction { never, always };

// Which sort of tool call a rule looks at: shell commands, file edits or web fetches.
enum class TeamSubjectKind { run, edit, fetch };

// One rule of the team's rule set, as it reads in "team-rules.json": an identifier unique within
// the team, its action, the kind of call it looks at, and a pattern where "*" matches any run.
struct TeamRule {
    QString identifier;
    TeamAction action = TeamAction::never;
    TeamSubjectKind kind = TeamSubjectKind::run;
    QString pattern;

    bool operator==(const TeamRule&) const = default;
};

} // namespace norva
