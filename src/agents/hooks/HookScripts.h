#pragma once

#include "agents/ApprovalsFolder.h"

#include <QByteArray>
#include <QString>

namespace norva {

// The four hook scripts that ship inside Norva ("pretooluse.sh", "posttooluse.sh", "codex-hook.sh",
// "copilot-hook.sh"). Each is a fixed text; at install time the functions the hooks share
// ("common.sh") are written into it, and the approvals folder Norva uses into its first assignment,
// single-quoted, so the script finds the very folder the running Norva watches whatever
// XDG_DATA_HOME says.
class HookScripts {
public:
    // The script's text for this approvals folder; empty for an unknown name.
    static QByteArray text(const QString& name, const QString& approvalsFolder);
    // Writes the script whole into the folder with mode 0755, making the folder (0700) first.
    static FileResult write(const QString& name, const ApprovalsFolder& folder);

    // The text in single quotes for sh, every ' written as '\''.
    static QString shellQuoted(const QString& text);
    // The command an agent registers: sh, one blank, the quoted absolute path of the script.
    static QString command(const QString& scriptPath);
};

} // namespace norva
