#pragma once

#include "media/OutputVolume.h"
#include "media/ScriptRunner.h"

namespace norva {

// The volume through "set volume output volume N" run by osascript. Listening for changes needs
// the audio framework's property listener, which only the macOS build has, so monitoring here is
// silent.
class ScriptedOutputVolume : public OutputVolume {
    Q_OBJECT
public:
    static constexpr int timeoutMs = 4000;

    explicit ScriptedOutputVolume(ScriptRunner runner = ScriptRunner(), QObject* parent = nullptr);

    void set(double level, Done done) override;
    void startMonitoring() override {}
    void stopMonitoring() override {}

private:
    ScriptRunner m_runner;
};

} // namespace norva
