#pragma once

#include "agents/ApprovalsFolder.h"

#include <QJsonValue>
#include <QString>

namespace norva {

// Codex's hooks: "codex-hook.sh" registered for "SessionStart", "PreToolUse", "PermissionRequest" and
// "Stop" in ".codex/hooks.json", beside the person's own entries (with a one-time backup).
class CodexHook {
public:
    static FileResult install();
    static FileResult uninstall();
    static bool isInstalled();
    static bool entryHasMarker(const QJsonValue& entry, const QString& marker);
    // An executable "codex" at "/opt/homebrew/bin/codex", "/usr/local/bin/codex" or on PATH.
    static bool codexInstalled();

    static QString hooksPath(); // ~/.codex/hooks.json
    static QString command();

private:
    static FileResult edit(bool adding);
};

} // namespace norva
