#pragma once

#include "agents/AgentConfigFile.h"
#include "agents/ApprovalsFolder.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace norva {

// Claude Code's permission hooks: "pretooluse.sh" and "posttooluse.sh" in the approvals folder,
// registered under "PreToolUse" and "PostToolUse" in ".claude/settings.json" beside the person's own
// entries. The paths are read from the environment at each call, so a test's HOME is obeyed.
class ApprovalHook {
public:
    // The tools whose prompts reach the notch; the bars are part of the value.
    static const QString preToolUseMatcher;

    static FileResult install();
    static FileResult uninstall();
    static bool isInstalled();
    // The "timeout" of the installed PreToolUse hook, when there is one.
    static std::optional<int> installedTimeout();
    static bool entryHasMarker(const QJsonValue& entry, const QString& marker);

    static QString settingsPath(); // ~/.claude/settings.json
    static QString preToolUseCommand();
    static QString postToolUseCommand();

private:
    static FileResult edit(bool adding);
};

} // namespace norva
