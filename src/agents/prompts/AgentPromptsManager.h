#pragma once

#include "agents/AgentSettings.h"
#include "agents/ApprovalsFolder.h"
#include "agents/ApprovalsFolderWatch.h"
#include "agents/prompts/ApprovalExchange.h"
#include "agents/prompts/Heartbeat.h"
#include "agents/prompts/PromptCard.h"
#include "agents/team/TeamVerdict.h"
#include "app/Clock.h"

#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <memory>
#include <optional>

namespace norva {

class PromptAlerts;
class SettingsStore;

// Norva's side of the approval exchange: keeps the heartbeat beating, scans the approvals folder
// whenever it changes (and as a fallback every few seconds while something waits there, once a
// minute while nothing does), turns each waiting prompt into a card,
// and writes the person's answers for the hooks. Lives on the main thread; scans run off it.
class AgentPromptsManager : public QObject {
    Q_OBJECT
public:
    AgentPromptsManager(Clock& clock, SettingsStore& settings, PromptAlerts& alerts, QString approvalsFolder,
                        QObject* parent = nullptr);
    ~AgentPromptsManager() override;

    void start();
    // Norva quits: the heartbeat file goes, so every waiting hook hands its prompt back at once
    // instead of after 30 s.
    void shutdown();

    const QList<PromptCard>& prompts() const { return m_prompts; }
    std::optional<PromptCard> prompt(const QString& id) const;

    // Asks for a scan of the folder; scans asked for while one runs are folded into one more.
    void scanPending();
    // Writes the agent's decision for a permission prompt and takes its card away.
    bool writeDecision(const QString& id, ApprovalExchange::Decision decision);
    // Hands a permission prompt back to the agent's own terminal prompt and takes its card away.
    bool releaseToTerminal(const QString& id);

    // The team's answer to a new permission prompt; none when the person decides.
    using TeamAnswer = std::function<std::optional<TeamVerdict>(const PromptCard&)>;
    void setTeamAnswer(TeamAnswer teamAnswer) { m_teamAnswer = std::move(teamAnswer); }

    ApprovalsFolderWatch& folderWatch() { return m_watch; }
    const ApprovalsFolder& folder() const { return m_folder; }

signals:
    void promptsChanged();
    void promptArrived(const norva::PromptCard& card);
    void promptLeft(const QString& id);
    // A prompt the team's never rule denied before it was shown; `reason` names the rule.
    void promptDeniedByTeam(const norva::PromptCard& card, const QString& reason);
    // A scan of the folder finished and its cards were applied.
    void scanFinished();

private:
    void apply(QList<PromptCard> cards);
    void alert(const PromptCard& card);
    bool answeredByTeam(const PromptCard& card);
    bool takeAway(const QString& id);
    void scheduleFallbackScan(bool somethingWaits);

    Clock& m_clock;
    AgentSettings m_settings;
    PromptAlerts& m_alerts;
    ApprovalsFolder m_folder;
    ApprovalExchange m_exchange;
    ApprovalsFolderWatch m_watch;
    std::unique_ptr<Heartbeat> m_heartbeat;
    ScheduledWork m_fallbackScan;
    QList<PromptCard> m_prompts;
    // Prompts answered since the scan that may still see their pending file.
    QSet<QString> m_answered;
    TeamAnswer m_teamAnswer;
    bool m_scanRunning = false;
    bool m_scanAgain = false;
    bool m_started = false;
};

} // namespace norva
