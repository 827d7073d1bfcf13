#pragma once

#include "TempHome.h"

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

namespace norva::test {

// Runs Norva's hook scripts for real with sh, inside a temporary HOME.
class HookRunner {
public:
    struct Result {
        QByteArray out;
        int exitCode = -1;
        qint64 ms = 0;
    };

    explicit HookRunner(const TempHome& home);

    QString folder() const { return m_folder; }
    QString file(const QString& name) const { return m_folder + QLatin1Char('/') + name; }
    bool exists(const QString& name) const;

    void setEnv(const QString& name, const QString& value) { m_env.insert(name, value); }
    // Sets a file's modification time to now minus `age` seconds (creating it when missing).
    void age(const QString& name, qint64 seconds);
    void freshHeartbeat() { age(QStringLiteral("heartbeat"), 0); }

    // Starts `sh script args...` with the payload on stdin; `wrapper` runs it under another program.
    std::unique_ptr<QProcess> start(const QString& script, const QByteArray& payload,
                                    const QStringList& args = {}, const QStringList& wrapper = {});
    static Result finish(QProcess& process, int timeoutMs = 20000);
    Result run(const QString& script, const QByteArray& payload, const QStringList& args = {});

    // Waits for a file whose name starts with the prefix (and ends with the suffix); its name or empty.
    QString waitFor(const QString& prefix, const QString& suffix = {}, int timeoutMs = 10000) const;
    QStringList names(const QString& prefix) const;
    // Writes a file as Norva would (temporary name, then moved into place).
    void answer(const QString& name, const QByteArray& body) const;

private:
    QProcessEnvironment environment() const;

    QString m_folder;
    QMap<QString, QString> m_env;
};

} // namespace norva::test
