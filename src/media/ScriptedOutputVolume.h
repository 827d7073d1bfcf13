#pragma once

#include "media/OutputVolume.h"
#include "media/ScriptRunner.h"

#include <optional>
#include <utility>

namespace norva {

// The volume through "set volume output volume N" run by osascript. Listening for changes needs
// the audio framework's property listener, which only the macOS build has; here monitoring reads
// the level once, so that scrolling starts from where the sound is.
class ScriptedOutputVolume : public OutputVolume {
    Q_OBJECT
public:
    static constexpr int timeoutMs = 4000;

    explicit ScriptedOutputVolume(ScriptRunner runner = ScriptRunner(), QObject* parent = nullptr);

    void set(double level, Done done) override;
    void startMonitoring() override;
    void stopMonitoring() override { ++m_generation; }

    // "40,false" (the reply of the reading script) gives 0.4, not muted.
    static std::optional<std::pair<double, bool>> parseSettings(const QByteArray& reply);

private:
    ScriptRunner m_runner;
    quint64 m_generation = 0; // drops a reading that arrives after monitoring stopped
};

} // namespace norva
