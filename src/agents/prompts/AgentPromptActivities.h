#pragma once

#include "activities/ActivityKinds.h"
#include "agents/AgentSettings.h"

#include <QObject>
#include <QString>

#include <functional>

namespace norva {

class AgentPromptsManager;
class LiveActivityCoordinator;
class SettingsStore;
struct PromptCard;

// Publishes each waiting agent prompt to the closed notch as an `agentPrompt` activity (and a short
// `teamNotice` for a call the team denied before it showed), and answers
// the activity's actions ("allow", "deny", "terminal") through the exchange. A click on it opens the
// Agents page; the notch opens by itself only for a question, and only when the person asked for
// that ("agents.openQuestions.v1"): a panel springing open over their work for every command would
// be more than most want.
class AgentPromptActivities : public QObject {
    Q_OBJECT
public:
    static constexpr int priority = ActivityKinds::of(ActivityContent::Kind::agentPrompt).priority;
    static constexpr double teamDenialHold = 4; // seconds the "denied by the team" notice stays
    static const QString pageId;

    AgentPromptActivities(AgentPromptsManager& manager, LiveActivityCoordinator& coordinator,
                          SettingsStore& settings, std::function<void()> openAgentsPage,
                          QObject* parent = nullptr);
    ~AgentPromptActivities() override;

    static QString activityId(const QString& promptId);
    static QString teamDenialId(const QString& promptId);

private:
    void publish(const PromptCard& card);
    // A call the team's never rule denied before it was shown: a short notice instead of a question.
    void publishTeamDenial(const PromptCard& card, const QString& reason);
    bool answer(const QString& action, const QString& activityId);

    AgentPromptsManager& m_manager;
    LiveActivityCoordinator& m_coordinator;
    AgentSettings m_settings;
    std::function<void()> m_openAgentsPage;
    int m_providerToken = 0;
};

} // namespace norva
