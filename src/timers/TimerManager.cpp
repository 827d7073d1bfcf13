#include "timers/TimerManager.h"

#include "activities/LiveActivityCoordinator.h"
#include "app/AtomicFile.h"
#include "app/Log.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "timers/TimerSound.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva timers: ");

void logTimers(const QString& line)
{
    logLine(kArea + line);
}

} // namespace

const QString TimerManager::activityId = QStringLiteral("timer");

TimerManager::TimerManager(Clock& clock, LiveActivityCoordinator& activities, TimerSound& sound,
                           QString stateFile, SettingsStore* settings, QObject* parent)
    : QObject(parent), m_clock(clock), m_activities(activities), m_sound(sound),
      m_stateFile(std::move(stateFile)), m_settings(settings)
{
    m_provider = m_activities.addProvider({ActivityContent::Kind::timer},
                                          [this](const QString& action, const LiveActivity& activity) {
                                              if (activity.id != activityId)
                                                  return false;
                                              return !refuse(action, act(action));
                                          });
    if (m_settings)
        connect(m_settings, &SettingsStore::changed, this, &TimerManager::soundOnChanged);
}

TimerManager::~TimerManager()
{
    m_activities.removeProvider(m_provider);
}

void TimerManager::restore()
{
    QFile file(m_stateFile);
    if (!file.exists())
        return;
    const bool opened = file.open(QIODevice::ReadOnly);
    const QJsonDocument document = QJsonDocument::fromJson(opened ? file.readAll() : QByteArray());
    file.close();
    const std::optional<TimerState> saved =
        document.isObject() ? TimerState::fromJson(document.object()) : std::nullopt;
    if (!saved) {
        // Never overwritten while unread: moved aside so the next countdown can save its own.
        const QString aside = unreadableCopyName(m_stateFile, m_clock.now());
        const bool kept = QFile::rename(m_stateFile, aside);
        logTimers(QStringLiteral("could not read ") + QFileInfo(m_stateFile).fileName() +
                  QStringLiteral(" (it holds no countdown Norva knows); ") +
                  (kept ? QStringLiteral("kept it as ") + QFileInfo(aside).fileName()
                        : QStringLiteral("left it as it is")));
        return;
    }
    if (!saved->paused && saved->endsAt <= m_clock.now()) {
        logTimers(QStringLiteral("the timer ended while Norva was away; it completes now"));
        m_state = saved;
        complete();
        return;
    }
    logTimers(saved->paused ? QStringLiteral("picked up a paused timer")
                            : QStringLiteral("picked up a running timer"));
    begin(*saved);
}

void TimerManager::startCountdown(int seconds)
{
    if (seconds <= 0) {
        logTimers(QStringLiteral("did not start a countdown of ") + QString::number(seconds) +
                  QStringLiteral(" s (a countdown needs at least a second)"));
        return;
    }
    beginCountdown(std::nullopt, 0, std::min(seconds, kLongestCountdown));
}

void TimerManager::startFocus()
{
    beginCountdown(FocusRounds::Phase::work, 0, FocusRounds::lengthOf(FocusRounds::Phase::work));
}

void TimerManager::beginCountdown(std::optional<FocusRounds::Phase> phase, int completedRounds, double length)
{
    TimerState state;
    state.phase = phase;
    state.completedRounds = completedRounds;
    state.length = length;
    state.endsAt = m_clock.now().addMSecs(std::llround(length * 1000));
    // A new phase of the same session keeps what the person chose to work on.
    if (phase && m_state && m_state->phase)
        state.focusTargets = m_state->focusTargets;
    begin(std::move(state));
}

void TimerManager::begin(TimerState state)
{
    m_state = std::move(state);
    if (m_state->paused) {
        m_completion.cancel();
        m_tick.cancel();
    } else {
        scheduleCompletion();
        scheduleTick();
    }
    m_shownSeconds = remainingSeconds();
    save();
    publish();
    emit changed();
    emit ticked();
}

void TimerManager::togglePause()
{
    if (paused())
        resume();
    else
        pause();
}

std::optional<QString> TimerManager::act(const QString& action)
{
    const QString none = QStringLiteral("no timer is running");
    if (action == QLatin1String("pause")) {
        if (!m_state)
            return none;
        if (m_state->paused)
            return QStringLiteral("the timer is already paused");
        TimerState state = *m_state;
        state.remaining = state.remainingAt(m_clock.now());
        state.paused = true;
        state.endsAt = {};
        begin(std::move(state));
        return std::nullopt;
    }
    if (action == QLatin1String("resume")) {
        if (!m_state)
            return none;
        if (!m_state->paused)
            return QStringLiteral("the timer is already running");
        TimerState state = *m_state;
        state.paused = false;
        state.endsAt = m_clock.now().addMSecs(std::llround(std::max(0.0, state.remaining) * 1000));
        state.remaining = 0;
        begin(std::move(state));
        return std::nullopt;
    }
    if (action == QLatin1String("stop")) {
        if (!m_state)
            return none;
        tearDown();
        return std::nullopt;
    }
    return QStringLiteral("a timer has no answer for it");
}

bool TimerManager::refuse(const QString& action, const std::optional<QString>& reason) const
{
    if (!reason)
        return false;
    logTimers(action + QStringLiteral(" did nothing (") + *reason + QStringLiteral(")"));
    return true;
}

void TimerManager::addFocusTarget(const QString& title)
{
    const QString trimmed = title.trimmed();
    if (!focus() || trimmed.isEmpty() || m_state->focusTargets.contains(trimmed))
        return;
    m_state->focusTargets << trimmed;
    save();
    publish();
    emit changed();
}

void TimerManager::removeFocusTarget(const QString& title)
{
    if (!m_state || !m_state->focusTargets.removeOne(title.trimmed()))
        return;
    save();
    publish();
    emit changed();
}

// The completion waits for the end instant itself; a remaining time below zero counts as zero.
void TimerManager::scheduleCompletion()
{
    const double left = std::max(0.0, m_clock.now().msecsTo(m_state->endsAt) / 1000.0);
    m_completion = m_clock.after(Seconds(left), [this] { complete(); });
}

// The face changes only when the whole seconds shown change, so the next tick waits for that
// moment rather than firing on a fixed beat that drifts against the end.
void TimerManager::scheduleTick()
{
    const qint64 msLeft = m_clock.now().msecsTo(m_state->endsAt);
    if (msLeft <= 0)
        return;
    const qint64 toNextSecond = msLeft % 1000 == 0 ? 1000 : msLeft % 1000;
    m_tick = m_clock.after(Seconds(toNextSecond / 1000.0), [this] { tick(); });
}

void TimerManager::tick()
{
    if (!m_state || m_state->paused)
        return;
    const int seconds = remainingSeconds();
    if (seconds != m_shownSeconds) {
        m_shownSeconds = seconds;
        publish();
        emit ticked();
    }
    scheduleTick();
}

void TimerManager::complete()
{
    if (!m_state)
        return;
    m_completion.cancel();
    m_tick.cancel();
    if (soundOn())
        m_sound.playCompletion();
    emit completed();
    const std::optional<FocusRounds::Phase> phase = m_state->phase;
    if (!phase) {
        tearDown();
        return;
    }
    const FocusRounds::Step next = FocusRounds::advance(*phase, m_state->completedRounds);
    if (next.clearTargets)
        m_state->focusTargets.clear();
    beginCountdown(next.phase, next.completedRounds, FocusRounds::lengthOf(next.phase));
}

void TimerManager::tearDown()
{
    m_completion.cancel();
    m_tick.cancel();
    m_state.reset();
    m_shownSeconds = -1;
    m_activities.remove(activityId);
    if (QFile::exists(m_stateFile) && !QFile::remove(m_stateFile))
        logTimers(QStringLiteral("could not remove ") + QFileInfo(m_stateFile).fileName() +
                  QStringLiteral(" (the file stays); a restart may pick the timer up again"));
    emit changed();
    emit ticked();
}

void TimerManager::save() const
{
    const QByteArray bytes = QJsonDocument(m_state->toJson()).toJson(QJsonDocument::Compact);
    if (const auto failure = writeFileAtomically(m_stateFile, bytes))
        logTimers(QStringLiteral("could not save the timer (") + *failure +
                  QStringLiteral("); it runs on, but a restart of Norva forgets it"));
}

void TimerManager::publish()
{
    m_activities.upsert(activity());
}

LiveActivity TimerManager::activity()
{
    const QDateTime now = m_clock.now();
    ActivityContent::Countdown countdown;
    countdown.paused = m_state->paused;
    countdown.remaining = m_state->remainingAt(now);
    countdown.progress = m_state->progressAt(now);
    if (!m_state->paused)
        countdown.endsAt = m_state->endsAt;

    LiveActivity live;
    live.id = activityId;
    live.priority = kActivityPriority;
    live.content = ActivityContent::timer(countdown);
    live.text.title = title();
    live.text.value = clockText(remainingSeconds());
    live.text.progress = countdown.progress;
    live.text.detail = m_state->paused ? QStringLiteral("Paused · ") + nextText() : nextText();
    live.onTap = [this] { togglePause(); };
    return live;
}

QString TimerManager::phaseWord() const
{
    return phase() ? FocusRounds::word(*phase()) : QString();
}

QString TimerManager::title() const
{
    if (!m_state)
        return {};
    return phase() ? FocusRounds::title(*phase()) : QStringLiteral("Timer");
}

QString TimerManager::nextText() const
{
    if (!m_state)
        return {};
    return phase() ? FocusRounds::nextText(*phase(), m_state->completedRounds)
                   : FocusRounds::freeCountdownText();
}

// Whole seconds, counted up: "0:01" shows until the very end, "0:00" never lingers.
int TimerManager::remainingSeconds() const
{
    if (!m_state)
        return 0;
    return static_cast<int>(std::ceil(m_state->remainingAt(m_clock.now()) - 1e-9));
}

double TimerManager::progress() const
{
    return m_state ? m_state->progressAt(m_clock.now()) : 0.0;
}

bool TimerManager::soundOn() const
{
    return !m_settings || m_settings->flag(SettingsKeys::timerSound, true);
}

void TimerManager::setSoundOn(bool on)
{
    if (!m_settings || on == soundOn())
        return;
    m_settings->write(on, SettingsKeys::timerSound);
    emit soundOnChanged();
}

QVariantList TimerManager::presets() const
{
    QVariantList list;
    for (const int seconds : kPresets)
        list << seconds;
    return list;
}

QString TimerManager::clockText(int seconds)
{
    seconds = std::max(0, seconds);
    const int hours = seconds / 3600;
    const int minutes = seconds / 60 % 60;
    const QString secondsText = QStringLiteral("%1").arg(seconds % 60, 2, 10, QLatin1Char('0'));
    if (hours > 0)
        return QStringLiteral("%1:%2:%3").arg(hours).arg(minutes, 2, 10, QLatin1Char('0')).arg(secondsText);
    return QStringLiteral("%1:%2").arg(minutes).arg(secondsText);
}

} // namespace norva
