#include "app/ProcessRun.h"

#include <QProcess>

namespace norva {

QString ProcessResult::failureReason(const QString& programName) const
{
    if (!started)
        return programName + QStringLiteral(" could not be started");
    if (timedOut)
        return programName + QStringLiteral(" did not answer in time");
    if (crashed)
        return programName + QStringLiteral(" was ended by a signal");
    return programName + QStringLiteral(" exited with ") + QString::number(exitCode);
}

ProcessResult runProcess(const QString& program, const QStringList& arguments, const QByteArray& input,
                         int timeoutMs)
{
    ProcessResult result;
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(timeoutMs)) {
        result.startError = process.errorString();
        return result;
    }
    result.started = true;
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(timeoutMs)) {
        result.timedOut = true;
        process.kill();
        process.waitForFinished(1000);
        return result;
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.exitCode = process.exitCode();
    result.output = process.readAllStandardOutput();
    result.errorOutput = process.readAllStandardError();
    return result;
}

} // namespace norva
