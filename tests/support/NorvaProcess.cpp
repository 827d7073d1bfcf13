#include "NorvaProcess.h"

#include <QElapsedTimer>

namespace norva::test {

QProcessEnvironment norvaEnvironment(const TempHome& home)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    for (const char* name : {"NORVA_LOG_QUIET", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        environment.remove(QString::fromLatin1(name));
    return environment;
}

std::unique_ptr<QProcess> startNorva(const QString& executable, const QProcessEnvironment& environment,
                                     const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment);
    process->start(executable, arguments);
    return process;
}

bool waitForOutput(QProcess& process, const QByteArray& text, QByteArray& seen, int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!seen.contains(text) && timer.elapsed() < ms) {
        process.waitForReadyRead(200);
        seen += process.readAllStandardError();
        if (process.state() == QProcess::NotRunning) {
            seen += process.readAllStandardError();
            break;
        }
    }
    return seen.contains(text);
}

void stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished(5000);
}

} // namespace norva::test
