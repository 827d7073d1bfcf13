#include "app/Clock.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace norva {
namespace {

int toMilliseconds(Seconds delay)
{
    const double ms = std::max(0.0, delay.count() * 1000.0);
    return static_cast<int>(std::lround(std::min(ms, 2.0e9)));
}

// QTimer-backed clock: each piece of work owns one timer, freed when it fires once or is cancelled.
class QtClock final : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }

    ScheduledWork after(Seconds delay, std::function<void()> work) override
    {
        return arm(delay, std::move(work), true);
    }

    ScheduledWork every(Seconds interval, std::function<void()> work) override
    {
        return arm(interval, std::move(work), false);
    }

private:
    static ScheduledWork arm(Seconds delay, std::function<void()> work, bool once)
    {
        auto state = std::make_shared<detail::WorkState>();
        auto* timer = new QTimer;
        timer->setSingleShot(once);
        timer->setTimerType(delay.count() < 2.0 ? Qt::PreciseTimer : Qt::CoarseTimer);
        timer->setInterval(toMilliseconds(delay));
        QPointer<QTimer> guard(timer);
        state->onCancel = [guard] {
            if (guard) {
                guard->stop();
                guard->deleteLater();
            }
        };
        // The lambda holds the state weakly: the handle owns it.
        std::weak_ptr<detail::WorkState> weak = state;
        QObject::connect(timer, &QTimer::timeout, timer, [timer, weak, work = std::move(work), once] {
            auto alive = weak.lock();
            if (!alive || alive->cancelled) {
                timer->deleteLater();
                return;
            }
            if (once) {
                alive->cancelled = true;
                timer->deleteLater();
            }
            work();
        });
        timer->start();
        return ScheduledWork(state);
    }
};

} // namespace

Clock& systemClock()
{
    static QtClock clock;
    return clock;
}

} // namespace norva
