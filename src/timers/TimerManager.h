#pragma once

#include "activities/ActivityKinds.h"
#include "activities/LiveActivity.h"
#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "timers/FocusRounds.h"
#include "timers/TimerState.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantList>

#include <QtQmlIntegration/qqmlintegration.h>
#include <optional>

namespace norva {

class LiveActivityCoordinator;
class SettingsStore;
class TimerSound;

// Runs one countdown at a time: a free countdown of a length the person sets, or focus rounds
// that alternate work and breaks. While it runs it shows the "timer" activity on the closed notch,
// whose pause, resume and stop land here. Its state is saved at every change (the end instant,
// not the seconds left), so a countdown outlives a restart of Norva. Main thread only.
class TimerManager : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool active READ active NOTIFY changed)
    Q_PROPERTY(bool paused READ paused NOTIFY changed)
    Q_PROPERTY(bool focus READ focus NOTIFY changed)
    Q_PROPERTY(QString phase READ phaseWord NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(int completedRounds READ completedRounds NOTIFY changed)
    Q_PROPERTY(QString nextText READ nextText NOTIFY changed)
    Q_PROPERTY(QStringList focusTargets READ focusTargets NOTIFY changed)
    Q_PROPERTY(int remainingSeconds READ remainingSeconds NOTIFY ticked)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY ticked)
    Q_PROPERTY(double progress READ progress NOTIFY ticked)
    Q_PROPERTY(bool soundOn READ soundOn WRITE setSoundOn NOTIFY soundOnChanged)
    Q_PROPERTY(QVariantList presets READ presets CONSTANT)

public:
    static TimerManager* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<TimerManager>(); }
    static const QString activityId; // "timer"
    static constexpr int kActivityPriority = ActivityKinds::of(ActivityContent::Kind::timer).priority;
    // Seconds of the free countdowns offered with one click.
    static constexpr int kPresets[] = {60, 300, 600, 900, 1500, 2700, 3600};
    // The longest countdown Norva takes: a day.
    static constexpr int kLongestCountdown = 24 * 3600;

    // `stateFile` keeps the running countdown across restarts ("timer.json" in the data folder).
    TimerManager(Clock& clock, LiveActivityCoordinator& activities, TimerSound& sound, QString stateFile,
                 SettingsStore* settings = nullptr, QObject* parent = nullptr);
    ~TimerManager() override;

    // Picks up a countdown saved by an earlier run: one still running resumes, one that ended
    // while Norva was away completes once, now.
    void restore();

    Q_INVOKABLE void startCountdown(int seconds);
    // Starts focus rounds at the first work round.
    Q_INVOKABLE void startFocus();
    Q_INVOKABLE bool pause() { return !refuse(QStringLiteral("pause"), act(QStringLiteral("pause"))); }
    Q_INVOKABLE bool resume() { return !refuse(QStringLiteral("resume"), act(QStringLiteral("resume"))); }
    Q_INVOKABLE bool stop() { return !refuse(QStringLiteral("stop"), act(QStringLiteral("stop"))); }
    Q_INVOKABLE void togglePause();
    // Runs an action from the notch ("pause", "resume", "stop"); the reason when refused.
    std::optional<QString> act(const QString& action);

    // The to-do titles this focus session is about ("Add to this session").
    Q_INVOKABLE void addFocusTarget(const QString& title);
    Q_INVOKABLE void removeFocusTarget(const QString& title);

    bool active() const { return m_state.has_value(); }
    bool paused() const { return m_state && m_state->paused; }
    bool focus() const { return m_state && m_state->phase; }
    std::optional<FocusRounds::Phase> phase() const { return m_state ? m_state->phase : std::nullopt; }
    QString phaseWord() const;
    QString title() const;
    int completedRounds() const { return m_state ? m_state->completedRounds : 0; }
    QString nextText() const;
    QStringList focusTargets() const { return m_state ? m_state->focusTargets : QStringList(); }
    const std::optional<TimerState>& state() const { return m_state; }
    int remainingSeconds() const;
    QString remainingText() const { return clockText(remainingSeconds()); }
    double progress() const;
    bool soundOn() const;
    void setSoundOn(bool on);
    QVariantList presets() const;

    // "4:05", "25:00", "1:02:03": how the remaining time reads.
    static QString clockText(int seconds);

signals:
    void changed();
    void ticked();
    void soundOnChanged();
    // A countdown reached zero (before the next focus phase begins).
    void completed();

private:
    bool refuse(const QString& action, const std::optional<QString>& reason) const;
    void begin(TimerState state);
    void beginCountdown(std::optional<FocusRounds::Phase> phase, int completedRounds, double length);
    void scheduleCompletion();
    void scheduleTick();
    void tick();
    void complete();
    void tearDown();
    void publish();
    void save() const;
    LiveActivity activity();

    Clock& m_clock;
    LiveActivityCoordinator& m_activities;
    TimerSound& m_sound;
    QString m_stateFile;
    QPointer<SettingsStore> m_settings;
    int m_provider = 0;
    std::optional<TimerState> m_state;
    ScheduledWork m_completion;
    ScheduledWork m_tick;
    int m_shownSeconds = -1;
};

} // namespace norva
