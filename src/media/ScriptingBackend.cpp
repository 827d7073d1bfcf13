#include "media/ScriptingBackend.h"

#include "app/Background.h"
#include "app/Log.h"

#include <QNetworkReply>
#include <QRegularExpression>

#include <cmath>

namespace norva {
namespace {

const QChar kUnitSeparator(0x1f);
constexpr int kSpotifyFieldCount = 8;
constexpr int kMusicFieldCount = 7;

std::optional<double> decimal(QString text)
{
    // Players answer in the system's locale, so "215,5" means 215.5.
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

ScriptingBackend::ScriptingBackend(Clock& clock, ScriptRunner runner, QObject* parent)
    : QObject(parent), m_clock(clock), m_runner(std::move(runner))
{}

ScriptingBackend::~ScriptingBackend()
{
    stop();
}

QString ScriptingBackend::name(Player player)
{
    return player == Player::spotify ? QStringLiteral("Spotify") : QStringLiteral("Music");
}

QString ScriptingBackend::bundleIdentifier(Player player)
{
    return player == Player::spotify ? QStringLiteral("com.spotify.client")
                                     : QStringLiteral("com.apple.Music");
}

QString ScriptingBackend::pollScript(Player player)
{
    const QString idField = player == Player::spotify ? QStringLiteral("((id of t) as text)")
                                                      : QStringLiteral("((persistent ID of t) as text)");
    const QString artworkField =
        player == Player::spotify ? QStringLiteral(" & sep & (artwork url of t as text)") : QString();
    return QStringLiteral("tell application \"") + name(player) +
           QStringLiteral(
               "\"\n\tset sep to character id 31\n\ttry\n\t\tif player state is stopped then return "
               "\"stopped\"\n\t\tset t to current track\n\t\tset st to (player state as text)\n\t\treturn "
               "st & sep & (name of t as text) & sep & (artist of t as text) & sep & (album of t as "
               "text) & sep & (player position as text) & sep & ((duration of t) as text) & sep & ") +
           idField + artworkField +
           QStringLiteral(
               "\n\ton error errText number errNumber\n\t\tif errNumber is -1743 or errNumber is -1744 "
               "then error errText number errNumber\n\t\treturn \"stopped\"\n\tend try\nend tell");
}

QString ScriptingBackend::artworkScript()
{
    return QStringLiteral(
        "tell application \"Music\"\n\ttry\n\t\tset t to current track\n\t\tif (count of artworks "
        "of t) > 0 then return (raw data of artwork 1 of t)\n\ton error errText number "
        "errNumber\n\t\tif errNumber is -1743 or errNumber is -1744 then error errText number "
        "errNumber\n\tend try\n\treturn \"\"\nend tell");
}

QString ScriptingBackend::commandScript(Player player, MediaCommand command)
{
    return QStringLiteral("tell application \"%1\" to %2").arg(name(player), scriptVerb(command));
}

QString ScriptingBackend::seekScript(Player player, double seconds)
{
    return QStringLiteral("tell application \"%1\" to set player position to ").arg(name(player)) +
           QString::number(seconds, 'g', 10);
}

ScriptingBackend::Reading ScriptingBackend::parseReply(Player player, const QString& reply,
                                                       const QDateTime& now)
{
    Reading reading;
    reading.snapshot.timestamp = now;
    const QString trimmed = reply.trimmed();
    if (trimmed.isEmpty() || trimmed == QLatin1String("stopped"))
        return reading;
    const QStringList fields = reply.split(kUnitSeparator);
    const int expected = player == Player::spotify ? kSpotifyFieldCount : kMusicFieldCount;
    if (fields.size() < expected)
        return reading;
    auto field = [&fields](int index) { return fields.at(index).trimmed(); };
    MediaSnapshot& snapshot = reading.snapshot;
    snapshot.hasTrack = true;
    snapshot.isPlaying = field(0) == QLatin1String("playing");
    snapshot.title = fields.at(1);
    snapshot.artist = fields.at(2);
    snapshot.album = fields.at(3);
    snapshot.elapsed = decimal(field(4));
    snapshot.duration = decimal(field(5));
    // Spotify counts the duration in milliseconds, Music in seconds.
    if (snapshot.duration && player == Player::spotify)
        *snapshot.duration /= 1000.0;
    snapshot.playbackRate = 1.0;
    snapshot.bundleIdentifier = bundleIdentifier(player);
    reading.trackId = field(6);
    if (player == Player::spotify)
        reading.artworkUrl = field(7);
    return reading;
}

QByteArray ScriptingBackend::parseRawData(const QString& reply)
{
    static const QRegularExpression pattern(QStringLiteral("«data \\w{4}([0-9A-Fa-f]+)»"));
    const auto match = pattern.match(reply);
    return match.hasMatch() ? QByteArray::fromHex(match.captured(1).toLatin1()) : QByteArray();
}

void ScriptingBackend::start(MediaSink sink)
{
    m_sink = std::move(sink);
    m_running = true;
    // The players' change notifications (macOS distributed notifications) call poll() directly;
    // the timer covers every change they do not announce.
    m_pollTimer = m_clock.every(Seconds(pollInterval), [this] { poll(); });
    poll();
}

void ScriptingBackend::stop()
{
    m_running = false;
    m_pollTimer.cancel();
    m_nudgeWork.cancel();
}

void ScriptingBackend::poll()
{
    if (!m_running)
        return;
    if (m_pollInFlight) {
        m_pollAgain = true;
        return;
    }
    m_pollInFlight = true;
    const ScriptRunner runner = m_runner;
    runOffMain<QList<ProcessResult>>(
        this,
        [runner] {
            QList<ProcessResult> results;
            for (Player player : {Player::spotify, Player::music})
                results << runner.runNow(pollScript(player), pollTimeoutMs);
            return results;
        },
        [this](QList<ProcessResult> results) {
            m_pollInFlight = false;
            if (!m_running)
                return;
            takePoll(results);
            if (m_pollAgain) {
                m_pollAgain = false;
                poll();
            }
        });
}

void ScriptingBackend::nudge()
{
    m_nudgeWork = m_clock.after(Seconds(nudgeDelay), [this] { poll(); });
}

void ScriptingBackend::takePoll(const QList<ProcessResult>& results)
{
    const QDateTime now = m_clock.now();
    std::optional<std::pair<Player, Reading>> chosen;
    const Player players[] = {Player::spotify, Player::music};
    for (int i = 0; i < results.size() && i < 2; ++i) {
        const ProcessResult& result = results.at(i);
        if (ScriptRunner::isPermissionRefusal(result)) {
            if (m_sink.onTrouble)
                m_sink.onTrouble(MusicTrouble::permission(name(players[i])));
            continue;
        }
        if (!result.succeeded()) {
            if (m_sink.onTrouble)
                m_sink.onTrouble(MusicTrouble::scriptFailed(QString::fromUtf8(result.errorOutput).trimmed(),
                                                            result.exitCode));
            continue;
        }
        Reading reading = parseReply(players[i], QString::fromUtf8(result.output), now);
        if (!reading.snapshot.hasTrack)
            continue;
        // A playing player wins; otherwise the first that holds a track.
        if (!chosen || (reading.snapshot.isPlaying && !chosen->second.snapshot.isPlaying))
            chosen = std::make_pair(players[i], reading);
    }

    MediaUpdate update;
    if (!chosen) {
        update.snapshot.timestamp = now;
        if (!m_trackIdentity.isEmpty() || !m_artworkKey.isEmpty()) {
            m_trackIdentity.clear();
            m_artworkKey.clear();
            update.artworkChanged = true;
        }
    } else {
        const auto& [player, reading] = *chosen;
        m_activePlayer = player;
        update.snapshot = reading.snapshot;
        const QString identity = name(player) + QLatin1Char(':') + reading.trackId;
        if (identity != m_trackIdentity) {
            m_trackIdentity = identity;
            m_artworkKey.clear();
            update.artworkChanged = true;
            fetchArtwork(player, reading);
        }
        update.snapshot.artworkKey = m_artworkKey;
    }
    m_last = update.snapshot;
    if (m_sink.onUpdate)
        m_sink.onUpdate(update);
}

void ScriptingBackend::fetchArtwork(Player player, const Reading& reading)
{
    const QString identity = m_trackIdentity;
    if (player == Player::music) {
        m_runner.run(this, artworkScript(), artworkTimeoutMs, [this, identity](const ProcessResult& result) {
            if (result.succeeded())
                deliverArtwork(identity, parseRawData(QString::fromUtf8(result.output)));
        });
        return;
    }
    const QUrl url(reading.artworkUrl);
    if (!url.isValid() || url.scheme() != QLatin1String("https"))
        return;
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkRequest request(url);
    request.setTransferTimeout(artworkTimeoutMs);
    QNetworkReply* reply = m_network->get(request);
    connect(reply, &QNetworkReply::finished, this, [this, reply, identity] {
        reply->deleteLater();
        if (reply->error() == QNetworkReply::NoError)
            deliverArtwork(identity, reply->readAll());
    });
}

void ScriptingBackend::deliverArtwork(const QString& identity, const QByteArray& data)
{
    // The track may have changed while the artwork was on its way.
    if (!m_running || identity != m_trackIdentity || data.isEmpty())
        return;
    MediaUpdate update;
    m_artworkKey = identity;
    m_last.artworkKey = identity;
    update.snapshot = m_last;
    update.artworkChanged = true;
    update.artworkData = data;
    if (m_sink.onUpdate)
        m_sink.onUpdate(update);
}

void ScriptingBackend::send(MediaCommand command)
{
    const Player player = m_activePlayer.value_or(Player::spotify);
    runCommand(commandScript(player, command),
               QStringLiteral("sending %1 to %2").arg(scriptVerb(command), name(player)));
}

void ScriptingBackend::seek(double seconds)
{
    if (!std::isfinite(seconds))
        return;
    const Player player = m_activePlayer.value_or(Player::spotify);
    runCommand(seekScript(player, std::max(0.0, seconds)), QStringLiteral("seeking in %1").arg(name(player)));
}

void ScriptingBackend::runCommand(const QString& script, const QString& what)
{
    m_runner.run(this, script, commandTimeoutMs, [this, what](const ProcessResult& result) {
        if (!result.succeeded())
            logLine(
                QStringLiteral("Norva music: %1 failed (%2)").arg(what, ScriptRunner::failureText(result)));
        nudge();
    });
}

} // namespace norva
