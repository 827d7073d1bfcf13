#include "agents/AgentsModule.h"

#include "agents/CodingAgent.h"
#include "agents/jump/JumpPlatform.h"
#include "agents/prompts/AgentsDemo.h"
#include "agents/usage/UsageBridge.h"
#include "app/Paths.h"
#include "shell/Shell.h"

namespace norva {

AgentsModule::AgentsModule(Shell& shell) : m_shell(shell)
{
    // The demo's sample prompts live in a folder of their own, so no real hook talks to the demo.
    if (m_shell.demo().on)
        m_demoFolder = std::make_unique<QTemporaryDir>();
    m_approvalsFolder = m_demoFolder ? m_demoFolder->path() : Paths::approvalsFolder();
    m_settings = std::make_unique<AgentSettings>(shell.settings());
    m_promptAlerts = std::make_unique<DesktopPromptAlerts>();
    m_prompts = std::make_unique<AgentPromptsManager>(shell.clock(), shell.settings(), *m_promptAlerts,
                                                      m_approvalsFolder);
    m_page = std::make_unique<AgentsPageModel>(*m_prompts);
    m_hookPresence = std::make_unique<HookPresence>();
    m_hookPresence->live();
    m_promptSwitch = std::make_unique<AgentPromptSwitch>(shell.settings());
    m_team = std::make_unique<TeamPolicy>(shell.settings(), shell.clock(), m_approvalsFolder,
                                          TeamPolicy::defaultUserRulesFile(),
                                          TeamPolicy::defaultManagedRulesFile());
    m_usage = std::make_unique<UsageMonitor>(shell.clock(), m_approvalsFolder);
    m_windowActivator = Platform::makeWindowActivator();
    m_terminalJumper = std::make_unique<TerminalJumper>(*m_windowActivator);
    m_terminalJumper->setApprovalsFolder(m_approvalsFolder);
    connect(m_page.get(), &AgentsPageModel::terminalRequested, m_terminalJumper.get(),
            &TerminalJumper::jumpToSession);
}

AgentsModule::~AgentsModule() = default;

void AgentsModule::start()
{
    if (m_shell.demoShows(DemoScene::Sample::agentPrompts))
        AgentsDemo::placeSamplePrompts(m_approvalsFolder, m_shell.clock().now());
    if (!m_shell.demo().on)
        m_promptSwitch->follow(); // the demo never edits the agents' configuration
    m_prompts->start();
    m_activities =
        std::make_unique<AgentPromptActivities>(*m_prompts, m_shell.activities(), m_shell.settings(),
                                                [this] { m_shell.openPage(AgentPromptActivities::pageId); });
    startTeam();
}

// A clean quit takes the heartbeat away, so waiting hooks hand back at once rather than in 30 s.
void AgentsModule::stop()
{
    m_prompts->shutdown();
}

// The team's never rules keep the agent hooks installed (AgentPromptSwitch::setTeamNeedsHooks
// follows hooksNeededChanged), and its rules answer notch prompts before they show
// (AgentPromptsManager::setTeamAnswer with answerFor).
void AgentsModule::startTeam()
{
    m_team->start();
    if (!m_shell.demo().on) { // the demo never edits the agents' configuration
        connect(m_team.get(), &TeamPolicy::hooksNeededChanged, m_promptSwitch.get(),
                &AgentPromptSwitch::setTeamNeedsHooks);
        m_promptSwitch->setTeamNeedsHooks(m_team->hasNeverRules());
    }
    m_prompts->setTeamAnswer([team = m_team.get()](const PromptCard& card) {
        return team->answerFor(CodingAgents::word(card.agent), card.tool, card.input, card.isQuestion);
    });
    m_usage->start();
    applyUsageBridge();
    connect(m_settings.get(), &AgentSettings::changed, this, &AgentsModule::applyUsageBridge);
}

// The usage bridge sits in Claude Code's status line only while the person wants the usage shown.
void AgentsModule::applyUsageBridge()
{
    if (m_shell.demo().on)
        return; // the demo never edits the agents' configuration
    const bool wanted = m_settings->showClaudeUsage();
    if (m_usageBridgeOn == wanted)
        return;
    m_usageBridgeOn = wanted;
    const UsageBridge bridge;
    if (wanted && !bridge.isInstalled())
        bridge.install();
    else if (!wanted && bridge.isInstalled())
        bridge.uninstall();
}

QList<FeaturePage> AgentsModule::pages() const
{
    return {{AgentPromptActivities::pageId, QStringLiteral("Agents"), QStringLiteral("AgentsPage.qml"),
             QStringLiteral("Your coding agents' sessions and prompts will be here."), 20},
            {QStringLiteral("team"), QStringLiteral("Team"), QStringLiteral("TeamRulesSection.qml"),
             QStringLiteral("Your team's rules for coding agents will be here."), 80}};
}

QList<QObject*> AgentsModule::qmlObjects() const
{
    return {m_page.get(), m_settings.get(), m_team.get(), m_usage.get()};
}

} // namespace norva
