#include "media/MediaRemoteAdapterBackend.h"

#include "app/Background.h"
#include "app/JsonNumber.h"
#include "app/Log.h"
#include "app/ProcessRun.h"
#include "media/MediaPlatform.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QJsonDocument>

#include <cmath>

namespace norva {
namespace {

QString text(const QJsonObject& state, const QString& key)
{
    const QJsonValue value = state.value(key);
    return value.isString() ? value.toString() : QString();
}

std::optional<double> secondsFrom(const QJsonObject& state, const QString& microsKey,
                                  const QString& secondsKey)
{
    if (const auto micros = jsonNumber(state.value(microsKey)))
        return *micros / 1'000'000.0;
    return jsonNumber(state.value(secondsKey));
}

QString artworkKeyOf(const QString& base64)
{
    if (base64.isEmpty())
        return {};
    return QString::fromLatin1(
        QCryptographicHash::hash(base64.toLatin1(), QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace

QStringList MediaRemoteAdapterBackend::Locator::defaultFolders()
{
    const QString appDir = QCoreApplication::applicationDirPath();
    return QStringList{appDir} + Platform::mediaAdapterFolders(appDir);
}

std::optional<AdapterCommand> MediaRemoteAdapterBackend::Locator::locate(const QStringList& folders)
{
    for (const QString& folder : folders) {
        if (auto command = Platform::mediaAdapterIn(folder))
            return command;
    }
    return std::nullopt;
}

MediaRemoteAdapterBackend::MediaRemoteAdapterBackend(Clock& clock, AdapterCommand command, QObject* parent)
    : QObject(parent), m_clock(clock), m_command(std::move(command))
{}

MediaRemoteAdapterBackend::~MediaRemoteAdapterBackend()
{
    stop();
}

void MediaRemoteAdapterBackend::start(MediaSink sink)
{
    m_sink = std::move(sink);
    m_running = true;
    m_restarts = 0;
    spawn();
}

void MediaRemoteAdapterBackend::stop()
{
    m_running = false;
    m_restartWork.cancel();
    if (m_process) {
        // Disconnect first: an end we cause is not a death to restart from.
        m_process->disconnect(this);
        m_process->kill();
        m_process->waitForFinished(1000);
        m_process.reset();
    }
}

bool MediaRemoteAdapterBackend::isStreaming() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

void MediaRemoteAdapterBackend::spawn()
{
    if (!m_running)
        return;
    m_buffer.clear();
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::SeparateChannels);
    m_process->setStandardErrorFile(QProcess::nullDevice());
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this,
            [this] { ingest(m_process->readAllStandardOutput()); });
    connect(m_process.get(), &QProcess::finished, this, &MediaRemoteAdapterBackend::onStreamEnded);
    connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        logLine(QStringLiteral("Norva music: starting the media adapter failed (%1 could not be started)")
                    .arg(m_command.program));
        m_process.release()->deleteLater();
        fail();
    });
    m_startedAt = m_clock.now();
    m_process->start(m_command.program, m_command.leadingArguments +
                                            QStringList{QStringLiteral("stream"), QStringLiteral("--micros"),
                                                        QStringLiteral("--debounce=100")});
}

void MediaRemoteAdapterBackend::onStreamEnded(int exitCode, QProcess::ExitStatus status)
{
    if (m_process) {
        // A last line may still sit in the pipe.
        ingest(m_process->readAllStandardOutput());
        m_process.release()->deleteLater();
    }
    if (!m_running)
        return;
    const double lived = m_clock.secondsSince(m_startedAt);
    if (lived > settledLife)
        m_restarts = 0;
    const bool cleanEnd = status == QProcess::CrashExit || exitCode == 0;
    const QString how = status == QProcess::CrashExit ? QStringLiteral("ended by a signal")
                                                      : QStringLiteral("exited with status %1").arg(exitCode);
    if (cleanEnd && lived > youngDeath && m_restarts < maxQuickRestarts) {
        ++m_restarts;
        logLine(QStringLiteral("Norva music: the media adapter stopped (it %1 after %2 s), starting it again")
                    .arg(how)
                    .arg(std::lround(lived)));
        m_restartWork = m_clock.after(Seconds(restartDelay), [this] { spawn(); });
        return;
    }
    logLine(
        QStringLiteral("Norva music: the media adapter is given up (it %1 after %2 s, %3 restarts before)")
            .arg(how)
            .arg(std::lround(lived))
            .arg(m_restarts));
    fail();
}

void MediaRemoteAdapterBackend::fail()
{
    m_running = false;
    m_restartWork.cancel();
    if (m_sink.onFailure)
        m_sink.onFailure();
}

void MediaRemoteAdapterBackend::ingest(const QByteArray& bytes)
{
    m_buffer.append(bytes);
    qsizetype end;
    while ((end = m_buffer.indexOf('\n')) >= 0) {
        const QByteArray line = m_buffer.left(end);
        m_buffer.remove(0, end + 1);
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(line, &error);
        if (error.error != QJsonParseError::NoError || !document.isObject())
            continue; // a broken line is dropped; the next one carries on
        const QJsonObject object = document.object();
        if (object.value(QStringLiteral("type")).toString() != QLatin1String("data"))
            continue;
        apply(object.value(QStringLiteral("payload")).toObject(),
              object.value(QStringLiteral("diff")).toBool());
    }
}

void MediaRemoteAdapterBackend::apply(const QJsonObject& payload, bool isDiff)
{
    if (isDiff) {
        for (auto it = payload.begin(); it != payload.end(); ++it)
            m_state.insert(it.key(), it.value());
    } else {
        m_state = payload;
    }
    publish();
}

MediaSnapshot MediaRemoteAdapterBackend::snapshotFrom(const QJsonObject& state, const QDateTime& now)
{
    MediaSnapshot snapshot;
    snapshot.hasTrack = state.value(QStringLiteral("title")).isString();
    snapshot.title = text(state, QStringLiteral("title"));
    snapshot.artist = text(state, QStringLiteral("artist"));
    snapshot.album = text(state, QStringLiteral("album"));
    snapshot.isPlaying = state.value(QStringLiteral("playing")).toBool(false);
    QString bundle = text(state, QStringLiteral("bundleIdentifier"));
    if (bundle.isEmpty())
        bundle = text(state, QStringLiteral("parentApplicationBundleIdentifier"));
    if (!bundle.isEmpty())
        snapshot.bundleIdentifier = bundle;
    snapshot.elapsed = secondsFrom(state, QStringLiteral("elapsedTimeMicros"), QStringLiteral("elapsedTime"));
    snapshot.duration = secondsFrom(state, QStringLiteral("durationMicros"), QStringLiteral("duration"));
    snapshot.playbackRate = jsonNumber(state.value(QStringLiteral("playbackRate")));
    if (const auto micros = jsonNumber(state.value(QStringLiteral("timestampEpochMicros"))))
        snapshot.timestamp = QDateTime::fromMSecsSinceEpoch(std::llround(*micros / 1000.0), Qt::UTC);
    else
        snapshot.timestamp = now;
    snapshot.artworkKey = artworkKeyOf(text(state, QStringLiteral("artworkData")));
    return snapshot;
}

void MediaRemoteAdapterBackend::publish()
{
    MediaUpdate update;
    update.snapshot = snapshotFrom(m_state, m_clock.now());
    if (update.snapshot.artworkKey != m_artworkKey) {
        // Handed on only when it changed: a diff of the position keeps the held picture.
        m_artworkKey = update.snapshot.artworkKey;
        update.artworkChanged = true;
        update.artworkData = QByteArray::fromBase64(text(m_state, QStringLiteral("artworkData")).toLatin1());
    }
    if (m_sink.onUpdate)
        m_sink.onUpdate(update);
}

void MediaRemoteAdapterBackend::send(MediaCommand command)
{
    runOneShot({QStringLiteral("send"), QString::number(adapterCode(command))},
               QStringLiteral("sending a command"));
}

void MediaRemoteAdapterBackend::seek(double seconds)
{
    if (!std::isfinite(seconds))
        return;
    const auto micros = static_cast<qint64>(std::max(0.0, seconds) * 1'000'000.0);
    runOneShot({QStringLiteral("seek"), QString::number(micros)}, QStringLiteral("seeking"));
}

void MediaRemoteAdapterBackend::runOneShot(const QStringList& arguments, const QString& what)
{
    const AdapterCommand command = m_command;
    runOffMain<ProcessResult>(
        this,
        [command, arguments] {
            return runProcess(command.program, command.leadingArguments + arguments, {}, oneShotTimeoutMs);
        },
        [what](ProcessResult result) {
            if (!result.succeeded())
                logLine(QStringLiteral("Norva music: %1 through the media adapter failed (%2)")
                            .arg(what, result.failureReason(QStringLiteral("the adapter"))));
        });
}

} // namespace norva
