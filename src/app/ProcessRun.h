#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace norva {

// The outcome of one short child process.
struct ProcessResult {
    bool started = false;
    bool timedOut = false;
    bool crashed = false; // ended by a signal
    int exitCode = -1;
    QByteArray output;
    QByteArray errorOutput;
    QString startError; // the system's words when it could not be started ("No such file or directory")

    bool succeeded() const { return started && !timedOut && !crashed && exitCode == 0; }
    // Why it failed, in the words a log line puts in parentheses.
    QString failureReason(const QString& programName) const;
};

// Runs a program to its end, feeding it `input` on standard input, and kills it after `timeoutMs`.
// Blocks: call it off the main thread (runOffMain).
ProcessResult runProcess(const QString& program, const QStringList& arguments, const QByteArray& input,
                         int timeoutMs);

} // namespace norva
