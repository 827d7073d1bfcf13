#include "agents/prompts/PendingScan.h"

#include "agents/AgentConstants.h"
#include "agents/prompts/ApprovalExchange.h"
#include "app/Log.h"

#include <QFileInfo>

#include <cerrno>
#include <csignal>

namespace norva {
namespace {

const QString pendingPrefix = QStringLiteral("pending-");
const QString pendingSuffix = QStringLiteral(".json");

double ageOf(const ApprovalsFolder& folder, const QString& name, const QDateTime& now)
{
    const auto modified = folder.modified(name);
    return modified ? modified->msecsTo(now) / 1000.0 : -1;
}

void removePrompt(const ApprovalsFolder& folder, const QString& id)
{
    folder.remove(pendingPrefix + id + pendingSuffix);
    folder.remove(pendingPrefix + id + QStringLiteral(".pid"));
    folder.remove(QStringLiteral("alive-") + id);
}

// A waiting hook writes its own process id and its parent's into its alive file. When either is
// gone, the agent gave up on the prompt (Esc in Claude Code kills the shell it started the hook with).
bool hookWasKilled(const ApprovalsFolder& folder, const QString& id)
{
    const QByteArray ids = folder.read(QStringLiteral("alive-") + id).value_or(QByteArray());
    for (const QByteArray& word : ids.simplified().split(' ')) {
        bool numeric = false;
        const qint64 pid = word.toLongLong(&numeric);
        if (numeric && pid > 1 && ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH)
            return true;
    }
    return false;
}

// A waiting hook touches its alive file at least every 25 s. A permission prompt whose alive file is
// older than 120 s, or was never made, belongs to a hook that is gone. A question has no waiting hook:
// it stays until "posttooluse.sh" removes it or the day is over.
bool hookIsGone(const ApprovalsFolder& folder, const QString& id, bool isQuestion, double pendingAge,
                const QDateTime& now)
{
    if (pendingAge <= agents::orphanPendingSeconds)
        return false;
    const double aliveAge = ageOf(folder, QStringLiteral("alive-") + id, now);
    if (aliveAge < 0)
        return !isQuestion && pendingAge > agents::orphanAliveSeconds;
    return aliveAge > agents::orphanAliveSeconds;
}

// Why Norva will not make a card of a pending file, or empty when it will.
QString refusal(const ApprovalsFolder& folder, const QString& name, const std::optional<QByteArray>& payload,
                bool readsAsCard)
{
    if (folder.isLink(name))
        return QStringLiteral("its prompt file is a link");
    if (QFileInfo(folder.filePath(name)).size() > ApprovalsFolder::readLimit)
        return QStringLiteral("its prompt file is over 4 MB");
    if (!payload)
        return QStringLiteral("its prompt file could not be read");
    if (!readsAsCard)
        return QStringLiteral("its prompt file is not JSON");
    return {};
}

// A prompt Norva will not show is handed back at once, so the agent asks in its terminal instead of
// waiting for a card that never comes.
void handBack(const ApprovalsFolder& folder, const QString& id, const QString& why)
{
    if (ApprovalExchange(folder).releaseToTerminal(id)) {
        logLine(QStringLiteral("Norva agents: handed ") + id + QStringLiteral(" back to the terminal (") +
                why + QLatin1Char(')'));
    }
    removePrompt(folder, id);
}

} // namespace

QList<PromptCard> PendingScan::run(const ApprovalsFolder& folder, const QDateTime& now)
{
    QList<PromptCard> cards;
    for (const QString& name : folder.names()) {
        // A link is never Norva's nor a hook's: it goes like a stale file.
        if (name.startsWith(QStringLiteral("resp-"))) {
            if (folder.isLink(name) || ageOf(folder, name, now) > agents::unclaimedResponseSeconds)
                folder.remove(name);
            continue;
        }
        if (name.startsWith(QStringLiteral("term-"))) {
            if (folder.isLink(name) || ageOf(folder, name, now) > agents::staleIdentitySeconds)
                folder.remove(name);
            continue;
        }
        if (!name.startsWith(pendingPrefix) || !name.endsWith(pendingSuffix))
            continue;
        const QString id =
            name.mid(pendingPrefix.size(), name.size() - pendingPrefix.size() - pendingSuffix.size());
        if (id.isEmpty() || id.contains(QLatin1Char('/')))
            continue;
        const auto payload = folder.read(name);
        const auto modified = folder.modified(name);
        const auto card =
            payload && modified ? PromptCard::fromPayload(id, *payload, *modified) : std::nullopt;
        if (const QString why = refusal(folder, name, payload, card.has_value()); !why.isEmpty()) {
            handBack(folder, id, why);
            continue;
        }
        const double age = modified->msecsTo(now) / 1000.0;
        if (age > agents::pendingLimitSeconds) {
            removePrompt(folder, id);
            continue;
        }
        // The agent gave up on the prompt: the card goes at once, and a hook still waiting takes the
        // hand-back and ends.
        if (hookWasKilled(folder, id)) {
            ApprovalExchange(folder).releaseToTerminal(id);
            removePrompt(folder, id);
            continue;
        }
        if (hookIsGone(folder, id, card->isQuestion, age, now)) {
            removePrompt(folder, id);
            continue;
        }
        // Answered already: the hook takes its response within a tenth of a second.
        if (folder.exists(QStringLiteral("resp-") + id))
            continue;
        cards.append(*card);
    }
    return cards;
}

} // namespace norva
