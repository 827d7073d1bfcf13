#include "agents/PendingScan.h"

#include "agents/AgentConstants.h"

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

} // namespace

QList<PromptCard> PendingScan::run(const ApprovalsFolder& folder, const QDateTime& now)
{
    QList<PromptCard> cards;
    for (const QString& name : folder.files()) {
        if (name.startsWith(QStringLiteral("resp-"))) {
            if (ageOf(folder, name, now) > agents::unclaimedResponseSeconds)
                folder.remove(name);
            continue;
        }
        if (name.startsWith(QStringLiteral("term-"))) {
            if (ageOf(folder, name, now) > agents::staleIdentitySeconds)
                folder.remove(name);
            continue;
        }
        if (!name.startsWith(pendingPrefix) || !name.endsWith(pendingSuffix))
            continue;
        const QString id =
            name.mid(pendingPrefix.size(), name.size() - pendingPrefix.size() - pendingSuffix.size());
        const auto modified = folder.modified(name);
        const auto payload = folder.read(name);
        if (id.isEmpty() || !modified || !payload)
            continue;
        const double age = modified->msecsTo(now) / 1000.0;
        if (age > agents::pendingLimitSeconds) {
            removePrompt(folder, id);
            continue;
        }
        const auto card = PromptCard::fromPayload(id, *payload, *modified);
        if (hookIsGone(folder, id, card && card->isQuestion, age, now)) {
            removePrompt(folder, id);
            continue;
        }
        // Answered already: the hook takes its response within a tenth of a second.
        if (!card || folder.exists(QStringLiteral("resp-") + id))
            continue;
        cards.append(*card);
    }
    return cards;
}

} // namespace norva
