#pragma once

#include "app/ProcessRun.h"

#include <QObject>
#include <QString>

#include <functional>

namespace norva {

// Runs AppleScript through osascript off the main thread and hands the outcome back on the main
// thread. The program's path is configurable so tests can put a stand-in in its place.
class ScriptRunner {
public:
    explicit ScriptRunner(QString osascriptPath = defaultPath()) : m_path(std::move(osascriptPath)) {}

    static QString defaultPath() { return QStringLiteral("/usr/bin/osascript"); }
    QString path() const { return m_path; }
    // True when the program exists: on Linux it does not, and scripting is not offered.
    bool isAvailable() const;

    // Runs the script (given on standard input); `done` runs on `receiver`'s thread unless the
    // receiver is gone by then.
    void run(QObject* receiver, const QString& script, int timeoutMs,
             std::function<void(const ProcessResult&)> done) const;
    // The same, blocking: for work that is already off the main thread.
    ProcessResult runNow(const QString& script, int timeoutMs) const;

    // "osascript exited with 1" and the like, for log lines and troubles.
    static QString failureText(const ProcessResult& result);
    // True when the script failed because the person has not allowed (or must still allow)
    // Norva to control the player: errors -1743 and -1744.
    static bool isPermissionRefusal(const ProcessResult& result);

private:
    QString m_path;
};

} // namespace norva
