#pragma once

#include "agents/AgentAnswer.h"
#include "agents/ApprovalsFolder.h"

#include <QJsonObject>
#include <QString>

namespace norva {

// Norva's answers to waiting hooks: the agent's decision body written to "resp-ID", or an empty
// "resp-ID" that hands the prompt back to the agent's own terminal prompt.
class ApprovalExchange {
public:
    enum class Decision { allow, deny, allowTrusted };

    explicit ApprovalExchange(ApprovalsFolder folder);

    // The body the hook of prompt `id` prints to its agent for this decision. `reason`, when given,
    // replaces the notch's own words (a team rule's "Allowed by your team's rule").
    static QJsonObject decisionBody(const QString& id, Decision decision, const QString& reason = QString());
    // The phase of the hook that waits for prompt `id`: a permission request for Codex, Copilot, and
    // Claude Code's PermissionRequest hook, whose ids begin "claude-" (its PreToolUse ids are tool-use ids).
    static HookPhase phaseOf(const QString& id);

    // Writes the decision for the prompt; logs one line and returns false when it could not.
    bool writeDecision(const QString& id, Decision decision, const QString& reason = QString()) const;
    // Writes an empty answer and removes the prompt's file; false (logged) on failure.
    bool releaseToTerminal(const QString& id) const;

private:
    bool writeResponse(const QString& id, const QByteArray& body, const QString& failurePrefix) const;

    ApprovalsFolder m_folder;
};

} // namespace norva
