#pragma once

#include <QObject>
#include <QString>

namespace norva {

class SettingsStore;

// How long paused music keeps its place on the closed notch.
enum class KeepPaused { tenSeconds = 10, thirtySeconds = 30, sixtySeconds = 60, never = 0 };

// The music's own preferences, read and written through the settings store: how long paused
// music stays, whether a new song peeks, whether scrolling over the notch sets the volume, and
// whether volume changes show on the notch. Tells its own changes; the notch's motion setting is
// followed too, since the playing bars stand still with reduced motion.
class MusicSettings : public QObject {
    Q_OBJECT
public:
    static const QString kKeepPausedKey;     // "music.keepPaused.v1": 10, 30, 60 or 0 (never) seconds
    static const QString kAutoHidePausedKey; // "autoHidePausedMedia": the older on/off form of it
    static const QString kSongPeekKey;       // "music.songPeek.v1", on when absent
    static const QString kScrollVolumeKey;   // "music.scrollVolume.v1", on when absent
    static const QString kVolumeChangesKey;  // "replaceSystemHUD", off when absent

    explicit MusicSettings(SettingsStore& store, QObject* parent = nullptr);

    KeepPaused keepPaused() const { return keepPausedIn(m_store); }
    static KeepPaused keepPausedIn(const SettingsStore& store);
    void setKeepPaused(KeepPaused keep);
    bool songPeek() const;
    bool scrollVolume() const;
    bool showVolumeChanges() const;
    bool reducedMotion() const;

signals:
    void keepPausedChanged();
    void songPeekChanged();
    void scrollVolumeChanged();
    void showVolumeChangesChanged();
    void reducedMotionChanged();

private:
    SettingsStore& m_store;
};

} // namespace norva
