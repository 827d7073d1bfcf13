#pragma once

#include "app/PreferencesDatabase.h"
#include "app/QmlInstances.h"
#include "app/SettingsTypes.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QVariantMap>

#include <QtQmlIntegration/qqmlintegration.h>
#include <functional>
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
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool openOnHover READ openOnHover WRITE setOpenOnHover NOTIFY changed)
    Q_PROPERTY(double openHoverDelay READ openHoverDelay WRITE setOpenHoverDelay NOTIFY changed)
    Q_PROPERTY(bool showMenuBarIcon READ showMenuBarIcon WRITE setShowMenuBarIcon NOTIFY changed)
    Q_PROPERTY(QString fullscreenGuard READ fullscreenGuard WRITE setFullscreenGuard NOTIFY changed)
    Q_PROPERTY(bool peekOnHover READ peekOnHover WRITE setPeekOnHover NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)

public:
    static SettingsStore* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<SettingsStore>(); }
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
    // A stored value the feature checks itself: the value when `accepts` takes it; otherwise
    // nothing, and the unreadable line is logged once.
    std::optional<QVariant> storedChecked(const QString& key,
                                          const std::function<bool(const QVariant&)>& accepts,
                                          const QString& expected) const;
    // A stored text that names one of the cases.
    template <typename Enum>
    std::optional<Enum> storedChoice(const QString& key, const QString& expected,
                                     const QList<std::pair<QString, Enum>>& cases) const
    {
        std::optional<Enum> chosen;
        storedChecked(
            key,
            [&](const QVariant& raw) {
                for (const auto& [text, value] : cases) {
                    if (raw.typeId() == QMetaType::QString && raw.toString() == text)
                        chosen = value;
                }
                return chosen.has_value();
            },
            expected);
        return chosen;
    }
    static bool isNumber(const QVariant& value);
    // Adds keys whose outside changes are told (keyChanged, changed).
    void watch(const QStringList& keys);
    // Watches the keys and calls onKey, on the receiver's side, for each change of one of them,
    // outside edits included: a feature's settings type turns that into its own change signals.
    void follow(const QStringList& keys, QObject* receiver, std::function<void(const QString& key)> onKey);

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
    DisplayChoice displayChoice() const;
    void setDisplayChoice(const DisplayChoice& choice);

    // --- the closed notch: what sits beside it, peeking and motion ---
    std::optional<QString> musicLeft() const;
    std::optional<QString> musicRight() const;
    bool peekOnHover() const;
    void setPeekOnHover(bool on);
    double peekDelay() const;
    void setPeekDelay(double seconds);
    NotchMotion motion() const;
    bool reducedMotion() const { return motion() == NotchMotion::reduced; }

    // Registers or removes Norva as a program started at login.
    bool launchAtLogin() const;
    void setLaunchAtLogin(bool on);

    // The keys the store itself watches; features add theirs with watch().
    static const QStringList& watchedKeys();

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

    PreferencesDatabase& m_database;
    const QString m_ownWriteKey;
    QStringList m_watched;
    QVariantMap m_snapshot;
    mutable QMutex m_snapshotLock;
    mutable QSet<QString> m_reported;
    mutable QMutex m_reportedLock;
};

} // namespace norva
