#include "agents/hooks/ApprovalHook.h"

#include "agents/AgentConstants.h"
#include "agents/hooks/HookScripts.h"
#include "app/Paths.h"

#include <QJsonArray>

namespace norva {

const QString ApprovalHook::preToolUseMatcher =
    QStringLiteral("Bash|Edit|Write|MultiEdit|NotebookEdit|WebFetch|WebSearch");

namespace {

const QString preToolUseEvent = QStringLiteral("PreToolUse");
const QString postToolUseEvent = QStringLiteral("PostToolUse");
const QString permissionRequestEvent = QStringLiteral("PermissionRequest");
const QString questionTool = QStringLiteral("AskUserQuestion");
// Every tool whose permission dialog Claude Code is about to show.
const QString everyTool = QStringLiteral("*");

// One entry; a status message tells the terminal where the question went while the hook runs.
QJsonObject entry(const QString& matcher, const QString& command, int timeout, bool saysWhere)
{
    QJsonObject hook{{QStringLiteral("type"), QStringLiteral("command")},
                     {QStringLiteral("command"), command},
                     {QStringLiteral("timeout"), timeout}};
    if (saysWhere)
        hook.insert(QStringLiteral("statusMessage"), agents::hookStatusMessage);
    return QJsonObject{{QStringLiteral("matcher"), matcher}, {QStringLiteral("hooks"), QJsonArray{hook}}};
}

QString scriptCommand(const QString& script)
{
    return HookScripts::command(Paths::approvalsFolder() + QLatin1Char('/') + script);
}

} // namespace

QString ApprovalHook::settingsPath()
{
    return Paths::home() + QStringLiteral("/.claude/settings.json");
}

QString ApprovalHook::preToolUseCommand()
{
    return scriptCommand(agents::preToolUseScript);
}

QString ApprovalHook::postToolUseCommand()
{
    return scriptCommand(agents::postToolUseScript);
}

QString ApprovalHook::permissionRequestCommand()
{
    return scriptCommand(agents::permissionRequestScript);
}

FileResult ApprovalHook::install()
{
    const ApprovalsFolder folder(Paths::approvalsFolder());
    for (const QString& script :
         {agents::preToolUseScript, agents::postToolUseScript, agents::permissionRequestScript}) {
        if (const FileResult written = HookScripts::write(script, folder); !written)
            return written;
    }
    return edit(true);
}

FileResult ApprovalHook::uninstall()
{
    return edit(false);
}

FileResult ApprovalHook::edit(bool adding)
{
    const AgentConfigFile file(settingsPath());
    QJsonObject settings = file.read();
    QJsonObject hooks = settings.value(QStringLiteral("hooks")).toObject();
    const auto added = [adding](QJsonObject made) { return adding ? std::optional(made) : std::nullopt; };
    // Two PreToolUse entries: the never-allow check for the tools rules can name (it starts no
    // process unless the team has never rules), and questions, which always go to the notch.
    AgentConfigFile::replaceEntries(
        hooks, preToolUseEvent, agents::preToolUseMarker,
        added(entry(preToolUseMatcher, preToolUseCommand(), agents::claudePreToolUseTimeout, false)));
    if (adding) {
        QJsonArray entries = hooks.value(preToolUseEvent).toArray();
        entries.append(entry(questionTool, preToolUseCommand() + QStringLiteral(" question"),
                             agents::claudePreToolUseTimeout, true));
        hooks.insert(preToolUseEvent, entries);
    }
    AgentConfigFile::replaceEntries(
        hooks, postToolUseEvent, agents::postToolUseMarker,
        added(entry(questionTool, postToolUseCommand(), agents::claudePostToolUseTimeout, false)));
    AgentConfigFile::replaceEntries(
        hooks, permissionRequestEvent, agents::permissionRequestMarker,
        added(entry(everyTool, permissionRequestCommand(), agents::claudePermissionTimeout, true)));
    settings.insert(QStringLiteral("hooks"), hooks);
    return file.write(settings);
}

bool ApprovalHook::isInstalled()
{
    const QJsonObject hooks =
        AgentConfigFile(settingsPath()).read().value(QStringLiteral("hooks")).toObject();
    return AgentConfigFile::findHook(hooks, preToolUseEvent, agents::preToolUseMarker).has_value();
}

std::optional<int> ApprovalHook::installedTimeout()
{
    const QJsonObject hooks =
        AgentConfigFile(settingsPath()).read().value(QStringLiteral("hooks")).toObject();
    const auto hook = AgentConfigFile::findHook(hooks, preToolUseEvent, agents::preToolUseMarker);
    if (!hook || !hook->value(QStringLiteral("timeout")).isDouble())
        return std::nullopt;
    return hook->value(QStringLiteral("timeout")).toInt();
}

bool ApprovalHook::entryHasMarker(const QJsonValue& entry, const QString& marker)
{
    return AgentConfigFile::entryHasMarker(entry, marker);
}

} // namespace norva
