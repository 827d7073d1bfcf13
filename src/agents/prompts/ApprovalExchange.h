#pragma once

#include "agents/ApprovalsFolder.h"
#include "agents/CodingAgent.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace norva {

// Norva's answers to waiting hooks: the agent's decision body written to "resp-ID", or an empty
// "resp-ID" that hands the prompt back to the agent's own terminal prompt.
class ApprovalExchange {
public:
    enum class Decision { allow, deny, allowTrusted };

    explicit ApprovalExchange(ApprovalsFolder folder);

    // The body the agent reads from its hook for this decision; none when no body can be formed.
    // `reason`, when given, replaces the notch's own words (a team rule's "Allowed by your team's rule").
    // Claude Code answers in the PreToolUse dialect unless its prompt came from its PermissionRequest hook.
    static std::optional<QJsonObject> decisionBody(CodingAgent agent, Decision decision,
                                                   const QString& reason = QString(),
                                                   bool permissionRequest = false);
    // True for a prompt whose hook answers a permission request: Codex, Copilot, and Claude Code's
    // PermissionRequest hook, whose ids begin "claude-" (its PreToolUse ids are tool-use ids).
    static bool isPermissionRequest(const QString& id);

    // Writes the decision for the prompt; logs one line and returns false when it could not.
    bool writeDecision(const QString& id, Decision decision, const QString& reason = QString()) const;
    // Writes an empty answer and removes the prompt's file; false (logged) on failure.
    bool releaseToTerminal(const QString& id) const;

private:
    bool writeResponse(const QString& id, const QByteArray& body, const QString& failurePrefix) const;

    ApprovalsFolder m_folder;
};

} // namespace norva
