#pragma once

#include <QObject>
#include <QString>

namespace norva {

class AgentPromptsManager;
class LiveActivityCoordinator;
struct PromptCard;

// Publishes each waiting agent prompt to the closed notch as an `agentPrompt` activity, which wants
// the Agents page opened, and answers the activity's actions ("allow", "deny", "terminal") through
// the exchange.
class AgentPromptActivities : public QObject {
    Q_OBJECT
public:
    static constexpr int priority = 80; // a waiting agent outranks music, timers and downloads
    static const QString pageId;

    AgentPromptActivities(AgentPromptsManager& manager, LiveActivityCoordinator& coordinator,
                          QObject* parent = nullptr);
    ~AgentPromptActivities() override;

    static QString activityId(const QString& promptId);

private:
    void publish(const PromptCard& card);
    bool answer(const QString& action, const QString& activityId);

    AgentPromptsManager& m_manager;
    LiveActivityCoordinator& m_coordinator;
    int m_providerToken = 0;
};

} // namespace norva
