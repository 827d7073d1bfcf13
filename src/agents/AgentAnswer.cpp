#include "agents/AgentAnswer.h"

namespace norva {

QJsonObject AgentAnswer::body(CodingAgent agent, HookPhase phase, bool allowed, const QString& reason)
{
    const QString verdict = allowed ? QStringLiteral("allow") : QStringLiteral("deny");
    if (phase == HookPhase::preToolUse) {
        return {{QStringLiteral("hookSpecificOutput"),
                 QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PreToolUse")},
                             {QStringLiteral("permissionDecision"), verdict},
                             {QStringLiteral("permissionDecisionReason"), reason}}}};
    }
    QJsonObject decision{{QStringLiteral("behavior"), verdict}};
    if (!allowed)
        decision.insert(QStringLiteral("message"), reason);
    if (agent == CodingAgent::copilot)
        return decision;
    return {{QStringLiteral("hookSpecificOutput"),
             QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PermissionRequest")},
                         {QStringLiteral("decision"), decision}}}};
}

} // namespace norva
