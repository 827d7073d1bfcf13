#pragma once

#include "agents/AgentAnswer.h"
#include "agents/team/TeamRule.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace norva {

// What the team's never rules leave on disk for the hooks: the deny bodies that a hook prints to
// its agent, and the "team-deny-active" marker that tells the hooks to ask at all.
class TeamEnforcement {
public:
    static QString message(const TeamRule& rule);
    // The deny body, with the rule's message, for a hook of `agent` asking at `phase`.
    static QByteArray denyJSON(CodingAgent agent, HookPhase phase, const TeamRule& rule);
    // Keeps "team-deny-active" in `approvalsFolder` exactly while `rules` holds a never rule.
    // False (and one log line) when the marker could not be made or removed.
    static bool writeFlags(const QString& approvalsFolder, const QList<TeamRule>& rules);
    static bool hasNeverRule(const QList<TeamRule>& rules);

    static inline const QString activeMarker = QStringLiteral("team-deny-active");
};

} // namespace norva
