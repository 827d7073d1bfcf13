#include "agents/hooks/HookPresence.h"

#include "agents/AgentConstants.h"
#include "agents/hooks/AgentHooksNotice.h"
#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/CodexHook.h"
#include "agents/hooks/CopilotCLIHook.h"
#include "app/Paths.h"

namespace norva {
namespace {

// A path as the person reads it: the home folder written as "~".
QString homeRelative(const QString& path)
{
    const QString home = Paths::home();
    return path.startsWith(home + QLatin1Char('/')) ? QStringLiteral("~") + path.mid(home.size()) : path;
}

} // namespace

HookPresence::HookPresence(QObject* parent) : QObject(parent)
{
    refresh();
}

void HookPresence::live()
{
    connect(&AgentHooksNotice::instance(), &AgentHooksNotice::changed, this, &HookPresence::refresh,
            Qt::UniqueConnection);
}

void HookPresence::refresh()
{
    const bool now[3] = {ApprovalHook::isInstalled(), CodexHook::isInstalled(),
                         CopilotCLIHook::isInstalled()};
    if (std::equal(std::begin(now), std::end(now), std::begin(m_on)))
        return;
    std::copy(std::begin(now), std::end(now), std::begin(m_on));
    emit changed();
}

bool HookPresence::isOn(CodingAgent agent) const
{
    return m_on[static_cast<int>(agent)];
}

QStringList HookPresence::files(CodingAgent agent) const
{
    const QString approvals = Paths::approvalsFolder() + QLatin1Char('/');
    switch (agent) {
    case CodingAgent::claude:
        return {homeRelative(ApprovalHook::settingsPath()),
                homeRelative(approvals + agents::preToolUseScript),
                homeRelative(approvals + agents::postToolUseScript),
                homeRelative(approvals + agents::permissionRequestScript)};
    case CodingAgent::codex:
        return {homeRelative(CodexHook::hooksPath()), homeRelative(approvals + agents::codexScript)};
    case CodingAgent::copilot:
        return {homeRelative(CopilotCLIHook::documentPath()),
                homeRelative(approvals + agents::copilotScript)};
    }
    return {};
}

QString HookPresence::statusText(CodingAgent agent) const
{
    if (!isOn(agent))
        return {};
    return QStringLiteral("Installed in ") + files(agent).constFirst();
}

} // namespace norva
