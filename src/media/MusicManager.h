#pragma once

#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "media/MediaBackend.h"
#include "media/OutputVolume.h"
#include "media/PreparedArtwork.h"
#include "media/SongPeek.h"

#include <QCache>
#include <QColor>
#include <QImage>
#include <QObject>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <functional>
#include <memory>

namespace norva {

class LyricsManager;
class MusicSettings;

// The one source of what plays, for the closed notch's music ears, the music page and the lyrics
// pane. Runs the adapter backend when it is there and falls back to scripting the players once,
// for the rest of the session, when the adapter cannot work.
class MusicManager : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool hasTrack READ hasTrack NOTIFY snapshotChanged)
    Q_PROPERTY(QString title READ title NOTIFY snapshotChanged)
    Q_PROPERTY(QString artist READ artist NOTIFY snapshotChanged)
    Q_PROPERTY(QString album READ album NOTIFY snapshotChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY snapshotChanged)
    Q_PROPERTY(double duration READ durationSeconds NOTIFY snapshotChanged)
    Q_PROPERTY(double displayElapsed READ displayElapsedNow NOTIFY positionChanged)
    Q_PROPERTY(double playbackProgress READ playbackProgressNow NOTIFY positionChanged)
    Q_PROPERTY(QImage artwork READ artwork NOTIFY artworkChanged)
    Q_PROPERTY(QString artworkSource READ artworkSource NOTIFY artworkChanged)
    Q_PROPERTY(QString artworkKey READ artworkKey NOTIFY artworkChanged)
    Q_PROPERTY(QString coverSource READ coverSource NOTIFY artworkChanged)
    Q_PROPERTY(QString sourceAppName READ sourceAppName NOTIFY snapshotChanged)
    Q_PROPERTY(QString sourceAppIcon READ sourceAppIcon NOTIFY snapshotChanged)
    Q_PROPERTY(double volume READ volume NOTIFY volumeChanged)
    Q_PROPERTY(bool volumeMuted READ volumeMuted NOTIFY volumeChanged)
    Q_PROPERTY(bool volumeKnown READ volumeKnown NOTIFY volumeChanged)
    Q_PROPERTY(QColor albumAccentColor READ albumAccentColor NOTIFY albumColoursChanged)
    Q_PROPERTY(QColor albumTint READ albumTint NOTIFY albumColoursChanged)
    Q_PROPERTY(QString albumWash READ albumWashSource NOTIFY albumColoursChanged)
    Q_PROPERTY(QString trouble READ troubleText NOTIFY troubleChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(bool hasActiveSession READ hasActiveSession NOTIFY activeSessionChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY reducesMotionChanged)
    Q_PROPERTY(bool songPeeking READ songPeeking NOTIFY songPeekingChanged)
    Q_PROPERTY(QObject* lyrics READ lyricsObject CONSTANT)
    Q_PROPERTY(QStringList launchablePlayers READ launchablePlayers CONSTANT)

public:
    static MusicManager* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<MusicManager>(); }
    enum class Source { stopped, adapter, scripting, none };

    // Makes the backends; a factory answers nothing when its backend cannot exist here (no
    // adapter found, no osascript on this system).
    struct Backends {
        std::function<std::unique_ptr<MediaBackend>()> adapter;
        std::function<std::unique_ptr<MediaBackend>()> scripting;
    };
    // The adapter found by its locator, and scripting when osascript exists.
    static Backends systemBackends(Clock& clock);

    // Without an `outputVolume`, setting the volume fails with the usual notice.
    MusicManager(Clock& clock, MusicSettings* settings, Backends backends, LyricsManager* lyrics = nullptr,
                 std::unique_ptr<OutputVolume> outputVolume = {}, QObject* parent = nullptr);
    ~MusicManager() override;

    void start();
    void stop();
    Source source() const { return m_source; }

    Q_INVOKABLE void togglePlayPause() { send(MediaCommand::togglePlayPause); }
    Q_INVOKABLE void play() { send(MediaCommand::play); }
    Q_INVOKABLE void pause() { send(MediaCommand::pause); }
    Q_INVOKABLE void nextTrack() { send(MediaCommand::nextTrack); }
    Q_INVOKABLE void previousTrack() { send(MediaCommand::previousTrack); }
    void send(MediaCommand command);
    Q_INVOKABLE void seek(double seconds);
    Q_INVOKABLE void setVolume(double level);
    // A wheel over the notch: `notches` of 120ths of a turn, up is louder. Follows
    // "music.scrollVolume.v1", and several quick notches add up before the first has landed.
    Q_INVOKABLE void scrollVolume(double notches);
    void startVolumeMonitoring();
    void stopVolumeMonitoring();
    Q_INVOKABLE void dismissCurrent();
    // A view that shows the position (the music page's clock, progress and lyrics) follows it while
    // it is there: the position ticks only while at least one does, and catches up as one comes.
    Q_INVOKABLE void followPosition(bool following);
    Q_INVOKABLE bool launch(const QString& player);

    const MediaSnapshot& snapshot() const { return m_snapshot; }
    bool hasTrack() const { return m_snapshot.hasTrack; }
    QString title() const { return m_snapshot.title; }
    QString artist() const { return m_snapshot.artist; }
    QString album() const { return m_snapshot.album; }
    bool isPlaying() const { return m_snapshot.isPlaying; }
    double durationSeconds() const { return m_snapshot.duration.value_or(0.0); }
    std::optional<double> displayElapsed(const QDateTime& at) const { return m_snapshot.displayElapsed(at); }
    double playbackProgress(const QDateTime& at) const { return m_snapshot.playbackProgress(at); }
    double displayElapsedNow() const { return displayElapsed(m_clock.now()).value_or(0.0); }
    double playbackProgressNow() const { return playbackProgress(m_clock.now()); }
    // The cover, small, once it is decoded (off the main thread); null while it is on its way.
    QImage artwork() const { return m_art.picture; }
    QString artworkSource() const { return m_art.pageSource; }
    QString artworkKey() const { return m_snapshot.artworkKey; }
    // The cover at the size the closed notch draws it.
    QString coverSource() const { return m_art.coverSource; }
    QString sourceAppName() const;
    QString sourceAppIcon() const { return m_snapshot.bundleIdentifier.value_or(QString()); }
    double volume() const { return m_volume; }
    bool volumeMuted() const { return m_volumeMuted; }
    bool volumeKnown() const { return m_volumeKnown; }
    QColor albumAccentColor() const { return m_art.accent.value_or(QColor(Qt::white)); }
    QColor albumTint() const { return m_tint; }
    QImage albumWash() const { return m_art.wash; }
    QString albumWashSource() const { return m_art.washSource; }
    const MusicTrouble& trouble() const { return m_trouble; }
    QString troubleText() const { return m_trouble.text(); }
    QString notice() const { return m_notice; }
    bool hasActiveSession() const { return m_active; }
    // A new song shows under the closed notch for a moment (SongPeek).
    bool songPeeking() const { return m_songPeek.showing(); }
    bool reducesMotion() const;
    QString dismissedTrackKey() const { return m_dismissedTrackKey; }
    QObject* lyricsObject() const;
    QStringList launchablePlayers() const;

    static QString appNameFor(const QString& bundleIdentifier);

    static constexpr double positionTick = 0.5; // seconds between position updates while shown playing
    static constexpr double noticeDuration = 4.0;
    static constexpr double volumeScrollStep = 0.05; // per notch of the wheel
    // Covers kept decoded, so going back to a track (or between two players) shows its cover at once.
    static constexpr int preparedCoversKept = 6;

signals:
    void snapshotChanged();
    void positionChanged();
    void artworkChanged();
    void volumeChanged();
    // The person turned the volume by scrolling over the notch; `level` is where it is going.
    void volumeScrolled(double level);
    void albumColoursChanged();
    void troubleChanged();
    void noticeChanged();
    void activeSessionChanged();
    void reducesMotionChanged();
    void songPeekingChanged();

private:
    void startBackend(std::unique_ptr<MediaBackend> backend, Source source);
    void switchToScripting();
    MediaSink sink();
    void take(const MediaUpdate& update);
    void takeArtwork(const MediaUpdate& update);
    void showArtwork(const PreparedArtwork& art);
    void noteTrouble(const MusicTrouble& trouble);
    void showNotice(const QString& text);
    void scheduleKeepCheck();
    void checkStale();
    void updateActiveSession();
    void prefetchLyrics();
    void updatePositionTick();

    Clock& m_clock;
    MusicSettings* m_settings;
    Backends m_backends;
    LyricsManager* m_lyrics;
    std::unique_ptr<OutputVolume> m_outputVolume;
    std::unique_ptr<MediaBackend> m_backend;
    Source m_source = Source::stopped;
    quint64 m_generation = 0; // bumps on every backend change, so late deliveries are dropped
    MediaSnapshot m_snapshot;
    PreparedArtwork m_art;
    QColor m_tint;
    QCache<QString, PreparedArtwork> m_preparedCovers{preparedCoversKept};
    SongPeek m_songPeek;
    MusicTrouble m_trouble;
    QString m_notice;
    double m_volume = 1.0;
    bool m_volumeMuted = false;
    bool m_volumeKnown = false; // heard from the sound server or set by Norva at least once
    bool m_unknownVolumeLogged = false;
    std::optional<double> m_volumeTarget; // where scrolling is taking the volume, until it lands
    bool m_active = false;
    bool m_pausedWithdrawn = false;
    QString m_dismissedTrackKey;
    QString m_peekedTrackKey;
    ScheduledWork m_keepCheck;
    int m_positionFollowers = 0;
    ScheduledWork m_positionTick;
    ScheduledWork m_noticeWork;
};

} // namespace norva
