#include "agents/prompts/ApprovalExchange.h"

#include "app/Log.h"

#include <QJsonDocument>

namespace norva {
namespace {

const QString approvedReason = QStringLiteral("Approved from the Norva notch");
const QString trustedReason = QStringLiteral("Auto-approved from the Norva notch (session trusted)");
const QString deniedReason = QStringLiteral("Denied from the Norva notch");

} // namespace

ApprovalExchange::ApprovalExchange(ApprovalsFolder folder) : m_folder(std::move(folder)) {}

bool ApprovalExchange::isPermissionRequest(const QString& id)
{
    return CodingAgents::fromPromptId(id) != CodingAgent::claude || id.startsWith(QStringLiteral("claude-"));
}

std::optional<QJsonObject> ApprovalExchange::decisionBody(CodingAgent agent, Decision decision,
                                                          const QString& reasonOverride, bool permissionRequest)
{
    const bool allowed = decision != Decision::deny;
    switch (agent) {
    case CodingAgent::claude: {
        if (permissionRequest) // Claude Code's PermissionRequest hook takes Codex's body
            return decisionBody(CodingAgent::codex, decision, reasonOverride);
        const QString reason = !reasonOverride.isEmpty()            ? reasonOverride
                               : decision == Decision::deny         ? deniedReason
                               : decision == Decision::allowTrusted ? trustedReason
                                                                    : approvedReason;
        return QJsonObject{{QStringLiteral("hookSpecificOutput"),
                            QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PreToolUse")},
                                        {QStringLiteral("permissionDecision"),
                                         allowed ? QStringLiteral("allow") : QStringLiteral("deny")},
                                        {QStringLiteral("permissionDecisionReason"), reason}}}};
    }
    case CodingAgent::codex: {
        QJsonObject verdict{
            {QStringLiteral("behavior"), allowed ? QStringLiteral("allow") : QStringLiteral("deny")}};
        if (!allowed)
            verdict.insert(QStringLiteral("message"),
                           reasonOverride.isEmpty() ? deniedReason : reasonOverride);
        return QJsonObject{
            {QStringLiteral("hookSpecificOutput"),
             QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PermissionRequest")},
                         {QStringLiteral("decision"), verdict}}}};
    }
    case CodingAgent::copilot: {
        QJsonObject verdict{
            {QStringLiteral("behavior"), allowed ? QStringLiteral("allow") : QStringLiteral("deny")}};
        if (!allowed)
            verdict.insert(QStringLiteral("message"),
                           reasonOverride.isEmpty() ? deniedReason : reasonOverride);
        return verdict;
    }
    }
    return std::nullopt;
}

bool ApprovalExchange::writeDecision(const QString& id, Decision decision, const QString& reason) const
{
    const auto body = decisionBody(CodingAgents::fromPromptId(id), decision, reason, isPermissionRequest(id));
    const QByteArray text = body ? QJsonDocument(*body).toJson(QJsonDocument::Compact) : QByteArray();
    if (text.isEmpty()) {
        logLine(QStringLiteral("Norva agents: answering ") + id +
                QStringLiteral(
                    " failed (its decision could not be written as JSON); the hook waits out its timeout"));
        return false;
    }
    return writeResponse(id, text, QStringLiteral("Norva agents: answering ") + id);
}

bool ApprovalExchange::releaseToTerminal(const QString& id) const
{
    const QString prefix =
        QStringLiteral("Norva agents: handing ") + id + QStringLiteral(" back to the terminal");
    if (!writeResponse(id, QByteArray(), prefix))
        return false;
    if (const FileResult removed = m_folder.remove(QStringLiteral("pending-") + id + QStringLiteral(".json"));
        !removed) {
        logLine(prefix + QStringLiteral(" failed (the prompt's file could not be removed: ") + removed.error +
                QStringLiteral("); it may show again on the next scan"));
        return false;
    }
    return true;
}

bool ApprovalExchange::writeResponse(const QString& id, const QByteArray& body,
                                     const QString& failurePrefix) const
{
    // Ids come from file names in the folder; one naming another folder is never answered.
    const FileResult written = id.isEmpty() || id.contains(QLatin1Char('/'))
                                   ? FileResult::failed(QStringLiteral("the prompt's id is not a file name"))
                                   : m_folder.write(QStringLiteral("resp-") + id, body);
    if (!written) {
        logLine(failurePrefix + QStringLiteral(" failed (the answer file could not be written: ") +
                written.error + QStringLiteral("); the hook waits out its timeout"));
    }
    return written.ok;
}

} // namespace norva
