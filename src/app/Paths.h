#pragma once

#include <QString>

namespace norva {

// Where Norva's files live. On Linux the data folder is "$XDG_DATA_HOME/Norva" (by default
// "~/.local/share/Norva") and the preferences are "$XDG_CONFIG_HOME/Norva/preferences.toml";
// on macOS the data folder is "~/Library/Application Support/Norva".
// Every function reads the environment afresh, so a test that points HOME elsewhere is obeyed.
// The system's own folders (data, preferences, state) are defined under src/platform/<os>.
namespace Paths {

QString home();
QString dataFolder();
QString approvalsFolder();
QString configFolder();
QString preferencesFile();
QString stateFolder();     // the log file and the single-instance lock
QString autostartFolder(); // XDG autostart entries (Linux)

// Creates the folder (and its parents) when missing; false when it could not be made.
bool ensureFolder(const QString& path);

} // namespace Paths
} // namespace norva
