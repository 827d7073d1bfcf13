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

// The one front of the person's preferences. Every preference has a typed getter with a fixed
// default and a setter; outside changes (another process, a person with an editor) publish
// changed() once on the main thread, the store's own writes publish once from the setter.
// A stored value of the wrong type is logged once per key per run and never overwritten by a read.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool openOnHover READ openOnHover WRITE setOpenOnHover NOTIFY changed)
    Q_PROPERTY(double openHoverDelay READ openHoverDelay WRITE setOpenHoverDelay NOTIFY changed)
    Q_PROPERTY(bool showMenuBarIcon READ showMenuBarIcon WRITE setShowMenuBarIcon NOTIFY changed)
    Q_PROPERTY(QString fullscreenGuard READ fullscreenGuard WRITE setFullscreenGuard NOTIFY changed)
    Q_PROPERTY(bool approvalChime READ approvalChime WRITE setApprovalChime NOTIFY changed)
    Q_PROPERTY(
        bool approvalNotification READ approvalNotification WRITE setApprovalNotification NOTIFY changed)
    Q_PROPERTY(
        bool answerPromptsOnNotch READ answerPromptsOnNotch WRITE setAnswerPromptsOnNotch NOTIFY changed)
    Q_PROPERTY(bool clipboardHistory READ clipboardHistory WRITE setClipboardHistory NOTIFY changed)
    Q_PROPERTY(bool showClaudeUsage READ showClaudeUsage WRITE setShowClaudeUsage NOTIFY changed)
    Q_PROPERTY(int clipboardLimit READ clipboardLimit WRITE setClipboardLimit NOTIFY changed)
    Q_PROPERTY(bool peekOnHover READ peekOnHover WRITE setPeekOnHover NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed)
    Q_PROPERTY(
        bool autoShelfScreenshots READ autoShelfScreenshots WRITE setAutoShelfScreenshots NOTIFY changed)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)

public:
    SettingsStore(PreferencesDatabase& database, QObject* parent = nullptr);
    ~SettingsStore() override;

    // --- generic typed access, used by the named accessors and by owners of unwatched keys ---
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
    bool approvalChime() const;
    void setApprovalChime(bool on);
    bool approvalNotification() const;
    void setApprovalNotification(bool on);
    bool meetingChime() const;
    bool autoRecordMeetings() const;
    bool hoverHaptics() const;
    bool frontForKeyboardTools() const;
    bool autoShelfScreenshots() const;
    void setAutoShelfScreenshots(bool on);
    bool screenshotFlash() const;
    bool screenshotHotkey() const;
    DisplayChoice displayChoice() const;
    void setDisplayChoice(const DisplayChoice& choice);
    bool notesMirrorEnabled() const;
    QString notesMirrorFolder() const;
    int clipboardLimit() const;
    void setClipboardLimit(int limit);
    bool keepAwake() const;
    bool replaceSystemHUD() const;
    bool mirrorNotifications() const;
    bool windowSnapping() const;
    bool showMusicInNotch() const;
    ClosedMusicStyle closedMusicStyle() const;
    ExternalNotchStyle externalNotchStyle() const;
    std::optional<bool> storedAnswerPromptsOnNotch() const;
    bool answerPromptsOnNotch() const; // absent reads as off until the agents decide otherwise
    void setAnswerPromptsOnNotch(bool on);

    // --- music and notch ---
    std::optional<QString> musicStyle() const;
    std::optional<QString> musicLeft() const;
    std::optional<QString> musicRight() const;
    std::optional<QString> musicArtShape() const;
    std::optional<QString> musicEqualiser() const;
    std::optional<QString> musicEqualiserColour() const;
    KeepPaused keepPaused() const;
    void setKeepPaused(KeepPaused keep);
    bool songPeek() const;
    bool scrollVolume() const;
    bool peekOnHover() const;
    void setPeekOnHover(bool on);
    double peekDelay() const;
    void setPeekDelay(double seconds);
    bool notchGlow() const;
    NotchMotion motion() const;
    bool reducedMotion() const { return motion() == NotchMotion::reduced; }
    PageSwipeDirection swipeDirection() const;

    // --- agents ---
    std::optional<bool> agentSwitch(AgentSwitch which) const;
    void setAgentSwitch(AgentSwitch which, bool on);
    bool questionsInNotch() const;
    bool commandsInNotch() const;
    bool openQuestions() const;
    bool agentWaitGlow() const;
    bool quotaWarnings() const;

    // --- live activities ---
    std::optional<bool> activitySwitch(ActivitySwitch kind) const;
    void setActivitySwitch(ActivitySwitch kind, bool on);
    static QString activityKey(ActivitySwitch kind);
    static QString agentKey(AgentSwitch which);

    // --- snapping, to-dos, shelf, clipboard, settings window ---
    double snappingHold() const;
    std::optional<QString> todosList() const;
    bool todosShowCompleted() const;
    bool shelfOpenOnDrop() const;
    ShelfKeep shelfKeep() const;
    void setShelfKeep(ShelfKeep keep);
    bool clipboardHistory() const;
    void setClipboardHistory(bool on);
    bool showClaudeUsage() const;
    void setShowClaudeUsage(bool on);
    std::optional<QString> settingsWindowSection() const;

    // Registers or removes Norva as a program started at login.
    bool launchAtLogin() const;
    void setLaunchAtLogin(bool on);

    // The watched keys, in the order the snapshot reads them.
    static const QStringList& watchedKeys();
    // Watches more keys of Norva's own (read by their owners), so that outside edits of them
    // publish changed() too. Called on the main thread before the keys matter.
    void watch(const QStringList& keys);
    static QString shelfKeepText(ShelfKeep keep);
    static std::optional<ShelfKeep> shelfKeepFrom(const QString& raw);

signals:
    // Fired once per change of any watched key, always on the main thread.
    void changed();
    void launchAtLoginChanged();

private:
    void onDatabaseChanged();
    QVariantMap takeSnapshot() const;
    void publish();
    std::optional<QVariant> readRaw(const QString& key) const;
    void reportUnreadable(const QString& key, const QVariant& stored, const QString& expected) const;
    template <typename Enum>
    std::optional<Enum> storedChoice(const QString& key, const QString& expected,
                                     const QList<std::pair<QString, Enum>>& cases) const;

    PreferencesDatabase& m_database;
    const QString m_ownWriteKey;
    QVariantMap m_snapshot;
    QStringList m_alsoWatched; // after the watched keys, in the order watch() was given them
    mutable QMutex m_snapshotLock;
    mutable QSet<QString> m_reported;
    mutable QMutex m_reportedLock;
};

} // namespace norva
