#pragma once

#include "agents/AgentSettings.h"
#include "agents/hooks/AgentPromptSwitch.h"
#include "agents/hooks/HookPresence.h"
#include "agents/jump/TerminalJumper.h"
#include "agents/jump/WindowActivator.h"
#include "agents/prompts/AgentPromptActivities.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/DesktopPromptAlerts.h"
#include "agents/team/TeamPolicy.h"
#include "agents/usage/UsageMonitor.h"
#include "shell/FeatureModule.h"

#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace norva {

class Shell;

// The coding agents: the prompt exchange and its cards, the hooks switch, the team's rules,
// Claude Code's usage windows and the terminal jump-back. In the demo the sample prompts sit in a
// folder of their own and the agents' configuration is never touched.
class AgentsModule : public FeatureModule {
    Q_OBJECT
public:
    explicit AgentsModule(Shell& shell);
    ~AgentsModule() override;

    void start() override;
    void stop() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;

private:
    void startTeam();
    void applyUsageBridge();

    Shell& m_shell;
    std::unique_ptr<QTemporaryDir> m_demoFolder; // the demo's own approvals folder
    QString m_approvalsFolder;                   // the one every part shares: the demo's, or the real one
    std::unique_ptr<AgentSettings> m_settings;   // what the agents' pages switch
    std::unique_ptr<DesktopPromptAlerts> m_promptAlerts;
    std::unique_ptr<AgentPromptsManager> m_prompts;
    std::unique_ptr<AgentsPageModel> m_page;
    std::unique_ptr<HookPresence> m_hookPresence;
    // Follows "answerPromptsOnNotch" and the team's never rules.
    std::unique_ptr<AgentPromptSwitch> m_promptSwitch;
    std::unique_ptr<TeamPolicy> m_team;
    std::unique_ptr<UsageMonitor> m_usage;
    std::unique_ptr<WindowActivator> m_windowActivator;
    std::unique_ptr<TerminalJumper> m_terminalJumper;
    std::unique_ptr<AgentPromptActivities> m_activities;
    std::optional<bool> m_usageBridgeOn;
};

} // namespace norva
