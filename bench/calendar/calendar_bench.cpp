// The meetings' figures: 2,000 events in 10 calendars, 200 of them repeating series, read from a
// vdir and laid out for the window of the calendar page (an hour ago to two weeks ahead).
//   calendar-bench [rounds]
// Prints the first read (scan, parse, digest and lay-out), a refresh with nothing changed (the
// window laid out again from what is kept), and a refresh after one file changed.
#include "app/Clock.h"
#include "calendar/EventWriter.h"
#include "calendar/VdirEventStore.h"
#include "storage/VdirWatch.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace norva;

namespace {

constexpr int kCalendars = 10;
constexpr int kEvents = 2000;
constexpr int kSeriesEvery = 10; // one event in ten repeats: 200 series
const QTimeZone kZone("Europe/London");

QByteArray series(int i, const QDateTime& now)
{
    // Weekly or daily, begun up to a year ago, with an exception date and a moved occurrence.
    const QDateTime first = now.addDays(-(i % 365)).addSecs(3600 * (8 + i % 9));
    const QString day = first.toTimeZone(kZone).toString(QStringLiteral("yyyyMMdd'T'HHmmss"));
    const QString moved = now.addDays(3).toTimeZone(kZone).toString(QStringLiteral("yyyyMMdd")) +
                          first.toTimeZone(kZone).toString(QStringLiteral("'T'HHmmss"));
    const QString rule =
        i % 20 == 0 ? QStringLiteral("FREQ=DAILY") : QStringLiteral("FREQ=WEEKLY;BYDAY=MO,WE,FR");
    return QStringLiteral("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Bench//EN\r\n"
                          "BEGIN:VEVENT\r\nUID:series-%1\r\nDTSTAMP:20260101T000000Z\r\n"
                          "DTSTART;TZID=Europe/London:%2\r\nDURATION:PT30M\r\nRRULE:%3\r\n"
                          "EXDATE;TZID=Europe/London:%4\r\nSUMMARY:Series %1\r\n"
                          "LOCATION:https://acme.zoom.us/j/%1\r\nEND:VEVENT\r\n"
                          "BEGIN:VEVENT\r\nUID:series-%1\r\nDTSTAMP:20260101T000000Z\r\n"
                          "RECURRENCE-ID;TZID=Europe/London:%5\r\nDTSTART;TZID=Europe/London:%5\r\n"
                          "DURATION:PT45M\r\nSUMMARY:Series %1 (moved)\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
        .arg(i)
        .arg(day, rule, day, moved)
        .toUtf8();
}

void writeFiles(const QString& root, const QDateTime& now)
{
    for (int c = 0; c < kCalendars; ++c)
        QDir().mkpath(QStringLiteral("%1/cal%2").arg(root).arg(c));
    for (int i = 0; i < kEvents; ++i) {
        const QString path = QStringLiteral("%1/cal%2/event-%3.ics").arg(root).arg(i % kCalendars).arg(i);
        QByteArray text;
        if (i % kSeriesEvery == 0) {
            text = series(i, now);
        } else {
            // One-off events spread over a year around now, so most lie outside the window.
            const QDateTime start = now.addSecs(qint64(i - kEvents / 2) * 4 * 3600);
            text = EventWriter::newEvent({QStringLiteral("Event %1").arg(i), start, start.addSecs(1800), {}},
                                         QStringLiteral("event-%1").arg(i), now, kZone);
        }
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(text);
    }
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values[values.size() / 2];
}

int fetchCount(VdirEventStore& store, const EventWindow& window, double* ms)
{
    QElapsedTimer timer;
    timer.start();
    int count = -1;
    store.fetch(window, [&](EventStore::Snapshot snapshot) { count = int(snapshot.events.size()); });
    while (count < 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    *ms = timer.nsecsElapsed() / 1e6;
    return count;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, atoi(argv[1])) : 9;
    Clock& clock = systemClock();
    const QDateTime now = clock.now();
    const EventWindow window{now.addSecs(-3600), now.addDays(14)};
    QList<double> firstReads, refreshes, changedReads;
    int events = 0;
    for (int round = 0; round < rounds; ++round) {
        QTemporaryDir dir;
        writeFiles(dir.path(), now);
        VdirEventStore store(dir.path(), clock, kZone);
        QElapsedTimer timer;
        timer.start();
        bool changed = false;
        QObject::connect(&store, &EventStore::changed, [&] { changed = true; });
        store.start();
        while (!store.hasLoaded())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        double ms = 0;
        events = fetchCount(store, window, &ms);
        firstReads << timer.nsecsElapsed() / 1e6;
        fetchCount(store, window, &ms);
        refreshes << ms;

        // One series edited by another program, written aside and moved into place as vdir tools do:
        // only its file is read again.
        const QString edited = QStringLiteral("%1/cal0/event-0.ics").arg(dir.path());
        QFile file(edited + QStringLiteral(".tmp"));
        file.open(QIODevice::WriteOnly);
        file.write(series(0, now).replace("SUMMARY:Series 0\r\n", "SUMMARY:Series 0 (renamed)\r\n"));
        file.close();
        std::rename(qPrintable(file.fileName()), qPrintable(edited));
        changed = false;
        timer.restart();
        while (!changed)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        fetchCount(store, window, &ms);
        changedReads << timer.nsecsElapsed() / 1e6;
    }
    std::printf("%d events in %d calendars (%d series), %d occurrences in the window, median of %d rounds\n",
                kEvents, kCalendars, kEvents / kSeriesEvery, events, rounds);
    std::printf("| first read: scan, parse, digest, lay out | %.1f ms |\n", median(firstReads));
    std::printf("| refresh, nothing changed (lay out only)  | %.1f ms |\n", median(refreshes));
    std::printf("| one file changed: re-read and lay out    | %.1f ms |\n", median(changedReads));
    return 0;
}
