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

    // Moving or deleting one occurrence is followed through khal in the event store's tests; here,
    // an occurrence the file does not hold is refused rather than written as a new one.
    void anOccurrenceTheFileDoesNotHoldIsRefused()
    {
        const QByteArray series =
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Other//EN\r\nBEGIN:VEVENT\r\n"
            "UID:daily\r\nDTSTAMP:20270301T000000Z\r\nDTSTART;TZID=Europe/London:20270322T093000\r\n"
            "DURATION:PT15M\r\nRRULE:FREQ=DAILY;COUNT=3\r\nSUMMARY:Daily\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
        const EventInfo first = readBack(series).first();
        QVERIFY(EventWriter::withoutOccurrence(series, first.ekOccurrence));
        EventOccurrence gone = first.ekOccurrence;
        gone.uid = QStringLiteral("not-here");
        const EventDraft later{QStringLiteral("Daily (late)"), first.start.addSecs(3600), first.end, {}};
        QVERIFY(!EventWriter::changed(series, gone, later, kStamp, kLondon));
        QVERIFY(!EventWriter::withoutOccurrence(series, gone));
    }
};

NORVA_TEST(EventWriterTest)
#include "tst_EventWriter.moc"
