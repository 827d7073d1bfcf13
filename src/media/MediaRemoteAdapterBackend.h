#pragma once

#include "app/Clock.h"
#include "media/MediaBackend.h"

#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QProcess>

#include <memory>
#include <optional>

namespace norva {

// How to start the now-playing adapter: the program and the arguments that come before the verb
// ("stream", "send", "seek"). On macOS that is perl with the adapter script and its framework; on
// Linux it is Norva's own MPRIS producer, norva-media, with nothing before the verb.
struct AdapterCommand {
    QString program;
    QStringList leadingArguments;
};

// Streams the system's now-playing state from a long-running adapter process that prints one JSON
// line per change, restarts it when it ends after a healthy life, and reports a failure when it
// keeps dying young so that the manager can fall back to scripting the players.
class MediaRemoteAdapterBackend final : public QObject, public MediaBackend {
    Q_OBJECT
public:
    // Finds the adapter: the script and framework on macOS, the norva-media producer on Linux.
    struct Locator {
        // The folders where the adapter is looked for: next to the running program, then the
        // development layouts (the build tree around a test or bench executable).
        static QStringList defaultFolders();
        static std::optional<AdapterCommand> locate(const QStringList& folders = defaultFolders());
    };

    MediaRemoteAdapterBackend(Clock& clock, AdapterCommand command, QObject* parent = nullptr);
    ~MediaRemoteAdapterBackend() override;

    void start(MediaSink sink) override;
    void stop() override;
    void send(MediaCommand command) override;
    void seek(double seconds) override;

    // Takes bytes from the stream; every complete line is applied. Public so the line rules can be
    // driven without a process.
    void ingest(const QByteArray& bytes);
    // The held state, as merged from the lines so far.
    const QJsonObject& state() const { return m_state; }
    // How many restarts in a row the stream has had (reset after a life longer than 30 s).
    int restartCount() const { return m_restarts; }
    bool isStreaming() const;

    // Reads a number that JSON holds as an integer, a double or numeric text.
    // Builds the snapshot from a state dictionary; `now` stands in when it carries no timestamp.
    static MediaSnapshot snapshotFrom(const QJsonObject& state, const QDateTime& now);

    static constexpr double restartDelay = 1.0;   // seconds before a healthy stream is respawned
    static constexpr double youngDeath = 10.0;    // a stream that dies sooner is taken as broken
    static constexpr double settledLife = 30.0;   // a life this long forgets earlier restarts
    static constexpr int maxQuickRestarts = 3;    // restarts tried while lives stay short
    static constexpr int oneShotTimeoutMs = 4000; // a send or seek that hangs is ended

private:
    void spawn();
    void onStreamEnded(int exitCode, QProcess::ExitStatus status);
    void apply(const QJsonObject& payload, bool isDiff);
    void publish();
    void runOneShot(const QStringList& arguments, const QString& what);
    void fail();

    Clock& m_clock;
    AdapterCommand m_command;
    MediaSink m_sink;
    std::unique_ptr<QProcess> m_process;
    QDateTime m_startedAt;
    QByteArray m_buffer;
    QJsonObject m_state;
    QString m_artworkKey;
    int m_restarts = 0;
    bool m_running = false;
    ScheduledWork m_restartWork;
};

} // namespace norva
