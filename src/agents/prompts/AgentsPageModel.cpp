#include "agents/prompts/AgentsPageModel.h"

#include "agents/prompts/AgentPromptsManager.h"

#include <QDir>
#include <QVariantMap>

namespace norva {

AgentsPageModel::AgentsPageModel(AgentPromptsManager& manager, QObject* parent)
    : QObject(parent), m_manager(manager), m_cards(QStringLiteral("id"), this)
{
    connect(&m_manager, &AgentPromptsManager::promptsChanged, this, &AgentsPageModel::refreshCards);
    refreshCards();
}

void AgentsPageModel::refreshCards()
{
    QVariantList cards;
    for (const PromptCard& card : m_manager.prompts()) {
        cards << QVariantMap{
            {QStringLiteral("id"), card.id},
            {QStringLiteral("agent"), CodingAgents::displayName(card.agent)},
            {QStringLiteral("isQuestion"), card.isQuestion},
            {QStringLiteral("tool"), card.tool},
            {QStringLiteral("subject"), card.subject},
            {QStringLiteral("writes"), card.writes},
            {QStringLiteral("folder"), QDir(card.cwd).dirName()},
            {QStringLiteral("questions"), card.questions},
            {QStringLiteral("options"), card.options},
        };
    }
    if (cards == m_cards.rows())
        return;
    m_cards.setRows(cards);
    emit cardsChanged();
}

bool AgentsPageModel::allow(const QString& id)
{
    return m_manager.writeDecision(id, ApprovalExchange::Decision::allow);
}

bool AgentsPageModel::deny(const QString& id)
{
    return m_manager.writeDecision(id, ApprovalExchange::Decision::deny);
}

bool AgentsPageModel::answerInTerminal(const QString& id)
{
    const auto card = m_manager.prompt(id); // read before the release takes the prompt away
    if (!m_manager.releaseToTerminal(id))
        return false;
    if (card && !card->transcriptPath.isEmpty())
        emit terminalRequested(card->transcriptPath);
    return true;
}

void AgentsPageModel::showTerminal(const QString& id)
{
    if (const auto card = m_manager.prompt(id); card && !card->transcriptPath.isEmpty())
        emit terminalRequested(card->transcriptPath);
}

} // namespace norva
