#pragma once

#include "agents/ApprovalsFolder.h"
#include "agents/hooks/AgentConfigFile.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace norva {

// Claude Code's hooks: "permissionrequest.sh" under "PermissionRequest", which Claude Code runs only
// when it is about to show its permission dialog and which brings that prompt to the notch;
// "pretooluse.sh" under "PreToolUse" for the team's never-allow check in every mode and for
// questions; "posttooluse.sh" under "PostToolUse" to take an answered question away. They sit in
// ".claude/settings.json" beside the person's own entries; every install replaces Norva's own, so an
// older installation is brought up to date at the next start. The paths are read from the
// environment at each call, so a test's HOME is obeyed.
class ApprovalHook {
public:
    // The tools the team's never-allow check looks at; the bars are part of the value.
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
    static QString permissionRequestCommand();

private:
    static FileResult edit(bool adding);
};

} // namespace norva
