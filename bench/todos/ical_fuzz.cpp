// ical-fuzz: seeded, time-bounded random and mutated iCalendar texts through the reader
// (ICalendarFile::parse), the to-do reading and the line editor. A crash, an out-of-bounds read
// (under the sanitizers) or a parse that takes far too long fails the run.
#include "reminders/TodoFile.h"
#include "storage/ICalendarFile.h"
#include "storage/ICalendarPatch.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <libical/ical.h>

#include <cstdio>
#include <random>

namespace {

constexpr qint64 kSlowNs = 2'000'000'000;

const QList<QByteArray> kLines = {
    "BEGIN:VCALENDAR",
    "END:VCALENDAR",
    "BEGIN:VTODO",
    "END:VTODO",
    "BEGIN:VEVENT",
    "END:VEVENT",
    "BEGIN:VALARM",
    "END:VALARM",
    "BEGIN:VTIMEZONE",
    "END:VTIMEZONE",
    "VERSION:2.0",
    "UID:x",
    "SUMMARY:call mum",
    "SUMMARY:a\\, b\\; c\\n",
    "DUE:20261118T170000Z",
    "DUE;VALUE=DATE:20261118",
    "DUE;TZID=Europe/Berlin:20261118T170000",
    "DUE;TZID=Nowhere/Else:20261118T170000",
    "DUE:garbage",
    "DTSTART:20261101T090000Z",
    "RRULE:FREQ=DAILY;COUNT=3",
    "RRULE:FREQ=SECONDLY",
    "RRULE:FREQ=YEARLY;BYMONTH=13",
    "RRULE:garbage",
    "RECURRENCE-ID:20261119T170000Z",
    "STATUS:COMPLETED",
    "STATUS:NOPE",
    "COMPLETED:20261118T100000Z",
    "PRIORITY:1",
    "PRIORITY:-7",
    "PRIORITY:99999999999",
    "X-THING;X-P=\"q\":v",
    "ATTACH:http://x",
    " folded",
    "\tfolded",
    "TRIGGER:-PT15M",
    "CATEGORIES:a,b",
    ";;;:",
    ":",
    "",
    "BEGIN:",
    "END:",
    "SUMMARY;LANGUAGE=en:é€😀",
};

QByteArray randomText(std::mt19937& random)
{
    QByteArray text = "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\n";
    const int lines = int(random() % 40);
    for (int i = 0; i < lines; ++i)
        text += kLines[random() % kLines.size()] + (random() % 7 == 0 ? "\n" : "\r\n");
    if (random() % 4 != 0)
        text += "END:VTODO\r\nEND:VCALENDAR\r\n";
    // Byte-level damage now and then: flips, cuts and stray bytes.
    const int damage = int(random() % 4);
    for (int i = 0; i < damage && !text.isEmpty(); ++i) {
        const qsizetype at = qsizetype(random() % text.size());
        switch (random() % 3) {
        case 0:
            text[at] = char(random() % 256);
            break;
        case 1:
            text.truncate(at);
            break;
        default:
            text.insert(at, char(random() % 256));
        }
    }
    return text;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    double seconds = 4;
    unsigned seed = 20261124;
    const QStringList args = app.arguments();
    for (qsizetype i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QStringLiteral("--seconds"))
            seconds = args[i + 1].toDouble();
        if (args[i] == QStringLiteral("--seed"))
            seed = args[i + 1].toUInt();
    }
    std::mt19937 random(seed);
    QElapsedTimer total;
    total.start();
    qint64 runs = 0;
    qint64 parsed = 0;
    const QDateTime now(QDate(2026, 11, 24), QTime(1, 0), Qt::UTC);
    while (total.elapsed() < qint64(seconds * 1000)) {
        const QByteArray text = randomText(random);
        QElapsedTimer one;
        one.start();
        if (const auto file = norva::ICalendarFile::parse(text)) {
            ++parsed;
            const auto contents = norva::TodoFile::read(*file);
            for (const auto& todo : contents.todos) {
                norva::TodoFile::setCompleted(text, todo.id, true, now);
                norva::TodoFile::setTitle(text, todo.id, QStringLiteral("t"), now);
            }
        }
        norva::ICalendarPatch("VTODO", "x").set(icalproperty_new_summary("s")).applyTo(text);
        if (one.nsecsElapsed() > kSlowNs) {
            std::fprintf(stderr, "one text took %lld ms:\n%s\n", one.elapsed(), text.constData());
            return 1;
        }
        ++runs;
    }
    std::printf("ical-fuzz: %lld texts (%lld read as calendars), seed %u, no fault\n", runs, parsed, seed);
    return 0;
}
