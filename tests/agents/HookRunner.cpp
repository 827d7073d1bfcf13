#include "HookRunner.h"

#include "agents/ApprovalsFolder.h"
#include "agents/hooks/HookScripts.h"
#include "app/Paths.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <sys/stat.h>
#include <utime.h>

namespace norva::test {

HookRunner::HookRunner(const TempHome&) : m_folder(Paths::approvalsFolder())
{
    const ApprovalsFolder folder(m_folder);
    for (const char* script :
         {"pretooluse.sh", "posttooluse.sh", "permissionrequest.sh", "codex-hook.sh", "copilot-hook.sh"})
        HookScripts::write(QString::fromLatin1(script), folder);
}

bool HookRunner::exists(const QString& name) const
{
    return QFile::exists(file(name));
}

void HookRunner::age(const QString& name, qint64 seconds)
{
    const QByteArray path = QFile::encodeName(file(name));
    if (!QFile::exists(file(name))) {
        QFile made(file(name));
        made.open(QIODevice::WriteOnly);
    }
    const qint64 when = QDateTime::currentSecsSinceEpoch() - seconds;
    utimbuf times{static_cast<time_t>(when), static_cast<time_t>(when)};
    ::utime(path.constData(), &times);
}

QProcessEnvironment HookRunner::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    for (auto it = m_env.cbegin(); it != m_env.cend(); ++it)
        env.insert(it.key(), it.value());
    return env;
}

std::unique_ptr<QProcess> HookRunner::start(const QString& script, const QByteArray& payload,
                                            const QStringList& args, const QStringList& wrapper)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    QStringList command = wrapper;
    command << QStringLiteral("sh") << file(script) << args;
    process->start(command.takeFirst(), command);
    process->waitForStarted();
    process->write(payload);
    process->waitForBytesWritten(5000); // the pipe is closed at once only when nothing is left to send
    process->closeWriteChannel();
    return process;
}

HookRunner::Result HookRunner::finish(QProcess& process, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    Result result;
    if (!process.waitForFinished(timeoutMs))
        process.kill();
    process.waitForFinished(1000);
    result.ms = timer.elapsed();
    result.out = process.readAllStandardOutput();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return result;
}

HookRunner::Result HookRunner::run(const QString& script, const QByteArray& payload, const QStringList& args)
{
    QElapsedTimer timer;
    timer.start();
    auto process = start(script, payload, args);
    Result result = finish(*process);
    result.ms = timer.elapsed();
    return result;
}

QStringList HookRunner::names(const QString& prefix) const
{
    return QDir(m_folder).entryList({prefix + QLatin1Char('*')}, QDir::Files | QDir::Hidden, QDir::Name);
}

QString HookRunner::waitFor(const QString& prefix, const QString& suffix, int timeoutMs) const
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        for (const QString& name : names(prefix)) {
            if (suffix.isEmpty() || name.endsWith(suffix))
                return name;
        }
        QThread::msleep(5); // polls a real child process, not one of Norva's own timings
    }
    return {};
}

void HookRunner::answer(const QString& name, const QByteArray& body) const
{
    ApprovalsFolder(m_folder).write(name, body);
}

} // namespace norva::test
