#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <memory>

namespace norva {

using Seconds = std::chrono::duration<double>;

namespace detail {
struct WorkState {
    bool cancelled = false;
    std::function<void()> onCancel; // lets the clock free its timer at once
};
} // namespace detail

// A handle to delayed or repeating work. Destroying the handle or calling cancel() stops the work,
// so an object that owns its handles ends its timers silently when it goes away.
class ScheduledWork {
public:
    ScheduledWork() = default;
    explicit ScheduledWork(std::shared_ptr<detail::WorkState> state) : m_state(std::move(state)) {}
    ScheduledWork(ScheduledWork&&) noexcept = default;
    ScheduledWork& operator=(ScheduledWork&& other) noexcept
    {
        if (this != &other) {
            cancel();
            m_state = std::move(other.m_state);
        }
        return *this;
    }
    ScheduledWork(const ScheduledWork&) = delete;
    ScheduledWork& operator=(const ScheduledWork&) = delete;
    ~ScheduledWork() { cancel(); }

    void cancel()
    {
        if (m_state && !m_state->cancelled) {
            m_state->cancelled = true;
            if (m_state->onCancel)
                m_state->onCancel();
        }
        m_state.reset();
    }
    // True while the work is armed (a repeating work stays armed until cancelled).
    bool isArmed() const { return m_state && !m_state->cancelled; }

private:
    std::shared_ptr<detail::WorkState> m_state;
};

// The one source of "now" and of delays in Norva. Production runs on QTimer and the system clock;
// tests drive a manual clock so that "closes after 0.22 s" runs in microseconds.
// All work runs on the thread that owns the clock (the main thread).
class Clock {
public:
    virtual ~Clock() = default;

    virtual QDateTime now() const = 0;
    virtual ScheduledWork after(Seconds delay, std::function<void()> work) = 0;
    virtual ScheduledWork every(Seconds interval, std::function<void()> work) = 0;
    // Work at a moment rather than after a delay: a day's turn, a due time, a meeting's start.
    ScheduledWork at(const QDateTime& when, std::function<void()> work)
    {
        return after(Seconds(now().msecsTo(when) / 1000.0), std::move(work));
    }

    double secondsSince(const QDateTime& then) const { return then.msecsTo(now()) / 1000.0; }
};

// The system clock, for production wiring; logic takes a Clock& so tests can hand it a manual one.
Clock& systemClock();

} // namespace norva
