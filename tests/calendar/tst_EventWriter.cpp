#include "TestMain.h"

#include "calendar/EventReader.h"
#include "calendar/EventWriter.h"

#include <QTest>

using namespace norva;

namespace {

const QTimeZone kLondon("Europe/London");
const QDateTime kStamp(QDate(2027, 3, 20), QTime(10, 0), Qt::UTC);
const EventWindow kWindow{QDateTime(QDate(2027, 3, 1), QTime(0, 0), Qt::UTC),
                          QDateTime(QDate(2027, 4, 30), QTime(0, 0), Qt::UTC)};

QList<EventInfo> readBack(const QByteArray& text)
{
    const auto result = EventReader::read(text, kWindow, kLondon);
    return result.events;
}

} // namespace

// What Norva writes reads back as the person meant it, in their zone, with its link; changing one
// occurrence of a series leaves the others.
class EventWriterTest : public QObject {
    Q_OBJECT

private slots:
    void aNewEventKeepsItsLocalTimeAcrossTheClockChange_data()
    {
        QTest::addColumn<QDate>("day");
        QTest::newRow("GMT") << QDate(2027, 3, 26);
        QTest::newRow("BST") << QDate(2027, 3, 29);
    }
    void aNewEventKeepsItsLocalTimeAcrossTheClockChange()
    {
        QFETCH(QDate, day);
        const EventDraft draft{
            QStringLiteral("Planning, with \"quotes\"; and a comma"), QDateTime(day, QTime(9, 0), kLondon),
            QDateTime(day, QTime(9, 45), kLondon),
            QUrl(QStringLiteral("https://teams.microsoft.com/l/meetup-join/19%3ameeting_x%40thread.v2/0"))};
        const QByteArray text = EventWriter::newEvent(draft, QStringLiteral("uid-1"), kStamp, kLondon);
        QVERIFY(text.contains("DTSTART;TZID=Europe/London:"));
        QVERIFY(text.contains("BEGIN:VTIMEZONE"));
        const QList<EventInfo> events = readBack(text);
        QCOMPARE(events.size(), 1);
        QCOMPARE(events[0].title, draft.title);
        QCOMPARE(events[0].start, draft.start);
        QCOMPARE(events[0].end, draft.end);
        QCOMPARE(events[0].joinUrl, draft.joinUrl);
    }

    void oneOccurrenceChangesAndAnotherGoes()
    {
        const QByteArray series =
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Other//EN\r\nBEGIN:VEVENT\r\n"
            "UID:daily\r\nDTSTAMP:20270301T000000Z\r\nDTSTART;TZID=Europe/London:20270322T093000\r\n"
            "DURATION:PT15M\r\nRRULE:FREQ=DAILY;COUNT=3\r\nSUMMARY:Daily\r\n"
            "X-KEEP-ME:yes\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
        QList<EventInfo> events = readBack(series);
        QCOMPARE(events.size(), 3);
        std::sort(events.begin(), events.end(), [](auto& a, auto& b) { return a.start < b.start; });
        const EventDraft later{QStringLiteral("Daily (late)"), events[1].start.addSecs(3600),
                               events[1].end.addSecs(3600), std::nullopt};
        const auto changed = EventWriter::changed(series, events[1].ekOccurrence, later, kStamp, kLondon);
        QVERIFY(changed);
        QVERIFY(changed->contains("X-KEEP-ME:yes"));
        const auto fewer = EventWriter::withoutOccurrence(*changed, events[2].ekOccurrence);
        QVERIFY(fewer);
        QStringList seen;
        for (const EventInfo& event : readBack(*fewer))
            seen << event.start.toTimeZone(kLondon).toString(QStringLiteral("dd HH:mm ")) + event.title;
        seen.sort();
        QCOMPARE(seen, (QStringList{"22 09:30 Daily", "23 10:30 Daily (late)"}));

        EventOccurrence gone = events[0].ekOccurrence;
        gone.uid = QStringLiteral("not-here");
        QVERIFY(!EventWriter::changed(series, gone, later, kStamp, kLondon));
    }
};

NORVA_TEST(EventWriterTest)
#include "tst_EventWriter.moc"
