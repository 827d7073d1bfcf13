#include "app/Log.h"

#include <QDateTime>
#include <QFile>

#include <cstdio>
#include <map>
#include <mutex>

namespace norva {
namespace {

struct Sink {
    std::mutex mutex;
    std::map<int, std::function<void(const QString&)>> listeners;
    int nextToken = 1;
    QFile file;
    bool quietStderr = qEnvironmentVariableIsSet("NORVA_LOG_QUIET");
};

Sink& sink()
{
    static Sink instance;
    return instance;
}

} // namespace

void logLine(const QString& line)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    const QByteArray utf8 = line.toUtf8();
    if (!s.quietStderr) {
        std::fwrite(utf8.constData(), 1, static_cast<size_t>(utf8.size()), stderr);
        std::fputc('\n', stderr);
    }
    if (s.file.isOpen()) {
        s.file.write(QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toUtf8() + ' ' + utf8 + '\n');
        s.file.flush();
    }
    for (const auto& [token, listener] : s.listeners)
        listener(line);
}

int addLogListener(std::function<void(const QString&)> listener)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    const int token = s.nextToken++;
    s.listeners.emplace(token, std::move(listener));
    return token;
}

void removeLogListener(int token)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    s.listeners.erase(token);
}

void setLogFile(const QString& path)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    if (s.file.isOpen())
        s.file.close();
    s.file.setFileName(path);
    if (!s.file.open(QIODevice::Append | QIODevice::Text))
        std::fprintf(stderr, "Norva: the log file %s could not be opened\n", qPrintable(path));
}

} // namespace norva
