#include "agents/hooks/CopilotCLIHook.h"

#include "agents/AgentConstants.h"
#include "agents/hooks/AgentConfigFile.h"
#include "agents/hooks/AgentPresence.h"
#include "agents/hooks/HookScripts.h"
#include "app/Paths.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace norva {

QString CopilotCLIHook::defaultHome()
{
    const QString configured = qEnvironmentVariable("COPILOT_HOME");
    return configured.isEmpty() ? Paths::home() + QStringLiteral("/.copilot") : configured;
}

QString CopilotCLIHook::documentPath()
{
    return defaultHome() + QStringLiteral("/hooks/norva.json");
}

bool CopilotCLIHook::copilotInstalled()
{
    return AgentPresence::executableFound(
        QStringLiteral("copilot"),
        {QStringLiteral("/opt/homebrew/bin/copilot"), QStringLiteral("/usr/local/bin/copilot")});
}

QJsonObject CopilotCLIHook::document()
{
    // The event name travels as the script's first argument: Copilot's payloads do not carry one.
    const QString command =
        HookScripts::command(Paths::approvalsFolder() + QLatin1Char('/') + agents::copilotScript);
    const auto handler = [&command](const QString& event, int timeout) {
        return QJsonArray{QJsonObject{{QStringLiteral("type"), QStringLiteral("command")},
                                      {QStringLiteral("bash"), command + QLatin1Char(' ') + event},
                                      {QStringLiteral("timeoutSec"), timeout}}};
    };
    const QJsonObject hooks{
        {QStringLiteral("sessionStart"),
         handler(QStringLiteral("sessionStart"), agents::copilotShortTimeout)},
        {QStringLiteral("permissionRequest"),
         handler(QStringLiteral("permissionRequest"), agents::copilotPermissionTimeout)},
        {QStringLiteral("sessionEnd"), handler(QStringLiteral("sessionEnd"), agents::copilotShortTimeout)},
    };
    return QJsonObject{{QStringLiteral("version"), 1}, {QStringLiteral("hooks"), hooks}};
}

FileResult CopilotCLIHook::install()
{
    if (const FileResult written =
            HookScripts::write(agents::copilotScript, ApprovalsFolder(Paths::approvalsFolder()));
        !written)
        return written;
    return AgentConfigFile::writeWhole(documentPath(), document());
}

FileResult CopilotCLIHook::uninstall()
{
    QFile file(documentPath());
    if (file.exists() && !file.remove())
        return FileResult::failed(file.errorString());
    return FileResult::done();
}

bool CopilotCLIHook::isInstalled()
{
    QFile file(documentPath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonObject hooks =
        QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("hooks")).toObject();
    for (auto it = hooks.begin(); it != hooks.end(); ++it) {
        for (const QJsonValue& handler : it.value().toArray()) {
            if (handler.toObject().value(QStringLiteral("bash")).toString().contains(agents::copilotScript))
                return true;
        }
    }
    return false;
}

} // namespace norva
