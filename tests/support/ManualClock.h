#pragma once

#include "app/Clock.h"

#include <map>
#include <tuple>

namespace norva::test {

// A clock that moves only when the test says so. advance() runs every piece of work that falls due,
// in time order, with now() set to each one's due instant, so chains of delays behave as in real life.
class ManualClock final : public Clock {
public:
    explicit ManualClock(QDateTime start = QDateTime(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC));

    QDateTime now() const override { return m_now; }
    ScheduledWork after(Seconds delay, std::function<void()> work) override;
    ScheduledWork every(Seconds interval, std::function<void()> work) override;

    void advance(Seconds by);
    void advanceMs(qint64 ms) { advance(Seconds(ms / 1000.0)); }
    void setNow(const QDateTime& instant) { m_now = instant; }
    // Number of pieces of work still armed.
    int pendingCount() const;
    // Seconds until the next armed work, or a negative number when none is armed.
    double secondsToNext() const;

private:
    struct Entry {
        std::weak_ptr<detail::WorkState> state;
        std::function<void()> work;
        qint64 intervalMs = 0; // 0 for once
    };
    ScheduledWork arm(Seconds delay, std::function<void()> work, bool repeat);

    QDateTime m_now;
    qint64 m_sequence = 0;
    std::map<std::tuple<qint64, qint64>, Entry> m_queue; // (due ms since epoch, sequence)
};

} // namespace norva::test
