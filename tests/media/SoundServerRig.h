#pragma once

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

namespace norva::test {

// A real PulseAudio server of its own, with one silent sink, on a private socket. While it
// lives, this process's PULSE_SERVER points at it, so pactl run by Norva talks to it.
class SoundServerRig {
public:
    static bool available()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("pactl")).isEmpty();
    }

    SoundServerRig() : m_savedServer(qgetenv("PULSE_SERVER"))
    {
        qputenv("PULSE_SERVER", "unix:" + socket().toUtf8());
    }
    ~SoundServerRig()
    {
        stop();
        if (m_savedServer.isEmpty())
            qunsetenv("PULSE_SERVER");
        else
            qputenv("PULSE_SERVER", m_savedServer);
    }

    QString socket() const { return m_dir.filePath(QStringLiteral("native")); }

    // Starts the server and waits until pactl reaches it; false when it does not come up.
    bool start()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), m_dir.path());
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_dir.path());
        m_server.setProcessEnvironment(environment);
        m_server.setProcessChannelMode(QProcess::MergedChannels);
        m_server.setStandardOutputFile(m_dir.filePath(QStringLiteral("server.log")));
        m_server.start(QStringLiteral("pulseaudio"),
                       {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                        QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--disable-shm=yes"),
                        QStringLiteral("-L"), QStringLiteral("module-null-sink sink_name=norva_test"),
                        QStringLiteral("-L"),
                        QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") + socket()});
        if (!m_server.waitForStarted(5000))
            return false;
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (pactl({QStringLiteral("info")}).exitCode == 0)
                return true;
            QThread::msleep(50);
        }
        return false;
    }

    void stop()
    {
        if (m_server.state() == QProcess::NotRunning)
            return;
        m_server.kill();
        m_server.waitForFinished(3000);
    }

    // Waits until a program watches the server ("pactl subscribe"), so that a change made now is
    // one it hears. The listing counts itself as a client too.
    static bool waitForWatcher()
    {
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (pactl({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("clients")})
                    .output.count("pactl") >= 2)
                return true;
            QThread::msleep(50);
        }
        return false;
    }

    struct Run {
        int exitCode = -1;
        QByteArray output;
    };
    // pactl as another program would run it: a volume key, a mixer.
    static Run pactl(const QStringList& arguments)
    {
        QProcess process;
        process.start(QStringLiteral("pactl"), arguments);
        process.waitForFinished(5000);
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput()};
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_savedServer;
    QProcess m_server;
};

} // namespace norva::test
