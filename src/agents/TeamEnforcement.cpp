#include "agents/TeamEnforcement.h"

#include "agents/TeamRules.h"
#include "app/AtomicFile.h"
#include "app/Log.h"

#include <QFile>
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
    const QString marker = approvalsFolder + QLatin1Char('/') + activeMarker;
    if (!hasNeverRule(rules)) {
        if (QFile::exists(marker) && !QFile::remove(marker)) {
            logLine(QStringLiteral("Norva team: the marker ") + marker +
                    QStringLiteral(" could not be removed (the folder is not writable); hooks keep asking"));
            return false;
        }
        return true;
    }
    if (QFile::exists(marker))
        return true;
    if (const auto failure = writeFileAtomically(marker, QByteArray())) {
        logLine(QStringLiteral("Norva team: the marker ") + marker +
                QStringLiteral(" could not be written (") + *failure +
                QStringLiteral("); never-allow rules can't reach the hooks"));
        return false;
    }
    return true;
}

} // namespace norva
