#include "agents/team/TeamEnforcement.h"

#include "agents/ApprovalsFolder.h"
#include "agents/team/TeamRules.h"
#include "app/Log.h"

#include <QJsonDocument>

namespace norva {

QString TeamEnforcement::message(const TeamRule& rule)
{
    return QStringLiteral("Denied by your team's rule: ") + TeamRules::phrase(rule);
}

QByteArray TeamEnforcement::denyJSON(CodingAgent agent, HookPhase phase, const TeamRule& rule)
{
    return QJsonDocument(AgentAnswer::body(agent, phase, false, message(rule)))
        .toJson(QJsonDocument::Compact);
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
                    QStringLiteral(" could not be removed (") + removed.error +
                    QStringLiteral("); hooks keep asking"));
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
