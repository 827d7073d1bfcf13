#include "agents/hooks/CodexHook.h"

#include "agents/AgentConstants.h"
#include "agents/hooks/AgentConfigFile.h"
#include "agents/hooks/AgentPresence.h"
#include "agents/hooks/HookScripts.h"
#include "app/Paths.h"

#include <QJsonArray>
#include <QJsonObject>

namespace norva {
namespace {

struct CodexEvent {
    QString key;
    int timeout;
    bool asksOnNotch; // the permission request carries a status line for the terminal
};

const QList<CodexEvent>& codexEvents()
{
    static const QList<CodexEvent> events = {
        {QStringLiteral("SessionStart"), agents::codexShortTimeout, false},
        {QStringLiteral("PreToolUse"), agents::codexPreToolUseTimeout, false},
        {QStringLiteral("PermissionRequest"), agents::codexPermissionTimeout, true},
        {QStringLiteral("Stop"), agents::codexShortTimeout, false},
    };
    return events;
}

} // namespace

QString CodexHook::hooksPath()
{
    return Paths::home() + QStringLiteral("/.codex/hooks.json");
}

QString CodexHook::command()
{
    return HookScripts::command(Paths::approvalsFolder() + QLatin1Char('/') + agents::codexScript);
}

bool CodexHook::codexInstalled()
{
    return AgentPresence::executableFound(QStringLiteral("codex"), {QStringLiteral("/opt/homebrew/bin/codex"),
                                                                    QStringLiteral("/usr/local/bin/codex")});
}

FileResult CodexHook::install()
{
    if (const FileResult written =
            HookScripts::write(agents::codexScript, ApprovalsFolder(Paths::approvalsFolder()));
        !written)
        return written;
    return edit(true);
}

FileResult CodexHook::uninstall()
{
    return edit(false);
}

FileResult CodexHook::edit(bool adding)
{
    const AgentConfigFile file(hooksPath());
    QJsonObject document = file.read();
    QJsonObject hooks = document.value(QStringLiteral("hooks")).toObject();
    for (const CodexEvent& event : codexEvents()) {
        std::optional<QJsonObject> group;
        if (adding) {
            QJsonObject handler{{QStringLiteral("type"), QStringLiteral("command")},
                                {QStringLiteral("command"), command()},
                                {QStringLiteral("timeout"), event.timeout}};
            if (event.asksOnNotch)
                handler.insert(QStringLiteral("statusMessage"), QStringLiteral("Answer on the Norva notch"));
            group = QJsonObject{{QStringLiteral("hooks"), QJsonArray{handler}}};
        }
        AgentConfigFile::replaceEntries(hooks, event.key, agents::codexMarker, group);
    }
    document.insert(QStringLiteral("hooks"), hooks);
    return file.write(document);
}

bool CodexHook::isInstalled()
{
    const QJsonObject hooks = AgentConfigFile(hooksPath()).read().value(QStringLiteral("hooks")).toObject();
    return AgentConfigFile::findHook(hooks, QStringLiteral("PermissionRequest"), agents::codexMarker)
        .has_value();
}

bool CodexHook::entryHasMarker(const QJsonValue& entry, const QString& marker)
{
    return AgentConfigFile::entryHasMarker(entry, marker);
}

} // namespace norva
