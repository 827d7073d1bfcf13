#pragma once

#include "app/Clock.h"
#include "media/OutputVolume.h"

#include <optional>

class QProcess;

namespace norva {

// The default sink's volume through pactl, which both PulseAudio and PipeWire's pulse server
// answer. Changes are heard through "pactl subscribe": every event on a sink, or on the server
// (the default sink moved), reads the level and the mute again.
class PactlOutputVolume : public OutputVolume {
    Q_OBJECT
public:
    static constexpr int timeoutMs = 4000;
    // The sound server restarts now and then (a new login, a crashed server); the watch follows,
    // waiting twice as long after each try that finds no server, up to five minutes, so a machine
    // without sound does not start pactl every few seconds for ever.
    static constexpr Seconds resubscribeDelay{5};
    static constexpr Seconds longestResubscribeDelay{300};

    struct Reading {
        double level = 0;
        bool muted = false;
        bool operator==(const Reading&) const = default;
    };

    explicit PactlOutputVolume(Clock& clock, QString pactl = QStringLiteral("pactl"),
                               QObject* parent = nullptr);
    ~PactlOutputVolume() override;

    void set(double level, Done done) override;
    void startMonitoring() override;
    void stopMonitoring() override;

    // "Volume: front-left: 26214 /  40% / -23.88 dB,   front-right: ..." gives the channels'
    // mean, 0.4; nothing when no channel has a percent.
    static std::optional<double> parseLevel(const QByteArray& output);
    // "Mute: yes" or "Mute: no".
    static std::optional<bool> parseMuted(const QByteArray& output);

private:
    void subscribe();
    void readEvents();
    void eventsEnded();
    void refresh();
    // One line per streak of failures, not one per event or retry.
    static void logOnce(bool& logged, const QString& line);

    Clock& m_clock;
    QString m_program;
    QProcess* m_events = nullptr;
    bool m_monitoring = false;
    bool m_refreshing = false;
    bool m_refreshAgain = false;
    bool m_watchTroubleLogged = false;
    bool m_readTroubleLogged = false;
    quint64 m_generation = 0; // drops readings that arrive after monitoring stopped
    std::optional<Reading> m_last;
    Seconds m_retryDelay = resubscribeDelay;
    ScheduledWork m_resubscribe;
};

} // namespace norva
