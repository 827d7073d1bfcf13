#pragma once

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>

namespace norva::test {

// A real MPRIS player on a private session bus: dbus-daemon of its own, and mpv with its MPRIS
// plugin playing a generated, tagged tone with a cover next to it. While it lives, this process's
// DBUS_SESSION_BUS_ADDRESS points at the private bus, so child processes (the producer) use it.
class MprisPlayerRig {
public:
    static constexpr const char* mprisPlugin = "/usr/lib/mpv-mpris/mpris.so";
    static constexpr const char* title = "Norva Test Tone";
    static constexpr const char* artist = "Norva Band";
    static constexpr int seconds = 20;

    static bool available()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("mpv")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty() &&
               QFile::exists(QLatin1String(mprisPlugin));
    }

    MprisPlayerRig() : m_savedAddress(qgetenv("DBUS_SESSION_BUS_ADDRESS")) {}
    ~MprisPlayerRig()
    {
        stopPlayer();
        m_bus.kill();
        m_bus.waitForFinished(2000);
        if (m_savedAddress.isEmpty())
            qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        else
            qputenv("DBUS_SESSION_BUS_ADDRESS", m_savedAddress);
    }

    // Starts the bus and the player; false when either does not come up.
    bool start()
    {
        writeTone(m_dir.filePath(QStringLiteral("tone.wav")));
        QImage cover(16, 16, QImage::Format_RGB32);
        cover.fill(Qt::red);
        cover.save(m_dir.filePath(QStringLiteral("cover.png")));

        m_bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                    QStringLiteral("--print-address=1")});
        if (!m_bus.waitForStarted(5000))
            return false;
        while (!m_bus.canReadLine() && m_bus.waitForReadyRead(5000)) {
        }
        m_address = m_bus.readLine().trimmed();
        if (m_address.isEmpty())
            return false;
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);

        m_player.setProcessChannelMode(QProcess::MergedChannels);
        m_player.setStandardOutputFile(QProcess::nullDevice());
        m_player.start(QStringLiteral("mpv"),
                       {QStringLiteral("--no-config"), QStringLiteral("--no-video"),
                        QStringLiteral("--ao=null"), QStringLiteral("--script=") + QLatin1String(mprisPlugin),
                        QStringLiteral("--loop-file=inf"), QStringLiteral("--hr-seek=yes"),
                        m_dir.filePath(QStringLiteral("tone.wav"))});
        return m_player.waitForStarted(5000);
    }

    void stopPlayer()
    {
        if (m_player.state() == QProcess::NotRunning)
            return;
        m_player.terminate();
        if (!m_player.waitForFinished(3000)) {
            m_player.kill();
            m_player.waitForFinished(2000);
        }
    }

    qint64 playerPid() const { return m_player.processId(); }
    QByteArray address() const { return m_address; }

private:
    // A mono 16-bit WAV whose LIST/INFO chunk names the title and artist, as taggers write it.
    static void writeTone(const QString& path)
    {
        constexpr int rate = 8000;
        QByteArray samples;
        QDataStream data(&samples, QIODevice::WriteOnly);
        data.setByteOrder(QDataStream::LittleEndian);
        for (int i = 0; i < rate * seconds; ++i)
            data << qint16(std::lround(6000 * std::sin(2 * M_PI * 440.0 * i / rate)));
        auto chunk = [](const QByteArray& tag, QByteArray body) {
            if (body.size() % 2)
                body.append('\0');
            QByteArray out = tag;
            QDataStream size(&out, QIODevice::Append);
            size.setByteOrder(QDataStream::LittleEndian);
            size << quint32(body.size());
            return out + body;
        };
        QByteArray format;
        QDataStream fmt(&format, QIODevice::WriteOnly);
        fmt.setByteOrder(QDataStream::LittleEndian);
        fmt << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2) << quint16(2) << quint16(16);
        const QByteArray info =
            "INFO" + chunk("INAM", QByteArray(title) + '\0') + chunk("IART", QByteArray(artist) + '\0');
        const QByteArray body = "WAVE" + chunk("fmt ", format) + chunk("LIST", info) + chunk("data", samples);
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(chunk("RIFF", body));
    }

    QTemporaryDir m_dir;
    QProcess m_bus;
    QProcess m_player;
    QByteArray m_address;
    QByteArray m_savedAddress;
};

} // namespace norva::test
