#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace norva {

// The default output device's volume: setting it, and hearing when it changes (from a key, another
// program or Norva itself). On macOS it is AppleScript's "set volume"; on Linux the sound server
// through pactl, which PulseAudio and PipeWire both answer.
class OutputVolume : public QObject {
    Q_OBJECT
public:
    // Empty on success, otherwise the reason for a log line ("pactl exited with 1").
    using Done = std::function<void(const QString& failure)>;

    using QObject::QObject;

    // `level` is 0...1; `done` runs on the main thread.
    virtual void set(double level, Done done) = 0;
    // While monitoring, `changed` tells every change of the level or of the mute, and once at the
    // start with the level as it is.
    virtual void startMonitoring() = 0;
    virtual void stopMonitoring() = 0;

signals:
    void changed(double level, bool muted);
};

} // namespace norva
