#pragma once

#include "agents/ApprovalsFolder.h"

#include <QString>

namespace norva {

// Claude Code's event log: a "Notification" hook in ".claude/settings.json" whose inline command
// appends each notification to "claude-events.jsonl" in Norva's data folder, as the Unix time, one
// blank and the payload, for the session monitor to read.
class AgentAlertsSetup {
public:
    static FileResult install();
    static bool isInstalled();
    static QString eventsFile();
    // The inline shell line registered as the hook's command.
    static QString command();
};

} // namespace norva
