#include "media/MusicManager.h"

#include "app/Background.h"
#include "app/Log.h"
#include "media/AlbumTintReader.h"
#include "media/LyricsManager.h"
#include "media/MediaPlatform.h"
#include "media/MediaRemoteAdapterBackend.h"
#include "media/MusicSettings.h"
#include "media/ScriptingBackend.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace norva {

MusicManager::Backends MusicManager::systemBackends(Clock& clock)
{
    Backends backends;
    backends.adapter = [&clock]() -> std::unique_ptr<MediaBackend> {
        const auto command = MediaRemoteAdapterBackend::Locator::locate();
        if (!command)
            return nullptr;
        return std::make_unique<MediaRemoteAdapterBackend>(clock, *command);
    };
    backends.scripting = [&clock]() -> std::unique_ptr<MediaBackend> {
        ScriptRunner runner;
        if (!runner.isAvailable())
            return nullptr;
        return std::make_unique<ScriptingBackend>(clock, runner);
    };
    return backends;
}

MusicManager::MusicManager(Clock& clock, MusicSettings* settings, Backends backends, LyricsManager* lyrics,
                           std::unique_ptr<OutputVolume> outputVolume, QObject* parent)
    : QObject(parent), m_clock(clock), m_settings(settings), m_backends(std::move(backends)),
      m_lyrics(lyrics), m_outputVolume(std::move(outputVolume)), m_songPeek(clock)
{
    connect(&m_songPeek, &SongPeek::showingChanged, this, &MusicManager::songPeekingChanged);
    if (m_outputVolume)
        connect(m_outputVolume.get(), &OutputVolume::changed, this, [this](double level, bool muted) {
            if (std::exchange(m_volumeKnown, true) && level == m_volume && muted == m_volumeMuted)
                return;
            m_volume = level;
            m_volumeMuted = muted;
            emit volumeChanged();
        });
    if (m_settings) {
        connect(m_settings, &MusicSettings::reducedMotionChanged, this, &MusicManager::reducesMotionChanged);
        connect(m_settings, &MusicSettings::keepPausedChanged, this, &MusicManager::updateActiveSession);
    }
}

MusicManager::~MusicManager()
{
    stop();
}

void MusicManager::start()
{
    if (m_source != Source::stopped)
        return;
    if (auto adapter = m_backends.adapter ? m_backends.adapter() : nullptr) {
        startBackend(std::move(adapter), Source::adapter);
        return;
    }
    logLine(QStringLiteral("Norva: media adapter not found, using AppleScript backend"));
    switchToScripting();
}

void MusicManager::stop()
{
    ++m_generation;
    if (m_backend) {
        m_backend->stop();
        m_backend.reset();
    }
    m_source = Source::stopped;
    stopVolumeMonitoring();
    m_keepCheck.cancel();
    m_positionTick.cancel();
    m_noticeWork.cancel();
}

void MusicManager::startBackend(std::unique_ptr<MediaBackend> backend, Source source)
{
    ++m_generation;
    m_backend = std::move(backend);
    m_source = source;
    m_backend->start(sink());
}

MediaSink MusicManager::sink()
{
    const quint64 generation = m_generation;
    MediaSink sink;
    sink.onUpdate = [this, generation](const MediaUpdate& update) {
        if (generation == m_generation)
            take(update);
    };
    sink.onTrouble = [this, generation](const MusicTrouble& trouble) {
        if (generation == m_generation)
            noteTrouble(trouble);
    };
    sink.onFailure = [this, generation] {
        if (generation != m_generation || m_source != Source::adapter)
            return;
        // The failing backend is on the call stack: hand over once it has returned.
        QMetaObject::invokeMethod(
            this,
            [this, generation] {
                if (generation != m_generation)
                    return;
                logLine(QStringLiteral("Norva: media adapter unavailable, falling back to AppleScript"));
                m_backend->stop();
                m_backend.reset();
                switchToScripting();
            },
            Qt::QueuedConnection);
    };
    return sink;
}

void MusicManager::switchToScripting()
{
    if (auto scripting = m_backends.scripting ? m_backends.scripting() : nullptr) {
        startBackend(std::move(scripting), Source::scripting);
        return;
    }
    ++m_generation;
    m_source = Source::none;
    logLine(
        QStringLiteral("Norva music: no player can be asked what plays (osascript is not on this system)"));
    MediaUpdate nothing;
    nothing.snapshot.timestamp = m_clock.now();
    nothing.artworkChanged = m_art.hasBitmap();
    take(nothing);
}

void MusicManager::take(const MediaUpdate& update)
{
    const MediaSnapshot previous = m_snapshot;
    const MediaSnapshot& next = update.snapshot;
    const QString key = next.trackKey();
    const bool newTrack = key != previous.trackKey();
    m_snapshot = next;

    if (next.hasTrack && !m_dismissedTrackKey.isEmpty() && key != m_dismissedTrackKey)
        m_dismissedTrackKey.clear();
    if (next.isPlaying) {
        m_pausedWithdrawn = false;
        m_keepCheck.cancel();
    } else if (next.hasTrack && (previous.isPlaying || newTrack)) {
        m_pausedWithdrawn = false;
        scheduleKeepCheck();
    }

    updatePositionTick();

    if (update.artworkChanged)
        takeArtwork(update);
    if (!(previous == next)) {
        emit snapshotChanged();
        emit positionChanged();
    }
    bool peeks = false;
    if (newTrack) {
        prefetchLyrics();
        if (next.hasTrack && key != m_peekedTrackKey && (!m_settings || m_settings->songPeek())) {
            m_peekedTrackKey = key;
            peeks = true;
        }
    }
    updateActiveSession();
    // Only a song that has the notch peeks: a dismissed one stays out of sight.
    if (peeks && m_active)
        m_songPeek.show();
}

void MusicManager::followPosition(bool following)
{
    m_positionFollowers = std::max(0, m_positionFollowers + (following ? 1 : -1));
    updatePositionTick();
    if (following)
        emit positionChanged(); // the song moved on while nothing showed where it is
}

// Nothing on the closed notch shows the position, so a playing song wakes Norva for it only while
// a view follows it.
void MusicManager::updatePositionTick()
{
    const bool ticks = m_snapshot.isPlaying && m_positionFollowers > 0;
    if (ticks && !m_positionTick.isArmed())
        m_positionTick = m_clock.every(Seconds(positionTick), [this] { emit positionChanged(); });
    else if (!ticks)
        m_positionTick.cancel();
}

void MusicManager::takeArtwork(const MediaUpdate& update)
{
    const QString key = m_snapshot.artworkKey;
    if (update.artworkData.isEmpty())
        return showArtwork({});
    if (const PreparedArtwork* kept = key.isEmpty() ? nullptr : m_preparedCovers.object(key))
        return showArtwork(*kept);
    // Until the new cover is decoded, the old one would belong to another song.
    showArtwork({});
    const QByteArray bytes = update.artworkData;
    runOffMain<PreparedArtwork>(
        this, [bytes] { return PreparedArtwork::from(bytes); },
        [this, key](PreparedArtwork art) {
            if (key != m_snapshot.artworkKey)
                return; // the artwork changed again meanwhile
            if (!art.hasBitmap()) {
                logLine(QStringLiteral(
                    "Norva music: reading the album colour failed (the artwork has no bitmap)"));
                logLine(
                    QStringLiteral("Norva music: making the album wash failed (the artwork has no bitmap)"));
            } else if (!key.isEmpty()) {
                m_preparedCovers.insert(key, new PreparedArtwork(art));
            }
            showArtwork(art);
        });
}

void MusicManager::showArtwork(const PreparedArtwork& art)
{
    m_art = art;
    m_tint = art.accent ? AlbumTintReader::tint(*art.accent) : QColor();
    emit artworkChanged();
    emit albumColoursChanged();
}

void MusicManager::noteTrouble(const MusicTrouble& trouble)
{
    if (trouble == m_trouble)
        return;
    m_trouble = trouble;
    logLine(QStringLiteral("Norva music: a player could not be asked (%1)").arg(trouble.text()));
    emit troubleChanged();
}

void MusicManager::showNotice(const QString& text)
{
    m_notice = text;
    emit noticeChanged();
    m_noticeWork = m_clock.after(Seconds(noticeDuration), [this] {
        m_notice.clear();
        emit noticeChanged();
    });
}

void MusicManager::scheduleKeepCheck()
{
    const KeepPaused keep = m_settings ? m_settings->keepPaused() : KeepPaused::thirtySeconds;
    if (keep == KeepPaused::never) {
        m_keepCheck.cancel(); // a paused session is kept for as long as it stays paused
        return;
    }
    m_keepCheck = m_clock.after(Seconds(static_cast<int>(keep)), [this] { checkStale(); });
}

void MusicManager::checkStale()
{
    if (m_snapshot.hasTrack && !m_snapshot.isPlaying) {
        m_pausedWithdrawn = true;
        updateActiveSession();
    }
}

void MusicManager::updateActiveSession()
{
    const bool keepsPaused =
        !m_pausedWithdrawn || (m_settings && m_settings->keepPaused() == KeepPaused::never);
    const bool active = m_snapshot.hasTrack && m_snapshot.trackKey() != m_dismissedTrackKey &&
                        (m_snapshot.isPlaying || keepsPaused);
    if (active == m_active)
        return;
    m_active = active;
    if (!m_active)
        m_songPeek.end();
    emit activeSessionChanged();
}

void MusicManager::dismissCurrent()
{
    if (!m_snapshot.hasTrack)
        return;
    m_dismissedTrackKey = m_snapshot.trackKey();
    updateActiveSession();
}

void MusicManager::prefetchLyrics()
{
    if (!m_lyrics)
        return;
    if (!m_snapshot.hasTrack) {
        m_lyrics->clear();
        return;
    }
    m_lyrics->load(m_snapshot.title, m_snapshot.artist, m_snapshot.album, m_snapshot.duration);
}

void MusicManager::send(MediaCommand command)
{
    if (m_backend)
        m_backend->send(command);
}

void MusicManager::seek(double seconds)
{
    if (m_backend && std::isfinite(seconds))
        m_backend->seek(seconds);
}

void MusicManager::setVolume(double level)
{
    if (!std::isfinite(level))
        return;
    const double clamped = std::clamp(level, 0.0, 1.0);
    const auto done = [this, clamped](const QString& failure) {
        if (m_volumeTarget == clamped)
            m_volumeTarget.reset();
        if (!failure.isEmpty()) {
            m_volumeTarget.reset();
            logLine(QStringLiteral("Norva music: setting the volume failed (%1)").arg(failure));
            showNotice(QStringLiteral("Couldn't change the volume."));
            return;
        }
        if (std::exchange(m_volumeKnown, true) && m_volume == clamped)
            return;
        m_volume = clamped;
        emit volumeChanged();
    };
    if (!m_outputVolume)
        return done(QStringLiteral("no volume control on this system"));
    m_outputVolume->set(clamped, done);
}

void MusicManager::scrollVolume(double notches)
{
    if (!std::isfinite(notches) || notches == 0 || (m_settings && !m_settings->scrollVolume()))
        return;
    // Steps from a level Norva only guesses would jump the sound; until the level is heard, the
    // wheel leaves it alone.
    if (!m_volumeKnown) {
        if (!std::exchange(m_unknownVolumeLogged, true))
            logLine(QStringLiteral("Norva music: the volume is not known yet, so scrolling leaves it alone"));
        return;
    }
    const double from = m_volumeTarget.value_or(m_volume);
    // Whole percents, as the sound server keeps them, so the steps add up without drift.
    const double to = std::clamp(std::round((from + notches * volumeScrollStep) * 100) / 100, 0.0, 1.0);
    emit volumeScrolled(to);
    if (to == from)
        return;
    m_volumeTarget = to;
    setVolume(to);
}

void MusicManager::startVolumeMonitoring()
{
    if (m_outputVolume)
        m_outputVolume->startMonitoring();
}

void MusicManager::stopVolumeMonitoring()
{
    if (m_outputVolume)
        m_outputVolume->stopMonitoring();
}

bool MusicManager::reducesMotion() const
{
    return m_settings && m_settings->reducedMotion();
}

QObject* MusicManager::lyricsObject() const
{
    return m_lyrics;
}

QStringList MusicManager::launchablePlayers() const
{
    return Platform::launchablePlayers();
}

bool MusicManager::launch(const QString& name)
{
    if (!Platform::launchablePlayers().contains(name))
        return false;
    const bool started = Platform::startPlayer(name);
    if (!started)
        logLine(QStringLiteral("Norva music: opening %1 failed (it could not be started)").arg(name));
    return started;
}

QString MusicManager::sourceAppName() const
{
    return appNameFor(m_snapshot.bundleIdentifier.value_or(QString()));
}

QString MusicManager::appNameFor(const QString& bundleIdentifier)
{
    static const QHash<QString, QString> known{
        {QStringLiteral("com.spotify.client"), QStringLiteral("Spotify")},
        {QStringLiteral("com.apple.Music"), QStringLiteral("Music")},
        {QStringLiteral("com.apple.Safari"), QStringLiteral("Safari")},
        {QStringLiteral("com.google.Chrome"), QStringLiteral("Chrome")},
        {QStringLiteral("org.mozilla.firefox"), QStringLiteral("Firefox")},
        {QStringLiteral("vlc"), QStringLiteral("VLC")},
        {QStringLiteral("mpv"), QStringLiteral("mpv")},
    };
    if (bundleIdentifier.isEmpty())
        return {};
    if (const auto found = known.constFind(bundleIdentifier); found != known.constEnd())
        return *found;
    // Reverse-domain identifiers and desktop entries both end in the program's own name.
    QString last = bundleIdentifier.section(QLatin1Char('.'), -1);
    if (!last.isEmpty())
        last[0] = last[0].toUpper();
    return last;
}

} // namespace norva
