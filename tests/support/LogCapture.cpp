#include "LogCapture.h"

#include "app/Log.h"

namespace norva::test {

LogCapture::LogCapture()
{
    m_token = addLogListener([this](const QString& line) {
        QMutexLocker lock(&m_mutex);
        m_lines.append(line);
    });
}

LogCapture::~LogCapture()
{
    removeLogListener(m_token);
}

QStringList LogCapture::lines() const
{
    QMutexLocker lock(&m_mutex);
    return m_lines;
}

int LogCapture::count(const QString& fragment) const
{
    QMutexLocker lock(&m_mutex);
    int n = 0;
    for (const QString& line : m_lines)
        n += line.contains(fragment) ? 1 : 0;
    return n;
}

void LogCapture::clear()
{
    QMutexLocker lock(&m_mutex);
    m_lines.clear();
}

} // namespace norva::test
