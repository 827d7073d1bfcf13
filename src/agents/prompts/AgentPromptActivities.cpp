#include "agents/prompts/AgentPromptActivities.h"

#include "activities/LiveActivityCoordinator.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "app/SettingsStore.h"

namespace norva {

const QString AgentPromptActivities::pageId = QStringLiteral("agents");

namespace {
const QString idPrefix = QStringLiteral("agent-prompt-");
}

AgentPromptActivities::AgentPromptActivities(AgentPromptsManager& manager,
                                             LiveActivityCoordinator& coordinator, SettingsStore& settings,
                                             std::function<void()> openAgentsPage, QObject* parent)
    : QObject(parent), m_manager(manager), m_coordinator(coordinator), m_settings(settings),
      m_openAgentsPage(std::move(openAgentsPage))
{
    connect(&m_manager, &AgentPromptsManager::promptArrived, this, &AgentPromptActivities::publish);
    connect(&m_manager, &AgentPromptsManager::promptLeft, this,
            [this](const QString& id) { m_coordinator.remove(activityId(id)); });
    connect(&m_manager, &AgentPromptsManager::promptDeniedByTeam, this,
            &AgentPromptActivities::publishTeamDenial);
    m_providerToken = m_coordinator.addProvider(
        {ActivityContent::Kind::agentPrompt},
        [this](const QString& action, const LiveActivity& activity) { return answer(action, activity.id); });
    for (const PromptCard& card : m_manager.prompts())
        publish(card);
}

AgentPromptActivities::~AgentPromptActivities()
{
    m_coordinator.removeProvider(m_providerToken);
}

QString AgentPromptActivities::activityId(const QString& promptId)
{
    return idPrefix + promptId;
}

void AgentPromptActivities::publish(const PromptCard& card)
{
    LiveActivity activity;
    activity.id = activityId(card.id);
    activity.priority = priority;
    activity.content = ActivityContent::agentPrompt();
    activity.text.title = CodingAgents::displayName(card.agent);
    activity.text.value = card.isQuestion ? QStringLiteral("asks") : card.tool;
    activity.text.detail = card.isQuestion ? card.questions.value(0) : card.subject;
    if (card.isQuestion && m_settings.openQuestions())
        activity.urgentTab = pageId;
    activity.onTap = m_openAgentsPage;
    activity.hoverOpens = true;
    m_coordinator.upsert(std::move(activity));
}

QString AgentPromptActivities::teamDenialId(const QString& promptId)
{
    return QStringLiteral("agent-team-denied-") + promptId;
}

void AgentPromptActivities::publishTeamDenial(const PromptCard& card, const QString& reason)
{
    LiveActivity activity;
    activity.id = teamDenialId(card.id);
    activity.priority = priority;
    activity.content = ActivityContent::teamNotice();
    activity.text.title = QStringLiteral("Denied by the team");
    activity.text.value = card.tool;
    activity.text.detail = reason;
    activity.hold = teamDenialHold;
    m_coordinator.upsert(std::move(activity));
}

bool AgentPromptActivities::answer(const QString& action, const QString& activityId)
{
    if (!activityId.startsWith(idPrefix))
        return false;
    const QString id = activityId.mid(idPrefix.size());
    if (action == QLatin1String("allow"))
        return m_manager.writeDecision(id, ApprovalExchange::Decision::allow);
    if (action == QLatin1String("deny"))
        return m_manager.writeDecision(id, ApprovalExchange::Decision::deny);
    if (action == QLatin1String("terminal"))
        return m_manager.releaseToTerminal(id);
    return false;
}

} // namespace norva
