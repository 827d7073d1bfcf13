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

void ScriptedOutputVolume::startMonitoring()
{
    const quint64 generation = ++m_generation;
    m_runner.run(
        this,
        QStringLiteral("set levels to get volume settings\n"
                       "return (output volume of levels as text) & \",\" & (output muted of levels as text)"),
        timeoutMs, [this, generation](const ProcessResult& result) {
            const auto settings = result.succeeded() ? parseSettings(result.output) : std::nullopt;
            if (generation == m_generation && settings)
                emit changed(settings->first, settings->second);
        });
}

std::optional<std::pair<double, bool>> ScriptedOutputVolume::parseSettings(const QByteArray& reply)
{
    const QList<QByteArray> parts = reply.trimmed().split(',');
    bool ok = false;
    const int percent = parts.value(0).toInt(&ok);
    if (parts.size() != 2 || !ok || percent < 0 || (parts[1] != "true" && parts[1] != "false"))
        return std::nullopt;
    return std::make_pair(percent / 100.0, parts[1] == "true");
}

} // namespace norva
