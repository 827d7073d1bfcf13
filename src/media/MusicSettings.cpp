#include "media/MusicSettings.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"

namespace norva {

const QString MusicSettings::kKeepPausedKey = QStringLiteral("music.keepPaused.v1");
const QString MusicSettings::kAutoHidePausedKey = QStringLiteral("autoHidePausedMedia");
const QString MusicSettings::kSongPeekKey = QStringLiteral("music.songPeek.v1");
const QString MusicSettings::kScrollVolumeKey = QStringLiteral("music.scrollVolume.v1");
const QString MusicSettings::kVolumeChangesKey = QStringLiteral("replaceSystemHUD");

MusicSettings::MusicSettings(SettingsStore& store, QObject* parent) : QObject(parent), m_store(store)
{
    const QStringList keys{kKeepPausedKey,   kAutoHidePausedKey, kSongPeekKey,
                           kScrollVolumeKey, kVolumeChangesKey,  SettingsKeys::notchMotion};
    m_store.follow(keys, this, [this](const QString& key) {
        if (key == kKeepPausedKey || key == kAutoHidePausedKey)
            emit keepPausedChanged();
        else if (key == kSongPeekKey)
            emit songPeekChanged();
        else if (key == kScrollVolumeKey)
            emit scrollVolumeChanged();
        else if (key == kVolumeChangesKey)
            emit showVolumeChangesChanged();
        else
            emit reducedMotionChanged();
    });
}

KeepPaused MusicSettings::keepPausedIn(const SettingsStore& store)
{
    const auto stored = store.storedChecked(
        kKeepPausedKey,
        [](const QVariant& raw) {
            const double seconds = raw.toDouble();
            return SettingsStore::isNumber(raw) &&
                   (seconds == 10 || seconds == 30 || seconds == 60 || seconds == 0);
        },
        QStringLiteral("10, 30, 60 or 0 seconds"));
    if (stored)
        return static_cast<KeepPaused>(static_cast<int>(stored->toDouble()));
    // Before the choice of seconds there was only on (30 s) or off.
    return store.flag(kAutoHidePausedKey, true) ? KeepPaused::thirtySeconds : KeepPaused::never;
}

void MusicSettings::setKeepPaused(KeepPaused keep)
{
    m_store.write(qint64(static_cast<int>(keep)), kKeepPausedKey);
}

bool MusicSettings::songPeek() const
{
    return m_store.flag(kSongPeekKey, true);
}

bool MusicSettings::scrollVolume() const
{
    return m_store.flag(kScrollVolumeKey, true);
}

bool MusicSettings::showVolumeChanges() const
{
    return m_store.flag(kVolumeChangesKey, false);
}

bool MusicSettings::reducedMotion() const
{
    return m_store.reducedMotion();
}

} // namespace norva
