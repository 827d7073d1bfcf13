#include "activities/LiveActivityCoordinator.h"

#include "activities/ActivitySettings.h"
#include "app/Log.h"

#include <algorithm>
#include <cmath>

namespace norva {
namespace {

const QString kLogOpening = QStringLiteral("Norva activities: ");
const QString kSwitchOff = QStringLiteral(" (its switch in Settings > Live activities is off)");
const QString kSwitchOn = QStringLiteral(" (its switch in Settings > Live activities is on)");
const QString kNoMusicPiece = QStringLiteral("none");

void logActivities(const QString& rest)
{
    logLine(kLogOpening + rest);
}

Ear musicEar(const QString& piece)
{
    if (piece.isEmpty() || piece == kNoMusicPiece)
        return {};
    return {Ear::Piece::music, piece};
}

} // namespace

LiveActivityCoordinator::LiveActivityCoordinator(Clock& clock, QObject* parent)
    : QObject(parent), m_clock(clock)
{}

LiveActivityCoordinator::~LiveActivityCoordinator() = default;

// ---- the list ----

void LiveActivityCoordinator::upsert(LiveActivity activity)
{
    if (!admits(activity))
        return;
    const QString id = activity.id;
    const std::optional<double> hold = activity.hold;
    const int index = indexOf(id);
    if (index >= 0)
        m_activities[index] = std::move(activity);
    else
        m_activities.append(std::move(activity));
    publish();
    if (hold)
        startHold(id, *hold);
    else
        clearExpiry(id); // a transient activity turned lasting by this update no longer leaves by itself
}

void LiveActivityCoordinator::remove(const QString& id, bool keepingParked)
{
    if (!keepingParked) {
        m_parked.erase(std::remove_if(m_parked.begin(), m_parked.end(),
                                      [&](const LiveActivity& parked) { return parked.id == id; }),
                       m_parked.end());
    }
    const int index = indexOf(id);
    if (index < 0)
        return;
    takeOut(index);
    clearExpiry(id);
    publish();
}

bool LiveActivityCoordinator::promote(const QString& id)
{
    const int index = indexOf(id);
    if (index < 0) {
        logActivities(QStringLiteral("promote ") + id + QStringLiteral(" did nothing (it is not live)"));
        return false;
    }
    for (const LiveActivity& other : std::as_const(m_activities)) {
        if (other.pinned && other.id != id) {
            logActivities(QStringLiteral("promote ") + id + QStringLiteral(" did nothing (") + other.id +
                          QStringLiteral(" is pinned and owns the body)"));
            return false;
        }
    }
    const int before = shownIndex();
    m_rotationIndex = index;
    m_promoted = id;
    // The promoted activity gets a whole turn before the rotation moves on.
    retuneRotation(true);
    if (shownIndex() != before)
        emit rotated();
    return true;
}

const LiveActivity* LiveActivityCoordinator::find(const QString& id) const
{
    const int index = indexOf(id);
    return index >= 0 ? &m_activities[index] : nullptr;
}

const LiveActivity* LiveActivityCoordinator::parked(const QString& id) const
{
    for (const LiveActivity& activity : m_parked) {
        if (activity.id == id)
            return &activity;
    }
    return nullptr;
}

int LiveActivityCoordinator::indexOf(const QString& id) const
{
    for (int i = 0; i < m_activities.size(); ++i) {
        if (m_activities[i].id == id)
            return i;
    }
    return -1;
}

void LiveActivityCoordinator::takeOut(int index)
{
    if (m_activities[index].id == m_promoted)
        m_promoted.clear();
    m_activities.removeAt(index);
    // Keep pointing at the same activity when one before it leaves.
    if (index < m_rotationIndex)
        --m_rotationIndex;
    if (m_rotationIndex >= m_activities.size())
        m_rotationIndex = 0;
}

void LiveActivityCoordinator::publish()
{
    retuneRotation(false);
    emit activitiesChanged();
    const std::optional<QString> tab = urgentTab();
    if (tab != m_urgentTab) {
        m_urgentTab = tab;
        emit urgentTabChanged();
    }
}

// ---- actions ----

LiveActivityCoordinator::Outcome LiveActivityCoordinator::perform(const QString& action, const QString& id)
{
    const LiveActivity* live = find(id);
    if (!live) {
        logActivities(action + QStringLiteral(" on ") + id +
                      QStringLiteral(" did nothing (the activity already left the notch)"));
        return Outcome::notLive;
    }
    // A provider may change the list or the providers while it answers: work on copies.
    const LiveActivity activity = *live;
    QList<ActionProvider> providers;
    for (const auto& [token, entry] : m_providers) {
        if (entry.first.contains(activity.content.kind()))
            providers << entry.second;
    }
    for (const ActionProvider& provider : std::as_const(providers)) {
        if (provider(action, activity))
            return Outcome::done;
    }
    logActivities(action + QStringLiteral(" on ") + id +
                  QStringLiteral(" did nothing (no provider answers it)"));
    return Outcome::unanswered;
}

int LiveActivityCoordinator::addProvider(QList<Kind> kinds, ActionProvider provider)
{
    const int token = ++m_lastProviderToken;
    m_providers.emplace(token, std::make_pair(std::move(kinds), std::move(provider)));
    return token;
}

void LiveActivityCoordinator::removeProvider(int token)
{
    m_providers.erase(token);
}

// ---- switches ----

bool LiveActivityCoordinator::allows(Kind kind) const
{
    return !m_switches || m_switches->allows(kind);
}

bool LiveActivityCoordinator::admits(const LiveActivity& activity)
{
    const auto sameId = [&](const LiveActivity& parked) { return parked.id == activity.id; };
    m_parked.erase(std::remove_if(m_parked.begin(), m_parked.end(), sameId), m_parked.end());
    if (allows(activity.content.kind())) {
        m_refused.remove(activity.id);
        return true;
    }
    if (!m_refused.contains(activity.id)) {
        m_refused.insert(activity.id);
        logActivities(activity.id + QStringLiteral(" stays off the notch") + kSwitchOff);
    }
    // A transient activity would be stale by the time its switch comes back: it is dropped.
    if (!activity.isTransient())
        m_parked.append(activity);
    return false;
}

void LiveActivityCoordinator::follow(SettingsStore& settings)
{
    m_switches = std::make_unique<ActivitySettings>(settings);
    connect(m_switches.get(), &ActivitySettings::switchesChanged, this,
            &LiveActivityCoordinator::applySwitches);
    applySwitches();
}

void LiveActivityCoordinator::applySwitches()
{
    bool changed = false;
    QStringList leaving;
    for (const LiveActivity& activity : std::as_const(m_activities)) {
        if (!allows(activity.content.kind()))
            leaving << activity.id;
    }
    for (const QString& id : std::as_const(leaving)) {
        const int index = indexOf(id);
        LiveActivity activity = m_activities[index];
        takeOut(index);
        clearExpiry(id);
        m_refused.insert(id);
        if (!activity.isTransient())
            m_parked.append(std::move(activity));
        logActivities(id + QStringLiteral(" left the notch") + kSwitchOff);
        changed = true;
    }
    for (auto it = m_parked.begin(); it != m_parked.end();) {
        if (!allows(it->content.kind())) {
            ++it;
            continue;
        }
        LiveActivity activity = std::move(*it);
        it = m_parked.erase(it);
        m_refused.remove(activity.id);
        logActivities(activity.id + QStringLiteral(" came back onto the notch") + kSwitchOn);
        const int index = indexOf(activity.id);
        if (index >= 0)
            m_activities[index] = std::move(activity);
        else
            m_activities.append(std::move(activity));
        changed = true;
    }
    if (changed)
        publish();
}

// ---- holds ----

void LiveActivityCoordinator::startHold(const QString& id, double seconds)
{
    Expiry& expiry = m_expiries[id];
    expiry.work.cancel();
    expiry.remaining = std::isfinite(seconds) ? std::max(0.0, seconds) : 0.0;
    expiry.armedAt.reset();
    expiry.token = ++m_lastToken;
    // While the person looks at the notch the hold waits; resumeHolds arms it with all it has.
    if (!m_holdsPaused)
        armHold(id, expiry);
}

void LiveActivityCoordinator::armHold(const QString& id, Expiry& expiry)
{
    expiry.armedAt = m_clock.now();
    expiry.token = ++m_lastToken;
    const quint64 token = expiry.token;
    expiry.work = m_clock.after(Seconds(expiry.remaining), [this, id, token] { holdRanOut(id, token); });
}

void LiveActivityCoordinator::holdRanOut(const QString& id, quint64 token)
{
    const auto it = m_expiries.find(id);
    if (it == m_expiries.end() || it->second.token != token)
        return;                 // a job that was replaced or cancelled too late does nothing
    const QString leaving = id; // the job that holds `id` goes away with the expiry
    remove(leaving, true);
}

void LiveActivityCoordinator::clearExpiry(const QString& id)
{
    m_expiries.erase(id);
}

void LiveActivityCoordinator::pauseHolds()
{
    m_grace.cancel();
    if (m_holdsPaused)
        return;
    m_holdsPaused = true;
    for (auto& [id, expiry] : m_expiries) {
        if (expiry.armedAt)
            expiry.remaining = std::max(0.0, expiry.remaining - m_clock.secondsSince(*expiry.armedAt));
        expiry.armedAt.reset();
        expiry.work.cancel();
        expiry.token = ++m_lastToken;
    }
    retuneRotation(false);
    emit holdsPausedChanged();
}

void LiveActivityCoordinator::resumeHolds()
{
    m_grace.cancel();
    const bool wasPaused = m_holdsPaused;
    if (wasPaused) {
        m_holdsPaused = false;
        for (auto& [id, expiry] : m_expiries)
            armHold(id, expiry);
    }
    retuneRotation(true);
    if (wasPaused)
        emit holdsPausedChanged();
}

void LiveActivityCoordinator::resumeHoldsAfterGrace()
{
    m_grace = m_clock.after(kHoldGrace, [this] { resumeHolds(); });
}

std::optional<double> LiveActivityCoordinator::holdRemaining(const QString& id) const
{
    const auto it = m_expiries.find(id);
    if (it == m_expiries.end())
        return std::nullopt;
    const Expiry& expiry = it->second;
    if (!expiry.armedAt)
        return expiry.remaining;
    return std::max(0.0, expiry.remaining - m_clock.secondsSince(*expiry.armedAt));
}

// ---- rotation and the face ----

const LiveActivity* LiveActivityCoordinator::pinnedActivity() const
{
    const LiveActivity* best = nullptr;
    for (const LiveActivity& activity : m_activities) {
        if (activity.pinned && (!best || activity.priority > best->priority))
            best = &activity;
    }
    return best;
}

int LiveActivityCoordinator::topPriority() const
{
    int top = std::numeric_limits<int>::min();
    for (const LiveActivity& activity : m_activities)
        top = std::max(top, activity.priority);
    return top;
}

int LiveActivityCoordinator::shownIndex() const
{
    const int count = static_cast<int>(m_activities.size());
    if (count == 0)
        return -1;
    if (const LiveActivity* pinned = pinnedActivity())
        return indexOf(pinned->id);
    const int top = topPriority();
    const int start = std::clamp(m_rotationIndex, 0, count - 1);
    if (m_activities[start].id == m_promoted)
        return start;
    // The highest priority wins; several of the same priority take turns from the rotation index.
    for (int step = 0; step < count; ++step) {
        const int index = (start + step) % count;
        if (m_activities[index].priority == top)
            return index;
    }
    return start;
}

std::optional<QString> LiveActivityCoordinator::shownId() const
{
    const int index = shownIndex();
    if (index < 0)
        return std::nullopt;
    return m_activities[index].id;
}

void LiveActivityCoordinator::retuneRotation(bool restart)
{
    const bool turns = m_activities.size() >= 2 && !pinnedActivity() && !m_holdsPaused;
    if (!turns) {
        m_rotation.cancel();
        return;
    }
    // An update of what is already live (a download's progress every second) keeps the running
    // rotation: restarting it on every update would keep the first activity on screen for ever.
    if (m_rotation.isArmed() && !restart)
        return;
    m_rotation = m_clock.every(kRotationInterval, [this] { rotate(); });
}

void LiveActivityCoordinator::rotate()
{
    const int count = static_cast<int>(m_activities.size());
    if (count < 2)
        return;
    const int before = shownIndex();
    const int top = topPriority();
    for (int step = 1; step <= count; ++step) {
        const int index = (before + step) % count;
        if (m_activities[index].priority == top) {
            m_rotationIndex = index;
            break;
        }
    }
    m_promoted.clear();
    if (shownIndex() != before)
        emit rotated();
}

std::optional<QString> LiveActivityCoordinator::urgentTab() const
{
    const LiveActivity* best = nullptr;
    for (const LiveActivity& activity : m_activities) {
        if (!activity.urgentTab)
            continue;
        const bool wins = !best || (activity.pinned && !best->pinned) ||
                          (activity.pinned == best->pinned && activity.priority > best->priority);
        if (wins)
            best = &activity;
    }
    return best ? best->urgentTab : std::nullopt;
}

ClosedLayout LiveActivityCoordinator::layout(bool musicPlaying, const ClosedPrefs& prefs) const
{
    ClosedLayout face;
    face.liveCount = static_cast<int>(m_activities.size());
    face.rotating = isRotating();
    const int index = shownIndex();
    if (index < 0) {
        if (musicPlaying) {
            face.left = musicEar(prefs.musicLeft);
            face.right = musicEar(prefs.musicRight);
        }
        return face;
    }
    const LiveActivity& shown = m_activities[index];
    face.shown = shown;
    face.shownPosition = index;
    const Ear musicLeft = musicEar(prefs.musicLeft);
    // Music keeps its left ear beside a lasting activity; a pinned activity or a short toast
    // (a volume change) takes both ears so it reads at a glance.
    if (musicPlaying && !shown.pinned && !shown.isTransient() && musicLeft.piece == Ear::Piece::music) {
        face.left = musicLeft;
        face.musicShares = true;
    } else {
        face.left = {Ear::Piece::activityMark, {}};
    }
    face.right = {Ear::Piece::activityValue, {}};
    return face;
}

} // namespace norva
