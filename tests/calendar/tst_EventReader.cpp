#include "TestMain.h"

#include "calendar/EventReader.h"

#include <QTest>

using namespace norva;

namespace {

const QTimeZone kLondon("Europe/London");

QByteArray calendar(const QByteArray& body)
{
    QByteArray text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Test//Shapes//EN\r\n" + body;
    text.replace("\n", "\r\n").replace("\r\r\n", "\r\n");
    // Every event carries the stamp the format asks for; nothing here reads it.
    text.replace("BEGIN:VEVENT\r\n", "BEGIN:VEVENT\r\nDTSTAMP:20261101T000000Z\r\n");
    return text + "END:VCALENDAR\r\n";
}

EventWindow windowOf(const QString& from, const QString& to)
{
    return {QDateTime::fromString(from, Qt::ISODate), QDateTime::fromString(to, Qt::ISODate)};
}

// One occurrence as the person's clock in London shows it, with what the notch cares about.
QString describe(const EventInfo& event)
{
    const QDateTime start = event.start.toTimeZone(kLondon);
    const QDateTime end = event.end.toTimeZone(kLondon);
    QString text = event.allDay ? start.toString(QStringLiteral("yyyy-MM-dd")) + QStringLiteral("..") +
                                      end.toString(QStringLiteral("yyyy-MM-dd"))
                                : start.toString(QStringLiteral("yyyy-MM-dd HH:mm")) + QLatin1Char('-') +
                                      end.toString(QStringLiteral("HH:mm"));
    text += QLatin1Char(' ') + event.title;
    if (event.cancelled)
        text += QStringLiteral(" [cancelled]");
    for (const EventAttendee& attendee : event.attendees) {
        if (attendee.declined)
            text += QStringLiteral(" [declined by ") + attendee.address + QLatin1Char(']');
    }
    return text;
}

const QByteArray kNewYorkZone = R"(BEGIN:VTIMEZONE
TZID:America/New_York
BEGIN:DAYLIGHT
TZOFFSETFROM:-0500
TZOFFSETTO:-0400
TZNAME:EDT
DTSTART:19700308T020000
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU
END:DAYLIGHT
BEGIN:STANDARD
TZOFFSETFROM:-0400
TZOFFSETTO:-0500
TZNAME:EST
DTSTART:19701101T020000
RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU
END:STANDARD
END:VTIMEZONE
)";

} // namespace

// Real-world shapes of event files, each read into the occurrences a person would expect to see.
class EventReaderTest : public QObject {
    Q_OBJECT

private slots:
    void shapesReadAsThePersonExpects_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QStringList>("expected");

        QTest::newRow("weekly with an exception and a moved occurrence")
            << calendar(R"(BEGIN:VEVENT
UID:standup-1
DTSTART;TZID=Europe/London:20261102T093000
DTEND;TZID=Europe/London:20261102T094500
RRULE:FREQ=WEEKLY;BYDAY=MO,WE
EXDATE;TZID=Europe/London:20261118T093000
SUMMARY:Stand-up
END:VEVENT
BEGIN:VEVENT
UID:standup-1
RECURRENCE-ID;TZID=Europe/London:20261123T093000
DTSTART;TZID=Europe/London:20261123T110000
DTEND;TZID=Europe/London:20261123T111500
SUMMARY:Stand-up (moved)
END:VEVENT
)") << "2026-11-16T00:00:00Z"
            << QStringLiteral("2026-11-27T00:00:00Z")
            << QStringList{"2026-11-16 09:30-09:45 Stand-up", "2026-11-23 11:00-11:15 Stand-up (moved)",
                           "2026-11-25 09:30-09:45 Stand-up"};

        QTest::newRow("created in New York, across both clock changes")
            << calendar(kNewYorkZone + R"(BEGIN:VEVENT
UID:ny-sync
DTSTART;TZID=America/New_York:20270301T100000
DTEND;TZID=America/New_York:20270301T103000
RRULE:FREQ=WEEKLY
SUMMARY:NY sync
END:VEVENT
)") << "2027-03-07T00:00:00Z"
            << QStringLiteral("2027-04-01T00:00:00Z")
            << QStringList{"2027-03-08 15:00-15:30 NY sync", "2027-03-15 14:00-14:30 NY sync",
                           "2027-03-22 14:00-14:30 NY sync", "2027-03-29 15:00-15:30 NY sync"};

        QTest::newRow("zone by the system's database, not in the file")
            << calendar(R"(BEGIN:VEVENT
UID:berlin
DTSTART;TZID=Europe/Berlin:20261119T140000
DTEND;TZID=Europe/Berlin:20261119T150000
SUMMARY:Berlin review
END:VEVENT
)") << "2026-11-18T00:00:00Z"
            << QStringLiteral("2026-11-20T00:00:00Z") << QStringList{"2026-11-19 13:00-14:00 Berlin review"};

        QTest::newRow("Outlook's Windows zone name") << calendar(R"(BEGIN:VEVENT
UID:outlook
DTSTART;TZID="W. Europe Standard Time":20261119T090000
DTEND;TZID="W. Europe Standard Time":20261119T093000
SUMMARY:Outlook call
END:VEVENT
)") << "2026-11-18T00:00:00Z" << QStringLiteral("2026-11-20T00:00:00Z")
                                                     << QStringList{"2026-11-19 08:00-08:30 Outlook call"};

        QTest::newRow("all-day over several days") << calendar(R"(BEGIN:VEVENT
UID:offsite
DTSTART;VALUE=DATE:20261120
DTEND;VALUE=DATE:20261123
SUMMARY:Offsite
END:VEVENT
)") << "2026-11-18T00:00:00Z" << QStringLiteral("2026-12-02T00:00:00Z")
                                                   << QStringList{"2026-11-20..2026-11-23 Offsite"};

        QTest::newRow("all-day across the spring clock change stays whole days")
            << calendar(R"(BEGIN:VEVENT
UID:holiday
DTSTART;VALUE=DATE:20270327
RRULE:FREQ=DAILY;COUNT=3
SUMMARY:Holiday
END:VEVENT
)") << "2027-03-26T00:00:00Z"
            << QStringLiteral("2027-04-01T00:00:00Z")
            << QStringList{"2027-03-27..2027-03-28 Holiday", "2027-03-28..2027-03-29 Holiday",
                           "2027-03-29..2027-03-30 Holiday"};

        QTest::newRow("one cancelled occurrence") << calendar(R"(BEGIN:VEVENT
UID:one-on-one
DTSTART:20261117T150000Z
DURATION:PT30M
RRULE:FREQ=DAILY;COUNT=3
SUMMARY:1:1
END:VEVENT
BEGIN:VEVENT
UID:one-on-one
RECURRENCE-ID:20261118T150000Z
DTSTART:20261118T150000Z
DURATION:PT30M
STATUS:CANCELLED
SUMMARY:1:1
END:VEVENT
)") << "2026-11-17T00:00:00Z" << QStringLiteral("2026-11-30T00:00:00Z")
                                                  << QStringList{"2026-11-17 15:00-15:30 1:1",
                                                                 "2026-11-18 15:00-15:30 1:1 [cancelled]",
                                                                 "2026-11-19 15:00-15:30 1:1"};

        QTest::newRow("declined invitation")
            << calendar(R"(BEGIN:VEVENT
UID:allhands
DTSTART:20261119T160000Z
DTEND:20261119T170000Z
ORGANIZER;CN=Boss:mailto:boss@example.com
ATTENDEE;CN=Ada;PARTSTAT=DECLINED:mailto:Ada@Example.com
ATTENDEE;PARTSTAT=ACCEPTED:mailto:bob@example.com
SUMMARY:All hands
END:VEVENT
)") << "2026-11-18T00:00:00Z"
            << QStringLiteral("2026-11-20T00:00:00Z")
            << QStringList{"2026-11-19 16:00-17:00 All hands [declined by ada@example.com]"};

        QTest::newRow("floating time on the local clock") << calendar(R"(BEGIN:VEVENT
UID:floating
DTSTART:20270329T090000
DTEND:20270329T100000
SUMMARY:Gym
END:VEVENT
)") << "2027-03-28T00:00:00Z" << QStringLiteral("2027-03-30T00:00:00Z")
                                                          << QStringList{"2027-03-29 09:00-10:00 Gym"};

        QTest::newRow("extra dates and a daily rule that started years ago")
            << calendar(R"(BEGIN:VEVENT
UID:old-daily
DTSTART;TZID=Europe/London:20200106T080000
DTEND;TZID=Europe/London:20200106T081500
RRULE:FREQ=DAILY;INTERVAL=7
RDATE;TZID=Europe/London:20261120T120000
SUMMARY:Weekly note
END:VEVENT
)") << "2026-11-16T00:00:00Z"
            << QStringLiteral("2026-11-24T00:00:00Z")
            << QStringList{"2026-11-16 08:00-08:15 Weekly note", "2026-11-20 12:00-12:15 Weekly note",
                           "2026-11-23 08:00-08:15 Weekly note"};

        QTest::newRow("an event that started before the window and runs into it")
            << calendar(R"(BEGIN:VEVENT
UID:long
DTSTART:20261118T080000Z
DTEND:20261118T120000Z
SUMMARY:Workshop
END:VEVENT
BEGIN:VEVENT
UID:over
DTSTART:20261118T070000Z
DTEND:20261118T080000Z
SUMMARY:Over already
END:VEVENT
)") << "2026-11-18T09:00:00Z"
            << QStringLiteral("2026-12-02T10:00:00Z") << QStringList{"2026-11-18 08:00-12:00 Workshop"};
    }
    void shapesReadAsThePersonExpects()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, from);
        QFETCH(QString, to);
        const EventReader::Result result = EventReader::read(file, windowOf(from, to), kLondon);
        QVERIFY2(result.ok(), qPrintable(result.failure));
        QStringList seen;
        for (const EventInfo& event : result.events)
            seen << describe(event);
        std::sort(seen.begin(), seen.end());
        QTEST(seen, "expected");
    }

    void brokenFilesSayWhy_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::newRow("not iCalendar") << QByteArray("hello, world\n");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("a calendar without events") << calendar("");
        QTest::newRow("an event without a start")
            << calendar("BEGIN:VEVENT\nUID:x\nSUMMARY:No start\nEND:VEVENT\n");
        QTest::newRow("a start that is no time")
            << calendar("BEGIN:VEVENT\nUID:x\nDTSTART:tomorrow\nEND:VEVENT\n");
    }
    void brokenFilesSayWhy()
    {
        QFETCH(QByteArray, file);
        const auto result =
            EventReader::read(file, windowOf("2026-11-18T00:00:00Z", "2026-12-02T00:00:00Z"), kLondon);
        QVERIFY(!result.ok());
        QVERIFY(result.events.isEmpty());
    }

    void joinLinkAndOccurrenceAreKept()
    {
        const auto result =
            EventReader::read(calendar(R"(BEGIN:VEVENT
UID:review
DTSTART:20261119T160000Z
RRULE:FREQ=DAILY;COUNT=2
DURATION:PT1H
URL:https://intranet.example/review
LOCATION:Room 4
DESCRIPTION:Join: https://meet.google.com/abc-defg-hij\nThanks
SUMMARY:Review
END:VEVENT
)"),
                              windowOf("2026-11-18T00:00:00Z", "2026-12-02T00:00:00Z"), kLondon);
        QCOMPARE(result.events.size(), 2);
        QCOMPARE(result.events[1].joinUrl, QUrl(QStringLiteral("https://meet.google.com/abc-defg-hij")));
        QCOMPARE(result.events[1].ekOccurrence.uid, QStringLiteral("review"));
        QCOMPARE(result.events[1].ekOccurrence.recurrenceId,
                 QDateTime(QDate(2026, 11, 20), QTime(16, 0), Qt::UTC));
        QVERIFY(result.events[1].recurring);
    }
};

NORVA_TEST(EventReaderTest)
#include "tst_EventReader.moc"
