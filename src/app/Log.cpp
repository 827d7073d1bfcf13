#include "app/Log.h"

#include "app/CountText.h"

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
    qint64 limit = kLogFileLimit;
    QString lastLine;   // the line last written to the file and standard error
    qint64 repeats = 0; // how often it came again since, unwritten
    bool quietStderr = qEnvironmentVariableIsSet("NORVA_LOG_QUIET");
};

Sink& sink()
{
    static Sink instance;
    return instance;
}

// Moves a full log to "<name>.1", so one previous file is kept beside the current one.
void rotateIfFull(Sink& s)
{
    if (s.file.size() < s.limit)
        return;
    const QString path = s.file.fileName();
    const QString previous = path + QStringLiteral(".1");
    s.file.close();
    QFile::remove(previous);
    QFile::rename(path, previous);
    s.file.open(QIODevice::Append | QIODevice::Text);
}

void write(Sink& s, const QByteArray& utf8)
{
    if (!s.quietStderr) {
        std::fwrite(utf8.constData(), 1, static_cast<size_t>(utf8.size()), stderr);
        std::fputc('\n', stderr);
    }
    if (s.file.isOpen()) {
        s.file.write(QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toUtf8() + ' ' + utf8 + '\n');
        s.file.flush();
        rotateIfFull(s);
    }
}

void endStreak(Sink& s)
{
    if (s.repeats > 0)
        write(s, (QStringLiteral("Norva: the line above came ") +
                  countText(s.repeats, QStringLiteral("time"), QStringLiteral("times")) +
                  QStringLiteral(" more"))
                     .toUtf8());
    s.repeats = 0;
}

} // namespace

void logLine(const QString& line)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    if (line == s.lastLine) {
        ++s.repeats;
    } else {
        endStreak(s);
        s.lastLine = line;
        write(s, line.toUtf8());
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

void setLogFile(const QString& path, qint64 limit)
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    endStreak(s);
    if (s.file.isOpen())
        s.file.close();
    s.limit = limit;
    s.lastLine.clear();
    s.file.setFileName(path);
    if (!s.file.open(QIODevice::Append | QIODevice::Text))
        std::fprintf(stderr, "Norva: the log file %s could not be opened\n", qPrintable(path));
    else
        rotateIfFull(s);
}

void closeLogFile()
{
    Sink& s = sink();
    std::lock_guard lock(s.mutex);
    endStreak(s);
    s.file.close();
    s.lastLine.clear();
}

} // namespace norva
