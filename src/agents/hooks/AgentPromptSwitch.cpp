#include "agents/hooks/AgentPromptSwitch.h"

#include "agents/AgentConstants.h"
#include "agents/ApprovalsFolder.h"
#include "agents/hooks/AgentAlertsSetup.h"
#include "agents/hooks/AgentHooksNotice.h"
#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/CodexHook.h"
#include "agents/hooks/CopilotCLIHook.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"

namespace norva {

AgentPromptSwitch::AgentPromptSwitch(SettingsStore& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{}

QString AgentPromptSwitch::outcomeText(Outcome outcome)
{
    switch (outcome) {
    case Outcome::on:
        return QStringLiteral("Norva: answering agent prompts on the notch is on (hooks installed)");
    case Outcome::off:
        return QStringLiteral("Norva: answering agent prompts on the notch is off");
    case Outcome::failed:
        return QStringLiteral("Norva: answering agent prompts on the notch could not be turned on: "
                              "~/.claude/settings.json was not writable");
    }
    return {};
}

bool AgentPromptSwitch::watched(bool codex) const
{
    return m_settings.watches(codex ? CodingAgent::codex : CodingAgent::copilot);
}

AgentPromptSwitch::Applied AgentPromptSwitch::wanted() const
{
    return {m_settings.answerPromptsOnNotch(), watched(true), watched(false), m_teamNeedsHooks};
}

bool AgentPromptSwitch::installAgents()
{
    // Claude Code is always offered; its settings file is made when missing.
    if (m_settings.watches(CodingAgent::claude)) {
        if (!ApprovalHook::install())
            return false;
        AgentAlertsSetup::install();
    }
    if (watched(true) && CodexHook::codexInstalled())
        CodexHook::install();
    else if (CodexHook::isInstalled())
        CodexHook::uninstall();
    if (watched(false) && CopilotCLIHook::copilotInstalled())
        CopilotCLIHook::install();
    else if (CopilotCLIHook::isInstalled())
        CopilotCLIHook::uninstall();
    return true;
}

void AgentPromptSwitch::removeAgents()
{
    if (ApprovalHook::isInstalled())
        ApprovalHook::uninstall();
    if (CodexHook::isInstalled())
        CodexHook::uninstall();
    CopilotCLIHook::uninstall();
}

AgentPromptSwitch::Outcome AgentPromptSwitch::set(bool on)
{
    const ApprovalsFolder folder(Paths::approvalsFolder());
    folder.ensure();
    Outcome outcome = Outcome::off;
    if (on) {
        folder.remove(agents::notchOffFile);
        if (installAgents()) {
            outcome = Outcome::on;
        } else {
            outcome = Outcome::failed;
        }
    } else if (m_teamNeedsHooks) {
        // The hooks stay only for the team's never-allow check; "notch-off" tells them to do nothing else.
        folder.write(agents::notchOffFile, QByteArray());
        if (!installAgents())
            logLine(
                QStringLiteral("Norva team: couldn't install the agent hooks (~/.claude/settings.json not "
                               "writable?); team never-allow rules can't apply outside the notch's prompts"));
    } else {
        removeAgents();
        folder.remove(agents::notchOffFile);
    }
    logLine(outcomeText(outcome));
    m_applied = wanted();
    AgentHooksNotice::post();
    emit applied(outcome);
    return outcome;
}

void AgentPromptSwitch::setTeamNeedsHooks(bool needed)
{
    if (m_teamNeedsHooks == needed)
        return;
    m_teamNeedsHooks = needed;
    if (!m_settings.answerPromptsOnNotch())
        set(false);
}

void AgentPromptSwitch::follow()
{
    connect(&m_settings, &AgentSettings::changed, this, &AgentPromptSwitch::onSettingsChanged,
            Qt::UniqueConnection);
    // A preference turned off while Norva was not running still takes the hooks away at start.
    if (m_settings.answerPromptsOnNotch() || ApprovalHook::isInstalled() || CodexHook::isInstalled() ||
        CopilotCLIHook::isInstalled())
        set(m_settings.answerPromptsOnNotch());
    else
        m_applied = wanted();
}

void AgentPromptSwitch::onSettingsChanged()
{
    if (m_applied && *m_applied == wanted())
        return;
    set(m_settings.answerPromptsOnNotch());
}

} // namespace norva
