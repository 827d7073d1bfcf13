#include "agents/team/TeamEnforcement.h"

#include "agents/ApprovalsFolder.h"
#include "agents/team/TeamRules.h"
#include "app/Log.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace norva {

QString TeamEnforcement::message(const TeamRule& rule)
{
    return QStringLiteral("Denied by your team's rule: ") + TeamRules::phrase(rule);
}

QByteArray TeamEnforcement::denyJSON(const QString& agent, Dialect dialect, const TeamRule& rule)
{
    const QString text = message(rule);
    QJsonObject body;
    if (dialect == Dialect::preToolUse || agent == QStringLiteral("claude")) {
        // Claude Code has no permission-request phase: its checks all answer as PreToolUse.
        body = {{QStringLiteral("hookSpecificOutput"),
                 QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PreToolUse")},
                             {QStringLiteral("permissionDecision"), QStringLiteral("deny")},
                             {QStringLiteral("permissionDecisionReason"), text}}}};
    } else if (agent == QStringLiteral("codex")) {
        body = {{QStringLiteral("hookSpecificOutput"),
                 QJsonObject{{QStringLiteral("hookEventName"), QStringLiteral("PermissionRequest")},
                             {QStringLiteral("decision"),
                              QJsonObject{{QStringLiteral("behavior"), QStringLiteral("deny")},
                                          {QStringLiteral("message"), text}}}}}};
    } else if (agent == QStringLiteral("copilot")) {
        body = {{QStringLiteral("behavior"), QStringLiteral("deny")}, {QStringLiteral("message"), text}};
    }
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

bool TeamEnforcement::hasNeverRule(const QList<TeamRule>& rules)
{
    return std::any_of(rules.cbegin(), rules.cend(),
                       [](const TeamRule& rule) { return rule.action == TeamAction::never; });
}

bool TeamEnforcement::writeFlags(const QString& approvalsFolder, const QList<TeamRule>& rules)
{
    const ApprovalsFolder folder(approvalsFolder);
    if (!hasNeverRule(rules)) {
        if (const FileResult removed = folder.remove(activeMarker); !removed) {
            logLine(QStringLiteral("Norva team: the marker ") + folder.filePath(activeMarker) +
                    QStringLiteral(" could not be removed (") + removed.error + QStringLiteral("); hooks keep asking"));
            return false;
        }
        return true;
    }
    if (folder.exists(activeMarker))
        return true;
    FileResult written = folder.ensure();
    if (written)
        written = folder.write(activeMarker, QByteArray());
    if (!written) {
        logLine(QStringLiteral("Norva team: the marker ") + folder.filePath(activeMarker) +
                QStringLiteral(" could not be written (") + written.error +
                QStringLiteral("); never-allow rules can't reach the hooks"));
        return false;
    }
    return true;
}

} // namespace norva
