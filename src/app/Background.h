#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <functional>

namespace norva {

// Runs file, network or process work off the main thread and hands the result back to `receiver`'s
// thread by a queued call. If the receiver is gone by then, the result is dropped silently.
template <typename Result>
void runOffMain(QObject* receiver, std::function<Result()> work, std::function<void(Result)> done)
{
    QPointer<QObject> guard(receiver);
    QThreadPool::globalInstance()->start([guard, work = std::move(work), done = std::move(done)]() mutable {
        Result result = work();
        if (!guard)
            return;
        QMetaObject::invokeMethod(
            guard.data(),
            [guard, done = std::move(done), result = std::move(result)]() mutable {
                if (guard)
                    done(std::move(result));
            },
            Qt::QueuedConnection);
    });
}

} // namespace norva
