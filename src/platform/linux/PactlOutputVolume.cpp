#include "platform/linux/PactlOutputVolume.h"

#include "app/Background.h"
#include "app/Log.h"
#include "app/ProcessRun.h"

#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

namespace norva {
namespace {

const QString kDefaultSink = QStringLiteral("@DEFAULT_SINK@");
constexpr int kStopWaitMs = 1000;

struct Outcome {
    std::optional<PactlOutputVolume::Reading> reading;
    QString failure;
};

} // namespace

PactlOutputVolume::PactlOutputVolume(Clock& clock, QString pactl, QObject* parent)
    : OutputVolume(parent), m_clock(clock), m_program(std::move(pactl))
{}

PactlOutputVolume::~PactlOutputVolume()
{
    stopMonitoring();
}

std::optional<double> PactlOutputVolume::parseLevel(const QByteArray& output)
{
    static const QRegularExpression percent(QStringLiteral("(\\d+)%"));
    const QString text = QString::fromUtf8(output);
    const int volumeLine = text.indexOf(QStringLiteral("Volume:"));
    if (volumeLine < 0)
        return std::nullopt;
    const QString firstLine = text.mid(volumeLine).section(QLatin1Char('\n'), 0, 0);
    double sum = 0;
    int channels = 0;
    for (auto match = percent.globalMatch(firstLine); match.hasNext(); ++channels)
        sum += match.next().captured(1).toDouble() / 100.0;
    if (channels == 0)
        return std::nullopt;
    return sum / channels;
}

std::optional<bool> PactlOutputVolume::parseMuted(const QByteArray& output)
{
    const QByteArray line = output.trimmed();
    if (line == "Mute: yes")
        return true;
    if (line == "Mute: no")
        return false;
    return std::nullopt;
}

void PactlOutputVolume::set(double level, Done done)
{
    const int percent = static_cast<int>(std::lround(level * 100));
    const QString program = m_program;
    runOffMain<ProcessResult>(
        this,
        [program, percent] {
            return runProcess(
                program, {QStringLiteral("set-sink-volume"), kDefaultSink, QString::number(percent) + '%'},
                {}, timeoutMs);
        },
        [this, done = std::move(done)](ProcessResult result) {
            // Read back what the server made of it: it is heard through the watch too, unless the
            // watch is still connecting.
            if (m_monitoring)
                refresh();
            done(result.succeeded() ? QString() : result.failureReason(QStringLiteral("pactl")));
        });
}

void PactlOutputVolume::startMonitoring()
{
    if (m_monitoring)
        return;
    m_monitoring = true;
    ++m_generation;
    subscribe();
    refresh();
}

void PactlOutputVolume::stopMonitoring()
{
    m_monitoring = false;
    ++m_generation;
    m_resubscribe.cancel();
    m_last.reset();
    if (!m_events)
        return;
    m_events->disconnect(this);
    m_events->kill();
    m_events->waitForFinished(kStopWaitMs);
    delete m_events;
    m_events = nullptr;
}

void PactlOutputVolume::subscribe()
{
    delete m_events;
    m_events = new QProcess(this);
    connect(m_events, &QProcess::readyReadStandardOutput, this, &PactlOutputVolume::readEvents);
    connect(m_events, &QProcess::finished, this, &PactlOutputVolume::eventsEnded);
    connect(m_events, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        // Without pactl there is nothing to retry: the volume simply stays unknown.
        logOnce(
            m_watchTroubleLogged,
            QStringLiteral("Norva music: cannot watch the volume (pactl: %1)").arg(m_events->errorString()));
    });
    m_events->setStandardInputFile(QProcess::nullDevice());
    m_events->setStandardErrorFile(QProcess::nullDevice());
    m_events->start(m_program, {QStringLiteral("subscribe")});
}

void PactlOutputVolume::readEvents()
{
    bool touchesTheSink = false;
    while (m_events->canReadLine()) {
        const QByteArray line = m_events->readLine();
        // "Event 'change' on sink #0"; "on server" when the default sink moves. Sink inputs (a
        // program's own stream) leave the device's volume alone.
        touchesTheSink = touchesTheSink || line.contains(" on sink #") || line.contains(" on server");
    }
    if (touchesTheSink)
        refresh();
}

void PactlOutputVolume::eventsEnded()
{
    logOnce(m_watchTroubleLogged,
            QStringLiteral("Norva music: the volume watch ended (%1), trying again in %2 s")
                .arg(m_events->exitStatus() == QProcess::CrashExit
                         ? QStringLiteral("pactl crashed")
                         : QStringLiteral("pactl exited with %1").arg(m_events->exitCode()))
                .arg(m_retryDelay.count()));
    m_resubscribe = m_clock.after(m_retryDelay, [this] {
        if (!m_monitoring)
            return;
        subscribe();
        refresh();
    });
    m_retryDelay = std::min(m_retryDelay * 2, longestResubscribeDelay);
}

void PactlOutputVolume::refresh()
{
    if (m_refreshing) {
        m_refreshAgain = true;
        return;
    }
    m_refreshing = true;
    const QString program = m_program;
    const quint64 generation = m_generation;
    runOffMain<Outcome>(
        this,
        [program] {
            const ProcessResult volume =
                runProcess(program, {QStringLiteral("get-sink-volume"), kDefaultSink}, {}, timeoutMs);
            if (!volume.succeeded())
                return Outcome{std::nullopt, volume.failureReason(QStringLiteral("pactl"))};
            const ProcessResult mute =
                runProcess(program, {QStringLiteral("get-sink-mute"), kDefaultSink}, {}, timeoutMs);
            const auto level = parseLevel(volume.output);
            const auto muted = mute.succeeded() ? parseMuted(mute.output) : std::nullopt;
            if (!level || !muted)
                return Outcome{std::nullopt, QStringLiteral("pactl gave no level")};
            return Outcome{Reading{*level, *muted}, {}};
        },
        [this, generation](Outcome outcome) {
            m_refreshing = false;
            if (generation != m_generation)
                return;
            if (m_refreshAgain) {
                m_refreshAgain = false;
                refresh();
            }
            if (!outcome.reading) {
                logOnce(m_readTroubleLogged,
                        QStringLiteral("Norva music: reading the volume failed (%1)").arg(outcome.failure));
                return;
            }
            m_readTroubleLogged = m_watchTroubleLogged = false; // the server answers again
            m_retryDelay = resubscribeDelay;
            if (m_last == outcome.reading)
                return;
            m_last = outcome.reading;
            emit changed(m_last->level, m_last->muted);
        });
}

void PactlOutputVolume::logOnce(bool& logged, const QString& line)
{
    if (!std::exchange(logged, true))
        logLine(line);
}

} // namespace norva
