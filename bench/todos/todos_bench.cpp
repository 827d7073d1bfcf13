// todos-bench: 5,000 to-dos in 20 lists in a temporary calendar folder. Prints the first load
// (off the main thread, until the store has published), the time from one item replaced by
// another program to the store's update, and the CPU used while nothing changes.
#include "MemoryPreferences.h"
#include "app/Clock.h"
#include "app/SettingsStore.h"
#include "reminders/RemindersStore.h"
#include "storage/ICalendarFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

using namespace norva;

namespace {

QByteArray todo(int list, int item)
{
    const QByteArray uid = "bench-" + QByteArray::number(list) + "-" + QByteArray::number(item);
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//bench//EN\r\nBEGIN:VTODO\r\nUID:" + uid +
           "\r\nDTSTAMP:20261118T090000Z\r\nSUMMARY:To-do number " + QByteArray::number(item) + " of list " +
           QByteArray::number(list) + "\r\nDUE:2026112" + QByteArray::number(item % 9) +
           "T170000Z\r\nSTATUS:NEEDS-ACTION\r\nCATEGORIES:bench\r\nEND:VTODO\r\nEND:VCALENDAR\r\n";
}

bool waitFor(RemindersStore& store, int timeoutMs)
{
    QEventLoop loop;
    QTimer::singleShot(timeoutMs, &loop, [&] { loop.exit(1); });
    QObject::connect(&store, &RemindersStore::changed, &loop, [&] { loop.exit(0); });
    return loop.exec() == 0;
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    constexpr int kLists = 20;
    constexpr int kPerList = 250;
    constexpr int kLoads = 5;
    constexpr int kChanges = 20;
    QTemporaryDir root;
    for (int list = 0; list < kLists; ++list) {
        const QString folder = root.path() + QStringLiteral("/list%1").arg(list);
        QDir().mkpath(folder);
        for (int item = 0; item < kPerList; ++item)
            writeCalendarItem(folder + QStringLiteral("/%1.ics").arg(item), todo(list, item));
    }
    test::MemoryPreferences preferences;
    SettingsStore settings(preferences);

    QList<double> loads;
    for (int round = 0; round < kLoads; ++round) {
        RemindersStore store(root.path(), settings, systemClock());
        QElapsedTimer timer;
        timer.start();
        store.start();
        if (!waitFor(store, 30000) || store.reminders().size() != kLists * kPerList) {
            std::fprintf(stderr, "the first load did not finish\n");
            return 1;
        }
        loads.append(timer.nsecsElapsed() / 1e6);
    }

    RemindersStore store(root.path(), settings, systemClock());
    store.start();
    waitFor(store, 30000);
    QList<double> changes;
    for (int round = 0; round < kChanges; ++round) {
        const QString target = root.path() + QStringLiteral("/list7/%1.ics").arg(round);
        QByteArray bytes = todo(7, round);
        bytes.replace("SUMMARY:", "SUMMARY:changed " + QByteArray::number(round) + " ");
        QElapsedTimer timer;
        timer.start();
        writeCalendarItem(target, bytes); // as todoman and vdirsyncer write: a new file moved in
        if (!waitFor(store, 5000)) {
            std::fprintf(stderr, "a change was not seen\n");
            return 1;
        }
        changes.append(timer.nsecsElapsed() / 1e6);
    }

    const double before = cpuSeconds();
    QEventLoop idle;
    QTimer::singleShot(3000, &idle, &QEventLoop::quit);
    idle.exec();
    const double idleCpu = cpuSeconds() - before;

    std::printf("%-52s %10s\n", "measure", "value");
    std::printf("%-52s %8.1f ms\n", "first load, 5,000 to-dos in 20 lists (median of 5)", median(loads));
    std::printf("%-52s %8.1f ms\n", "first load, slowest of 5",
                *std::max_element(loads.cbegin(), loads.cend()));
    std::printf("%-52s %8.1f ms\n", "one file replaced -> store updated (median of 20)", median(changes));
    std::printf("%-52s %8.1f ms\n", "one file replaced, slowest of 20",
                *std::max_element(changes.cbegin(), changes.cend()));
    std::printf("%-52s %8.1f ms\n", "CPU used in 3 s while nothing changes", idleCpu * 1000);
    return 0;
}
