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

HookPhase ApprovalExchange::phaseOf(const QString& id)
{
    return CodingAgents::fromPromptId(id) != CodingAgent::claude || id.startsWith(QStringLiteral("claude-"))
               ? HookPhase::permissionRequest
               : HookPhase::preToolUse;
}

QJsonObject ApprovalExchange::decisionBody(const QString& id, Decision decision,
                                           const QString& reasonOverride)
{
    const QString reason = !reasonOverride.isEmpty()            ? reasonOverride
                           : decision == Decision::deny         ? deniedReason
                           : decision == Decision::allowTrusted ? trustedReason
                                                                : approvedReason;
    return AgentAnswer::body(CodingAgents::fromPromptId(id), phaseOf(id), decision != Decision::deny, reason);
}

bool ApprovalExchange::writeDecision(const QString& id, Decision decision, const QString& reason) const
{
    const QByteArray text = QJsonDocument(decisionBody(id, decision, reason)).toJson(QJsonDocument::Compact);
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
