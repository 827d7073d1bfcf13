#pragma once

#include "app/Clock.h"
#include "media/MediaBackend.h"
#include "media/ScriptRunner.h"

#include <QNetworkAccessManager>
#include <QObject>

#include <optional>

namespace norva {

// The fallback source: asks the two scriptable players, Spotify and Music, what they play, every
// 3 s and whenever a player announces a change, and sends commands to the one that plays.
class ScriptingBackend final : public QObject, public MediaBackend {
    Q_OBJECT
public:
    enum class Player { spotify, music };

    // What one player's poll reply says.
    struct Reading {
        MediaSnapshot snapshot; // hasTrack false for "stopped"
        QString trackId;
        QString artworkUrl; // Spotify only
    };

    ScriptingBackend(Clock& clock, ScriptRunner runner = ScriptRunner(), QObject* parent = nullptr);
    ~ScriptingBackend() override;

    void start(MediaSink sink) override;
    void stop() override;
    void send(MediaCommand command) override;
    void seek(double seconds) override;

    // Polls now: a player's change notification and every command call this.
    void poll();
    // Polls again shortly, so the display follows a command without waiting for the timer.
    void nudge();

    static QString name(Player player);
    static QString bundleIdentifier(Player player);
    static QString pollScript(Player player);
    static QString artworkScript();
    static QString commandScript(Player player, MediaCommand command);
    static QString seekScript(Player player, double seconds);
    // Reads a poll reply ("stopped", or the fields joined by the unit separator).
    static Reading parseReply(Player player, const QString& reply, const QDateTime& now);
    // Reads the «data ...» text osascript prints for raw artwork bytes.
    static QByteArray parseRawData(const QString& reply);

    static constexpr double pollInterval = 3.0;   // seconds between polls when no player speaks up
    static constexpr double nudgeDelay = 0.3;     // a command's effect shows after this
    static constexpr int commandTimeoutMs = 4000; // a command script that hangs is ended
    static constexpr int pollTimeoutMs = 4000;
    static constexpr int artworkTimeoutMs = 10000;

private:
    void takePoll(const QList<ProcessResult>& results);
    void fetchArtwork(Player player, const Reading& reading);
    void deliverArtwork(const QString& key, const QByteArray& data);
    void runCommand(const QString& script, const QString& what);

    Clock& m_clock;
    ScriptRunner m_runner;
    MediaSink m_sink;
    bool m_running = false;
    bool m_pollInFlight = false;
    bool m_pollAgain = false;
    std::optional<Player> m_activePlayer;
    MediaSnapshot m_last;
    QString m_trackIdentity; // player and track id of the track whose artwork is held or coming
    QString m_artworkKey;
    QNetworkAccessManager* m_network = nullptr;
    ScheduledWork m_pollTimer;
    ScheduledWork m_nudgeWork;
};

} // namespace norva
