#include "agents/prompts/AgentPromptsManager.h"

#include "agents/AgentConstants.h"
#include "agents/prompts/PendingScan.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Background.h"
#include "app/SettingsStore.h"

#include <algorithm>

namespace norva {

AgentPromptsManager::AgentPromptsManager(Clock& clock, SettingsStore& settings, PromptAlerts& alerts,
                                         QString approvalsFolder, QObject* parent)
    : QObject(parent), m_clock(clock), m_settings(settings), m_alerts(alerts), m_folder(approvalsFolder),
      m_exchange(m_folder), m_watch(approvalsFolder)
{
    connect(&m_watch, &ApprovalsFolderWatch::changed, this, &AgentPromptsManager::scanPending);
}

AgentPromptsManager::~AgentPromptsManager() = default;

void AgentPromptsManager::start()
{
    if (m_started)
        return;
    m_started = true;
    m_folder.ensure();
    m_watch.start();
    m_heartbeat = std::make_unique<Heartbeat>(m_folder, m_clock);
    m_heartbeat->start();
    scanPending(); // its end arms the fallback scan
}

void AgentPromptsManager::shutdown()
{
    m_fallbackScan.cancel();
    m_watch.stop();
    if (m_heartbeat)
        m_heartbeat->stop();
    m_folder.remove(agents::heartbeatFile);
    m_started = false;
}

std::optional<PromptCard> AgentPromptsManager::prompt(const QString& id) const
{
    const auto found =
        std::find_if(m_prompts.cbegin(), m_prompts.cend(), [&id](const PromptCard& c) { return c.id == id; });
    return found == m_prompts.cend() ? std::nullopt : std::optional(*found);
}

void AgentPromptsManager::scanPending()
{
    if (m_scanRunning) {
        m_scanAgain = true;
        return;
    }
    m_scanRunning = true;
    const ApprovalsFolder folder = m_folder;
    const QDateTime now = m_clock.now();
    struct Outcome {
        QList<PromptCard> cards;
        bool somethingWaits = false;
    };
    runOffMain<Outcome>(
        this,
        [folder, now] {
            // The folder is made again (0700) if someone removed it; the hooks would make it too.
            folder.ensure();
            Outcome outcome{PendingScan::run(folder, now)};
            const QStringList left = folder.names();
            outcome.somethingWaits = std::any_of(left.cbegin(), left.cend(), [](const QString& name) {
                return name.startsWith(QLatin1String("pending-")) || name.startsWith(QLatin1String("resp-"));
            });
            return outcome;
        },
        [this](Outcome outcome) {
            m_scanRunning = false;
            if (m_started && !m_watch.isWatching())
                m_watch.start();
            apply(std::move(outcome.cards));
            emit scanFinished();
            if (m_scanAgain) {
                m_scanAgain = false;
                scanPending();
            } else if (m_started) {
                scheduleFallbackScan(outcome.somethingWaits);
            }
        });
}

// Each scan moves the fallback on from its own end, so a folder the watch keeps scanning is not
// scanned again by the clock in between.
void AgentPromptsManager::scheduleFallbackScan(bool somethingWaits)
{
    const bool soon = somethingWaits || !m_watch.isWatching();
    m_fallbackScan = m_clock.after(soon ? agents::fallbackScanInterval : agents::restingScanInterval,
                                   [this] { scanPending(); });
}

void AgentPromptsManager::apply(QList<PromptCard> cards)
{
    QSet<QString> seen;
    for (const PromptCard& card : cards)
        seen.insert(card.id);
    // An answer written while this scan ran must not bring its card back.
    m_answered.intersect(seen);
    cards.removeIf([this](const PromptCard& card) { return m_answered.contains(card.id); });
    cards.removeIf([this](const PromptCard& card) { return answeredByTeam(card); });
    std::sort(cards.begin(), cards.end(), [](const PromptCard& a, const PromptCard& b) {
        return a.arrivedAt != b.arrivedAt ? a.arrivedAt < b.arrivedAt : a.id < b.id;
    });
    if (cards == m_prompts)
        return;
    const QList<PromptCard> before = std::exchange(m_prompts, cards);
    for (const PromptCard& old : before) {
        if (!prompt(old.id))
            emit promptLeft(old.id);
    }
    emit promptsChanged();
    for (const PromptCard& card : m_prompts) {
        const bool known = std::any_of(before.cbegin(), before.cend(),
                                       [&card](const PromptCard& b) { return b.id == card.id; });
        if (!known) {
            alert(card);
            emit promptArrived(card);
        }
    }
}

// A prompt a team rule covers is answered before it is ever shown or chimed. Should the answer not
// be written, a denied prompt still never becomes a card that offers Allow: it waits for the next scan.
bool AgentPromptsManager::answeredByTeam(const PromptCard& card)
{
    if (!m_teamAnswer || card.isQuestion || prompt(card.id))
        return false;
    const auto verdict = m_teamAnswer(card);
    if (!verdict)
        return false;
    const auto decision =
        verdict->allowed ? ApprovalExchange::Decision::allow : ApprovalExchange::Decision::deny;
    if (!m_exchange.writeDecision(card.id, decision, verdict->reason))
        return !verdict->allowed;
    m_answered.insert(card.id);
    if (!verdict->allowed)
        emit promptDeniedByTeam(card, verdict->reason);
    return true;
}

void AgentPromptsManager::alert(const PromptCard& card)
{
    if (m_settings.chime())
        m_alerts.chime();
    if (!m_settings.notification())
        return;
    const QString agent = CodingAgents::displayName(card.agent);
    if (card.isQuestion)
        m_alerts.notify(agent + QStringLiteral(" has a question"), card.questions.value(0));
    else
        m_alerts.notify(agent + QStringLiteral(" asks to use ") + card.tool, card.subject);
}

bool AgentPromptsManager::takeAway(const QString& id)
{
    m_answered.insert(id);
    const auto removed = m_prompts.removeIf([&id](const PromptCard& card) { return card.id == id; });
    if (removed == 0)
        return false;
    emit promptLeft(id);
    emit promptsChanged();
    return true;
}

bool AgentPromptsManager::writeDecision(const QString& id, ApprovalExchange::Decision decision)
{
    const auto card = prompt(id);
    if (!card || card->isQuestion || !m_exchange.writeDecision(id, decision))
        return false;
    return takeAway(id);
}

bool AgentPromptsManager::releaseToTerminal(const QString& id)
{
    const auto card = prompt(id);
    if (!card || card->isQuestion || !m_exchange.releaseToTerminal(id))
        return false;
    return takeAway(id);
}

} // namespace norva
