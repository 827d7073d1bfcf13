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

// Sends every line to this file as well (appended), for the running application.
void setLogFile(const QString& path);

} // namespace norva
