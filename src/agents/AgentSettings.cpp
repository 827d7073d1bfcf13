#include "agents/AgentSettings.h"

#include "app/SettingsStore.h"

namespace norva {

const QString AgentSettings::kAnswerOnNotchKey = QStringLiteral("answerPromptsOnNotch");
const QString AgentSettings::kWatchClaudeKey = QStringLiteral("agents.watch.claude.v1");
const QString AgentSettings::kWatchCodexKey = QStringLiteral("agents.watch.codex.v1");
const QString AgentSettings::kWatchCopilotKey = QStringLiteral("agents.watch.copilot.v1");
const QString AgentSettings::kChimeKey = QStringLiteral("approvalChime");
const QString AgentSettings::kNotificationKey = QStringLiteral("approvalNotification");
const QString AgentSettings::kOpenQuestionsKey = QStringLiteral("agents.openQuestions.v1");
const QString AgentSettings::kShowUsageKey = QStringLiteral("agents.showClaudeUsage.v1");

const QStringList& AgentSettings::keys()
{
    static const QStringList all{kAnswerOnNotchKey, kWatchClaudeKey,  kWatchCodexKey,    kWatchCopilotKey,
                                 kChimeKey,         kNotificationKey, kOpenQuestionsKey, kShowUsageKey};
    return all;
}

AgentSettings::AgentSettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    m_store.follow(keys(), this, [this](const QString&) { emit changed(); });
}

bool AgentSettings::answerPromptsOnNotch() const
{
    return m_store.flag(kAnswerOnNotchKey, false);
}

void AgentSettings::setAnswerPromptsOnNotch(bool on)
{
    m_store.write(on, kAnswerOnNotchKey);
}

namespace {

const QString& watchKey(CodingAgent agent)
{
    switch (agent) {
    case CodingAgent::codex:
        return AgentSettings::kWatchCodexKey;
    case CodingAgent::copilot:
        return AgentSettings::kWatchCopilotKey;
    case CodingAgent::claude:
        break;
    }
    return AgentSettings::kWatchClaudeKey;
}

} // namespace

bool AgentSettings::watches(CodingAgent agent) const
{
    return m_store.flag(watchKey(agent), true);
}

void AgentSettings::setWatches(CodingAgent agent, bool on)
{
    m_store.write(on, watchKey(agent));
}

bool AgentSettings::chime() const
{
    return m_store.flag(kChimeKey, true);
}

bool AgentSettings::notification() const
{
    return m_store.flag(kNotificationKey, true);
}

bool AgentSettings::openQuestions() const
{
    return m_store.flag(kOpenQuestionsKey, false);
}

bool AgentSettings::showClaudeUsage() const
{
    return m_store.flag(kShowUsageKey, false);
}

void AgentSettings::setShowClaudeUsage(bool on)
{
    m_store.write(on, kShowUsageKey);
}

} // namespace norva
