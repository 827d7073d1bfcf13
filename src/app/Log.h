#pragma once

#include <QString>

#include <functional>

namespace norva {

// The one log sink of Norva. Lines are fixed sentences ("Norva settings: reading ..."), written to
// standard error and to the log file; tests install a listener and assert on the exact lines.
void logLine(const QString& line);

// Where lines also go besides standard error. Returns a token to pass to removeLogListener.
int addLogListener(std::function<void(const QString&)> listener);
void removeLogListener(int token);

// Past this size the log file is moved to "<name>.1" (replacing the one before) and started afresh.
constexpr qint64 kLogFileLimit = 1024 * 1024;

// Sends every line to this file as well (appended), for the running application. The same line
// said again and again in a row is written once, and the streak's length when it ends, so a
// repeated event cannot fill the disk; listeners still hear every line.
void setLogFile(const QString& path, qint64 limit = kLogFileLimit);
// Ends a streak of repeated lines in the file (at quit).
void closeLogFile();

} // namespace norva
