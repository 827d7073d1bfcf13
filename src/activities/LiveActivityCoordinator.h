#pragma once

#include "activities/ClosedLayout.h"
#include "activities/LiveActivity.h"
#include "app/Clock.h"
#include "app/QmlInstances.h"

#include <QHash>
#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QSet>

#include <QtQmlIntegration/qqmlintegration.h>
#include <limits>
#include <map>
#include <memory>
#include <optional>

namespace norva {

class ActivitySettings;
class SettingsStore;

// The one place every feature publishes what it wants shown in the closed notch. It keeps the live
// list, turns away kinds whose switch is off (parking the lasting ones until the switch comes back),
// lets transient activities leave when their hold runs out, rotates between competing activities
// and hands the closed face what to draw. Main thread only; every delay goes through the clock.
class LiveActivityCoordinator : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    static LiveActivityCoordinator* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<LiveActivityCoordinator>();
    }
    using Kind = ActivityContent::Kind;

    // What perform() did with an action.
    enum class Outcome {
        done,       // a provider handled the action
        notLive,    // the activity already left the notch
        unanswered, // no provider handles that action
    };
    // A producer's answer to an action on one of its activities: true when it handled the action.
    using ActionProvider = std::function<bool(const QString& action, const LiveActivity& activity)>;

    static constexpr Seconds kRotationInterval{4.0};
    // The pointer has left the notch: holds wait this long before they count down again.
    static constexpr Seconds kHoldGrace{0.9};

    explicit LiveActivityCoordinator(Clock& clock, QObject* parent = nullptr);
    ~LiveActivityCoordinator() override;

    // Adds the activity, or replaces the live one with the same id in its place.
    void upsert(LiveActivity activity);
    // Takes the activity off the notch. Unless keepingParked, a parked copy is forgotten as well,
    // so a producer that ended its activity never sees it come back with a switch.
    void remove(const QString& id, bool keepingParked = false);
    // Makes a live activity the one shown, unless another one is pinned.
    bool promote(const QString& id);

    // Runs an action that the activity's producer defines ("answer", "open", "dismiss"...).
    Outcome perform(const QString& action, const QString& id);
    Outcome perform(const QString& action, const LiveActivity& activity)
    {
        return perform(action, activity.id);
    }
    // Producers answer the actions on activities of their kinds. Returns a token for removeProvider.
    int addProvider(QList<Kind> kinds, ActionProvider provider);
    void removeProvider(int token);

    // Follows the per-kind switches (ActivitySettings) in the settings store from now on.
    void follow(SettingsStore& settings);
    // Parks the activities whose switch went off and brings back the parked ones whose switch is on.
    void applySwitches();
    bool allows(Kind kind) const;
    // Admission of one activity: yes when its kind is allowed; otherwise the id is refused (logged
    // once), and a lasting activity is parked while a transient one is dropped.
    bool admits(const LiveActivity& activity);

    // Stop and restart the countdown of every transient activity while the person looks at them.
    void pauseHolds();
    void resumeHolds();
    void resumeHoldsAfterGrace();

    // The closed notch's face for the current list.
    ClosedLayout layout(bool musicPlaying, const ClosedPrefs& prefs) const;
    // The page the most important live activity wants opened, if any.
    std::optional<QString> urgentTab() const;

    const QList<LiveActivity>& activities() const { return m_activities; }
    const LiveActivity* find(const QString& id) const;
    bool isParked(const QString& id) const { return parked(id) != nullptr; }
    // The parked copy of an activity whose switch is off, if any.
    const LiveActivity* parked(const QString& id) const;
    bool isRefused(const QString& id) const { return m_refused.contains(id); }
    int rotationIndex() const { return m_rotationIndex; }
    bool isRotating() const { return m_rotation.isArmed(); }
    bool holdsPaused() const { return m_holdsPaused; }
    // Seconds the activity's hold still has to run, counted to now; none when it has no hold.
    std::optional<double> holdRemaining(const QString& id) const;
    // The id of the activity the closed face shows now, if any.
    std::optional<QString> shownId() const;

signals:
    // The live list changed (an activity came, changed or left); once per change.
    void activitiesChanged();
    // Another activity is now the one shown (rotation or promote), with the list unchanged.
    void rotated();
    // urgentTab() now answers differently.
    void urgentTabChanged();
    // Holds were paused or resumed (the rotation stops and starts with them).
    void holdsPausedChanged();

private:
    struct Expiry {
        double remaining = 0.0;
        std::optional<QDateTime> armedAt;
        ScheduledWork work;
        quint64 token = 0;
    };

    int indexOf(const QString& id) const;
    int shownIndex() const;
    int topPriority() const;
    const LiveActivity* pinnedActivity() const;
    void publish();
    void takeOut(int index);
    void startHold(const QString& id, double seconds);
    void armHold(const QString& id, Expiry& expiry);
    void clearExpiry(const QString& id);
    void holdRanOut(const QString& id, quint64 token);
    void retuneRotation(bool restart);
    void rotate();

    Clock& m_clock;
    std::unique_ptr<ActivitySettings> m_switches;
    QList<LiveActivity> m_activities;
    QSet<QString> m_refused;
    QList<LiveActivity> m_parked; // in the order they were parked
    std::map<QString, Expiry> m_expiries;
    quint64 m_lastToken = 0;
    bool m_holdsPaused = false;
    ScheduledWork m_grace;
    ScheduledWork m_rotation;
    int m_rotationIndex = 0;
    QString m_promoted; // shown out of priority order until the next turn of the rotation
    std::optional<QString> m_urgentTab;
    std::map<int, std::pair<QList<Kind>, ActionProvider>> m_providers;
    int m_lastProviderToken = 0;
};

} // namespace norva
