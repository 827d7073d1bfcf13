#include "agents/ApprovalHook.h"

#include "agents/AgentConstants.h"
#include "agents/HookScripts.h"
#include "app/Paths.h"

#include <QJsonArray>

namespace norva {

const QString ApprovalHook::preToolUseMatcher =
    QStringLiteral("Bash|Edit|Write|MultiEdit|NotebookEdit|WebFetch|WebSearch|AskUserQuestion");

namespace {

const QString preToolUseEvent = QStringLiteral("PreToolUse");
const QString postToolUseEvent = QStringLiteral("PostToolUse");

QJsonObject entry(const QString& matcher, const QString& command, int timeout)
{
    const QJsonObject hook{{QStringLiteral("type"), QStringLiteral("command")},
                           {QStringLiteral("command"), command},
                           {QStringLiteral("timeout"), timeout}};
    return QJsonObject{{QStringLiteral("matcher"), matcher}, {QStringLiteral("hooks"), QJsonArray{hook}}};
}

} // namespace

QString ApprovalHook::settingsPath()
{
    return Paths::home() + QStringLiteral("/.claude/settings.json");
}

QString ApprovalHook::preToolUseCommand()
{
    return HookScripts::command(Paths::approvalsFolder() + QLatin1Char('/') + agents::preToolUseScript);
}

QString ApprovalHook::postToolUseCommand()
{
    return HookScripts::command(Paths::approvalsFolder() + QLatin1Char('/') + agents::postToolUseScript);
}

FileResult ApprovalHook::install()
{
    const ApprovalsFolder folder(Paths::approvalsFolder());
    for (const QString& script : {agents::preToolUseScript, agents::postToolUseScript}) {
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
    AgentConfigFile::replaceEntries(
        hooks, preToolUseEvent, agents::preToolUseMarker,
        added(entry(preToolUseMatcher, preToolUseCommand(), agents::claudePreToolUseTimeout)));
    AgentConfigFile::replaceEntries(hooks, postToolUseEvent, agents::postToolUseMarker,
                                    added(entry(QStringLiteral("AskUserQuestion"), postToolUseCommand(),
                                                agents::claudePostToolUseTimeout)));
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
