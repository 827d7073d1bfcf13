#include "media/ScriptedOutputVolume.h"

#include <cmath>

namespace norva {

ScriptedOutputVolume::ScriptedOutputVolume(ScriptRunner runner, QObject* parent)
    : OutputVolume(parent), m_runner(std::move(runner))
{}

void ScriptedOutputVolume::set(double level, Done done)
{
    const int percent = static_cast<int>(std::lround(level * 100));
    m_runner.run(this, QStringLiteral("set volume output volume ") + QString::number(percent), timeoutMs,
                 [done = std::move(done)](const ProcessResult& result) {
                     done(result.succeeded() ? QString() : ScriptRunner::failureText(result));
                 });
}

} // namespace norva
