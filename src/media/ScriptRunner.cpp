#include "media/ScriptRunner.h"

#include "app/Background.h"

#include <QFileInfo>

namespace norva {

bool ScriptRunner::isAvailable() const
{
    const QFileInfo program(m_path);
    return program.isFile() && program.isExecutable();
}

ProcessResult ScriptRunner::runNow(const QString& script, int timeoutMs) const
{
    return runProcess(m_path, {}, script.toUtf8(), timeoutMs);
}

void ScriptRunner::run(QObject* receiver, const QString& script, int timeoutMs,
                       std::function<void(const ProcessResult&)> done) const
{
    const QString path = m_path;
    runOffMain<ProcessResult>(
        receiver, [path, script, timeoutMs] { return runProcess(path, {}, script.toUtf8(), timeoutMs); },
        [done = std::move(done)](ProcessResult result) { done(result); });
}

QString ScriptRunner::failureText(const ProcessResult& result)
{
    return result.failureReason(QStringLiteral("osascript"));
}

bool ScriptRunner::isPermissionRefusal(const ProcessResult& result)
{
    const QByteArray& error = result.errorOutput;
    return !result.succeeded() && (error.contains("-1743") || error.contains("-1744"));
}

} // namespace norva
