#pragma once

#include "agents/ApprovalsFolder.h"
#include "agents/prompts/PromptCard.h"

#include <QDateTime>
#include <QList>

namespace norva {

// One pass over the approvals folder: reads every "pending-*.json" into a card and sweeps what no
// one will take up any more (responses older than 10 s, terminal records untouched for half an hour,
// prompts older than a day, and prompts whose waiting hook was killed). A prompt file it will not read
// (a link, over 4 MB, not JSON) is handed back to the agent at once. Safe to run off the main thread.
class PendingScan {
public:
    static QList<PromptCard> run(const ApprovalsFolder& folder, const QDateTime& now);
};

} // namespace norva
