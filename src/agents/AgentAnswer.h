#pragma once

#include "agents/CodingAgent.h"

#include <QJsonObject>
#include <QString>

namespace norva {

// When a hook asks Norva about a tool call: before the tool runs (a PreToolUse hook), or when the
// agent is about to ask the person itself (its permission request).
enum class HookPhase { preToolUse, permissionRequest };

// The body a hook prints to its agent to allow or deny a tool call, in the dialect that agent reads
// at that phase. The notch's answers and the team's deny bodies are both made here, so an agent
// never reads two shapes of the same decision.
class AgentAnswer {
public:
    // PreToolUse hooks (Claude Code's, and every agent's never-allow check before a tool runs) read a
    // "permissionDecision" that always carries its reason; Codex and Claude Code's PermissionRequest
    // hook read a "decision" under "hookSpecificOutput"; Copilot CLI reads the bare decision. The
    // last two carry the reason as "message", and only with a deny.
    static QJsonObject body(CodingAgent agent, HookPhase phase, bool allowed, const QString& reason);
};

} // namespace norva
