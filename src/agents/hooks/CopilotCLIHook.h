#pragma once

#include "agents/ApprovalsFolder.h"

#include <QJsonObject>
#include <QString>

namespace norva {

// Copilot CLI's hooks: "copilot-hook.sh" and Norva's own file "hooks/norva.json" under Copilot's home,
// written whole. The person's other Copilot hook files are never touched.
class CopilotCLIHook {
public:
    static FileResult install();
    // Deletes "hooks/norva.json" and nothing else.
    static FileResult uninstall();
    static bool isInstalled();
    // An executable "copilot" at "/opt/homebrew/bin/copilot", "/usr/local/bin/copilot" or on PATH.
    static bool copilotInstalled();
    // COPILOT_HOME when set and not empty, else ~/.copilot.
    static QString defaultHome();
    static QString documentPath();
    static QJsonObject document();
};

} // namespace norva
