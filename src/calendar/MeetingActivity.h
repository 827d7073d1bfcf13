#pragma once

#include "activities/ActivityKinds.h"
#include "app/Clock.h"
#include "calendar/Meeting.h"

#include <QString>

#include <functional>
#include <optional>

namespace norva {

class LiveActivityCoordinator;

// Shows the chosen meeting on the closed notch as the "meeting" activity: a countdown to its start
// ("9 min"), "now" while it runs, and a click that joins it (or opens the calendar page when it has
// no link). The countdown moves on by itself through the clock, once a minute.
class MeetingActivity {
public:
    static const QString kId; // "meeting"
    // Above music, timers and the shelf, below an agent that waits for an answer.
    static constexpr int kPriority = ActivityKinds::of(ActivityContent::Kind::meeting).priority;

    MeetingActivity(LiveActivityCoordinator& coordinator, Clock& clock,
                    std::function<void(const Meeting&)> join, std::function<void()> openPage);
    ~MeetingActivity();

    // The meeting to show, or nothing to take the activity off the notch.
    void show(const std::optional<Meeting>& meeting);
    const std::optional<Meeting>& shown() const { return m_meeting; }

    // The ear's words: "9 min", "1 h 5 min", "now".
    static QString countdownText(const QDateTime& start, const QDateTime& end, const QDateTime& now);

private:
    void publish();

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    std::function<void(const Meeting&)> m_join;
    std::function<void()> m_openPage;
    std::optional<Meeting> m_meeting;
    ScheduledWork m_tick;
};

} // namespace norva
