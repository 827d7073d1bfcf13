#include "ManualClock.h"

#include <cmath>

namespace norva::test {

ManualClock::ManualClock(QDateTime start) : m_now(std::move(start)) {}

ScheduledWork ManualClock::after(Seconds delay, std::function<void()> work)
{
    return arm(delay, std::move(work), false);
}

ScheduledWork ManualClock::every(Seconds interval, std::function<void()> work)
{
    return arm(interval, std::move(work), true);
}

ScheduledWork ManualClock::arm(Seconds delay, std::function<void()> work, bool repeat)
{
    auto state = std::make_shared<detail::WorkState>();
    const qint64 ms = std::max<qint64>(0, std::llround(delay.count() * 1000.0));
    Entry entry{state, std::move(work), repeat ? std::max<qint64>(1, ms) : 0};
    m_queue.emplace(std::make_tuple(m_now.toMSecsSinceEpoch() + ms, m_sequence++), std::move(entry));
    return ScheduledWork(state);
}

void ManualClock::advance(Seconds by)
{
    const qint64 target = m_now.toMSecsSinceEpoch() + std::llround(by.count() * 1000.0);
    while (!m_queue.empty()) {
        auto first = m_queue.begin();
        const qint64 due = std::get<0>(first->first);
        if (due > target)
            break;
        Entry entry = std::move(first->second);
        m_queue.erase(first);
        auto state = entry.state.lock();
        if (!state || state->cancelled)
            continue;
        m_now = QDateTime::fromMSecsSinceEpoch(due, Qt::UTC);
        if (entry.intervalMs > 0) {
            auto work = entry.work;
            m_queue.emplace(std::make_tuple(due + entry.intervalMs, m_sequence++), std::move(entry));
            work();
        } else {
            state->cancelled = true;
            entry.work();
        }
    }
    m_now = QDateTime::fromMSecsSinceEpoch(target, Qt::UTC);
}

int ManualClock::pendingCount() const
{
    int count = 0;
    for (const auto& [key, entry] : m_queue) {
        auto state = entry.state.lock();
        if (state && !state->cancelled)
            ++count;
    }
    return count;
}

double ManualClock::secondsToNext() const
{
    for (const auto& [key, entry] : m_queue) {
        auto state = entry.state.lock();
        if (state && !state->cancelled)
            return (std::get<0>(key) - m_now.toMSecsSinceEpoch()) / 1000.0;
    }
    return -1.0;
}

} // namespace norva::test
