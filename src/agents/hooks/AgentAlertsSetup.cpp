#include "agents/hooks/AgentAlertsSetup.h"

#include "agents/AgentConstants.h"
#include "agents/hooks/AgentConfigFile.h"
#include "agents/hooks/ApprovalHook.h"
#include "app/Paths.h"

#include <QJsonArray>

namespace norva {
namespace {

const QString notificationEvent = QStringLiteral("Notification");

// The text between double quotes for sh: \, ", $ and ` are escaped.
QString doubleQuoted(const QString& text)
{
    QString escaped;
    for (const QChar c : text) {
        if (c == QLatin1Char('\\') || c == QLatin1Char('"') || c == QLatin1Char('$') || c == QLatin1Char('`'))
            escaped += QLatin1Char('\\');
        escaped += c;
    }
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

} // namespace

QString AgentAlertsSetup::eventsFile()
{
    return Paths::dataFolder() + QLatin1Char('/') + agents::eventsMarker;
}

QString AgentAlertsSetup::command()
{
    // Under the home folder the line names "$HOME/...", as Claude Code's own examples do; a data
    // folder elsewhere (XDG_DATA_HOME) is written out whole.
    const QString home = Paths::home() + QLatin1Char('/');
    const QString file = eventsFile();
    QString target;
    if (file.startsWith(home)) {
        const QString rest = doubleQuoted(file.mid(home.size()));
        target = QStringLiteral("\"$HOME/") + rest.mid(1);
    } else {
        target = doubleQuoted(file);
    }
    return QStringLiteral("{ printf '%s ' \"$(date +%s)\"; cat; echo; } >> ") + target;
}

FileResult AgentAlertsSetup::install()
{
    const AgentConfigFile file(ApprovalHook::settingsPath());
    QJsonObject settings = file.read();
    QJsonObject hooks = settings.value(QStringLiteral("hooks")).toObject();
    const QJsonObject hook{{QStringLiteral("type"), QStringLiteral("command")},
                           {QStringLiteral("command"), command()}};
    AgentConfigFile::replaceEntries(hooks, notificationEvent, agents::eventsMarker,
                                    QJsonObject{{QStringLiteral("hooks"), QJsonArray{hook}}});
    settings.insert(QStringLiteral("hooks"), hooks);
    return file.write(settings);
}

bool AgentAlertsSetup::isInstalled()
{
    const QJsonObject hooks =
        AgentConfigFile(ApprovalHook::settingsPath()).read().value(QStringLiteral("hooks")).toObject();
    return AgentConfigFile::findHook(hooks, notificationEvent, agents::eventsMarker).has_value();
}

} // namespace norva
