#pragma once

#include "app/PreferencesDatabase.h"
#include "app/SettingsTypes.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QVariantMap>

#include <optional>

namespace norva {

// The one front of the person's preferences: typed reads with a fixed default, writes, and the
// changes. A change names its key (keyChanged) and is told once, on the main thread, for outside
// changes (another process, a person with an editor) as for the store's own writes; changed()
// follows once per change for listeners that re-read everything. A feature keeps its own keys,
// defaults and clamps in a small settings type of its own and adds its keys with watch().
// A stored value of the wrong type is logged once per key per run and never overwritten by a read.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool openOnHover READ openOnHover WRITE setOpenOnHover NOTIFY changed)
    Q_PROPERTY(double openHoverDelay READ openHoverDelay WRITE setOpenHoverDelay NOTIFY changed)
    Q_PROPERTY(bool showMenuBarIcon READ showMenuBarIcon WRITE setShowMenuBarIcon NOTIFY changed)
    Q_PROPERTY(QString fullscreenGuard READ fullscreenGuard WRITE setFullscreenGuard NOTIFY changed)
    Q_PROPERTY(bool peekOnHover READ peekOnHover WRITE setPeekOnHover NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    Q_PROPERTY(
        bool autoShelfScreenshots READ autoShelfScreenshots WRITE setAutoShelfScreenshots NOTIFY changed)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)

public:
    SettingsStore(PreferencesDatabase& database, QObject* parent = nullptr);
    ~SettingsStore() override;

    // --- generic typed access, used by the named accessors and by the features' own settings ---
    std::optional<bool> storedFlag(const QString& key,
                                   const QString& expected = QStringLiteral("on or off")) const;
    std::optional<double> storedNumber(const QString& key,
                                       const QString& expected = QStringLiteral("a number")) const;
    std::optional<qint64> storedInteger(const QString& key,
                                        const QString& expected = QStringLiteral("a whole number")) const;
    std::optional<QString> storedText(const QString& key,
                                      const QString& expected = QStringLiteral("a text")) const;
    bool flag(const QString& key, bool fallback) const { return storedFlag(key).value_or(fallback); }
    // Every write goes through here: none removes the key.
    void write(const std::optional<QVariant>& value, const QString& key);
    // Adds keys whose outside changes are told (keyChanged, changed); a feature's settings call it.
    void watch(const QStringList& keys);

    // Turns a slider position 0...1 into the hover-open delay in seconds.
    static double hoverDelay(double fraction);
    // Clamps into [lower, upper], snaps to the step counted from lower, rounds, clamps again.
    static double clamp(double value, double lower, double upper, double step);

    // --- shell ---
    bool openOnHover() const;
    void setOpenOnHover(bool on);
    double openHoverDelay() const;
    void setOpenHoverDelay(double seconds);
    bool showMenuBarIcon() const;
    void setShowMenuBarIcon(bool on);
    QString fullscreenGuard() const; // "normal", "longer" or "click"
    void setFullscreenGuard(const QString& value);
    bool hoverHaptics() const;
    bool autoShelfScreenshots() const;
    void setAutoShelfScreenshots(bool on);
    DisplayChoice displayChoice() const;
    void setDisplayChoice(const DisplayChoice& choice);
    bool notesMirrorEnabled() const;
    QString notesMirrorFolder() const;
    bool replaceSystemHUD() const;

    // --- music and notch ---
    std::optional<QString> musicLeft() const;
    std::optional<QString> musicRight() const;
    KeepPaused keepPaused() const;
    void setKeepPaused(KeepPaused keep);
    bool songPeek() const;
    bool scrollVolume() const;
    bool peekOnHover() const;
    void setPeekOnHover(bool on);
    double peekDelay() const;
    void setPeekDelay(double seconds);
    NotchMotion motion() const;
    bool reducedMotion() const { return motion() == NotchMotion::reduced; }

    // --- to-dos, shelf ---
    std::optional<QString> todosList() const;
    bool shelfOpenOnDrop() const;
    ShelfKeep shelfKeep() const;
    void setShelfKeep(ShelfKeep keep);

    // Registers or removes Norva as a program started at login.
    bool launchAtLogin() const;
    void setLaunchAtLogin(bool on);

    // The keys the store itself watches; features add theirs with watch().
    static const QStringList& watchedKeys();
    static QString shelfKeepText(ShelfKeep keep);
    static std::optional<ShelfKeep> shelfKeepFrom(const QString& raw);

signals:
    // Fired once for each changed key (a watched key changed outside, or any own write), always
    // on the main thread; changed() follows once per change.
    void keyChanged(const QString& key);
    void changed();
    void launchAtLoginChanged();

private:
    void onDatabaseChanged();
    QVariantMap takeSnapshot(const QStringList& keys) const;
    void publish(const QStringList& keys);
    std::optional<QVariant> readRaw(const QString& key) const;
    void reportUnreadable(const QString& key, const QVariant& stored, const QString& expected) const;
    template <typename Enum>
    std::optional<Enum> storedChoice(const QString& key, const QString& expected,
                                     const QList<std::pair<QString, Enum>>& cases) const;

    PreferencesDatabase& m_database;
    const QString m_ownWriteKey;
    QStringList m_watched;
    QVariantMap m_snapshot;
    mutable QMutex m_snapshotLock;
    mutable QSet<QString> m_reported;
    mutable QMutex m_reportedLock;
};

} // namespace norva
