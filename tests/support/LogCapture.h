#pragma once

#include <QMutex>
#include <QStringList>

namespace norva::test {

// Collects every log line written while it lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines() const;
    // How many lines contain the fragment.
    int count(const QString& fragment) const;
    bool contains(const QString& fragment) const { return count(fragment) > 0; }
    void clear();

private:
    int m_token = 0;
    mutable QMutex m_mutex;
    QStringList m_lines;
};

} // namespace norva::test
