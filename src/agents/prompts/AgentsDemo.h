#pragma once

#include <QDateTime>
#include <QString>

namespace norva {

// Sample prompts for Norva's demo mode and screenshots: a Claude Code command, a Codex edit and a
// Claude Code question, placed as a hook would place them. Their alive files are never touched
// again, so the sweeper removes them about two minutes after the demo ends.
class AgentsDemo {
public:
    static void placeSamplePrompts(const QString& approvalsFolder, const QDateTime& now);
};

} // namespace norva
