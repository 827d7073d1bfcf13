#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "calendar/EventWriter.h"
#include "calendar/VdirEventStore.h"
#include "storage/VdirWatch.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace norva;

namespace {

const QTimeZone kLondon("Europe/London");
const QDateTime kNow(QDate(2027, 3, 20), QTime(10, 0), Qt::UTC);
const EventWindow kWindow{kNow.addSecs(-3600), kNow.addDays(14)};

// khal set up in the temporary home: one calendar "work" in the vdir root, London time, and
// plain ISO dates so its lines can be compared.
QString khalConfig(const QString& root)
{
    return QStringLiteral("[calendars]\n[[work]]\npath = %1/work\ntype = calendar\n"
                          "[locale]\ntimeformat = %H:%M\ndateformat = %Y-%m-%d\nlongdateformat = %Y-%m-%d\n"
                          "datetimeformat = %Y-%m-%d %H:%M\nlongdatetimeformat = %Y-%m-%d %H:%M\n"
                          "local_timezone = Europe/London\ndefault_timezone = Europe/London\n"
                          "[default]\ndefault_calendar = work\n")
        .arg(root);
}

struct KhalHome {
    test::TempHome home;
    QString root = home.path() + QStringLiteral("/.local/share/calendars");
    test::ManualClock clock{kNow};
    VdirEventStore store{root, clock, kLondon};

    KhalHome()
    {
        QDir().mkpath(root + QStringLiteral("/work"));
        home.write(QStringLiteral(".local/share/calendars/work/displayname"), "Work");
        home.write(QStringLiteral(".local/share/calendars/work/color"), "#3a87ad");
        home.write(QStringLiteral(".config/khal/config"), khalConfig(root).toUtf8());
    }

    QString khal(const QStringList& arguments) const
    {
        QProcess process;
        process.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
        process.start(QStringLiteral("khal"), arguments);
        if (!process.waitForFinished(60000))
            return QStringLiteral("(khal did not finish)");
        return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError()).trimmed();
    }

    // Waits for the folder watch to read what another program (or Norva) just wrote: its settle
    // time on the test's clock, then the read off the main thread.
    void settle()
    {
        QSignalSpy read(&store, &EventStore::changed);
        [&] { QTRY_VERIFY_WITH_TIMEOUT((clock.advance(VdirWatch::kSettle), read.count() > 0), 20000); }();
    }

    // Reads the window as the manager would.
    EventStore::Snapshot snapshot()
    {
        std::optional<EventStore::Snapshot> got;
        store.fetch(kWindow, [&](EventStore::Snapshot snapshot) { got = std::move(snapshot); });
        [&] { QTRY_VERIFY_WITH_TIMEOUT(got.has_value(), 20000); }();
        return got.value_or(EventStore::Snapshot{});
    }

    std::optional<EventInfo> find(const QString& title)
    {
        for (const EventInfo& event : snapshot().events) {
            if (event.title == title)
                return event;
        }
        return std::nullopt;
    }
};

bool haveKhal()
{
    return !QStandardPaths::findExecutable(QStringLiteral("khal")).isEmpty();
}

} // namespace

// The calendars folder shared with khal: what khal writes shows in Norva, what Norva writes shows
// in khal at the same local time, also across the spring clock change (28 March 2027 in London).
class VdirEventStoreTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        if (!haveKhal())
            QSKIP("khal is not installed (tools/install-deps.sh --with-tests)");
    }

    void anEventMadeWithKhalAppearsInNorva()
    {
        KhalHome k;
        k.store.start();
        k.settle();
        k.khal({QStringLiteral("new"), QStringLiteral("-a"), QStringLiteral("work"),
                QStringLiteral("2027-03-29"), QStringLiteral("09:00"), QStringLiteral("09:30"),
                QStringLiteral("Dentist")});
        k.settle();
        const auto dentist = k.find(QStringLiteral("Dentist"));
        QVERIFY(dentist);
        QCOMPARE(dentist->start.toTimeZone(kLondon).toString(Qt::ISODate),
                 QStringLiteral("2027-03-29T09:00:00+01:00"));
        QCOMPARE(dentist->ekOccurrence.calendarId, QStringLiteral("work"));
        const auto calendars = k.snapshot().calendars;
        QCOMPARE(calendars.size(), 1);
        QCOMPARE(calendars[0].name, QStringLiteral("Work"));
        QCOMPARE(calendars[0].color, QStringLiteral("#3a87ad"));
    }

    void norvasEventsShowInKhalAtTheSameLocalTime_data()
    {
        QTest::addColumn<QDate>("day");
        QTest::newRow("before the clock change (GMT)") << QDate(2027, 3, 26);
        QTest::newRow("after the clock change (BST)") << QDate(2027, 3, 29);
    }
    void norvasEventsShowInKhalAtTheSameLocalTime()
    {
        QFETCH(QDate, day);
        KhalHome k;
        k.store.start();
        k.settle();
        k.snapshot();
        const EventDraft draft{QStringLiteral("Planning"), QDateTime(day, QTime(9, 0), kLondon),
                               QDateTime(day, QTime(9, 45), kLondon),
                               QUrl(QStringLiteral("https://meet.google.com/abc-defg-hij"))};
        QCOMPARE(k.store.add(QStringLiteral("work"), draft), std::nullopt);
        k.settle();
        const QString listed = k.khal({QStringLiteral("list"), QStringLiteral("--format"),
                                       QStringLiteral("{start-time}-{end-time} {title}"),
                                       day.toString(Qt::ISODate), QStringLiteral("1d")});
        QVERIFY2(listed.contains(QStringLiteral("09:00-09:45 Planning")), qPrintable(listed));

        // Moved by Norva to the afternoon: khal follows.
        const auto planning = k.find(QStringLiteral("Planning"));
        QVERIFY(planning);
        QCOMPARE(planning->joinUrl, draft.joinUrl);
        EventDraft later = draft;
        later.start = QDateTime(day, QTime(14, 0), kLondon);
        later.end = QDateTime(day, QTime(15, 0), kLondon);
        QCOMPARE(k.store.change(planning->ekOccurrence, later), std::nullopt);
        k.settle();
        const QString moved = k.khal({QStringLiteral("list"), QStringLiteral("--format"),
                                      QStringLiteral("{start-time}-{end-time} {title}"),
                                      day.toString(Qt::ISODate), QStringLiteral("1d")});
        QVERIFY2(moved.contains(QStringLiteral("14:00-15:00 Planning")), qPrintable(moved));
        QVERIFY2(!moved.contains(QStringLiteral("09:00")), qPrintable(moved));
    }

    void changingKeepsWhatNorvaDoesNotKnowAndDeletingRemovesTheFile()
    {
        KhalHome k;
        const QString path =
            k.home.write(QStringLiteral(".local/share/calendars/work/review.ics"), R"(BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//Other//EN
BEGIN:VEVENT
UID:review
DTSTAMP:20270301T000000Z
DTSTART:20270322T150000Z
DTEND:20270322T160000Z
SUMMARY:Review
X-OTHER-APP-COLOUR:teal
BEGIN:VALARM
ACTION:DISPLAY
TRIGGER:-PT5M
DESCRIPTION:Review soon
END:VALARM
END:VEVENT
END:VCALENDAR
)");
        k.store.start();
        k.settle();
        const auto review = k.find(QStringLiteral("Review"));
        QVERIFY(review);
        EventDraft draft{
            QStringLiteral("Review (moved)"), review->start.addSecs(3600), review->end.addSecs(3600), {}};
        QCOMPARE(k.store.change(review->ekOccurrence, draft), std::nullopt);
        k.settle();
        const QByteArray changed = test::TempHome::read(path);
        QVERIFY(changed.contains("X-OTHER-APP-COLOUR:teal"));
        QVERIFY(changed.contains("BEGIN:VALARM"));
        QVERIFY(changed.contains("SUMMARY:Review (moved)"));
        const auto moved = k.find(QStringLiteral("Review (moved)"));
        QVERIFY(moved);
        QCOMPARE(moved->start, review->start.addSecs(3600));
        QCOMPARE(k.store.remove(moved->ekOccurrence), std::nullopt);
        k.settle();
        QVERIFY(!QFile::exists(path));
        QVERIFY(!k.find(QStringLiteral("Review (moved)")));
    }

    void oneOccurrenceOfASeriesIsMovedOrDeletedAlone()
    {
        KhalHome k;
        k.home.write(QStringLiteral(".local/share/calendars/work/standup.ics"), R"(BEGIN:VCALENDAR
VERSION:2.0
PRODID:-//Other//EN
BEGIN:VEVENT
UID:standup
DTSTAMP:20270301T000000Z
DTSTART;TZID=Europe/London:20270322T093000
DTEND;TZID=Europe/London:20270322T094500
RRULE:FREQ=DAILY;COUNT=5
SUMMARY:Stand-up
END:VEVENT
END:VCALENDAR
)");
        k.store.start();
        k.settle();
        QList<EventInfo> standups = k.snapshot().events;
        QCOMPARE(standups.size(), 5);
        std::sort(standups.begin(), standups.end(), [](auto& a, auto& b) { return a.start < b.start; });
        QCOMPARE(k.store.remove(standups[1].ekOccurrence), std::nullopt);
        k.settle();
        EventDraft moved{QStringLiteral("Stand-up (late)"),
                         standups[2].start.addSecs(7200),
                         standups[2].end.addSecs(7200),
                         {}};
        QCOMPARE(k.store.change(standups[2].ekOccurrence, moved), std::nullopt);
        k.settle();
        QStringList seen;
        for (const EventInfo& event : k.snapshot().events)
            seen << event.start.toTimeZone(kLondon).toString(QStringLiteral("dd HH:mm ")) + event.title;
        seen.sort();
        QCOMPARE(seen, (QStringList{"22 09:30 Stand-up", "24 11:30 Stand-up (late)", "25 09:30 Stand-up",
                                    "26 09:30 Stand-up"}));
        const QString listed = k.khal({QStringLiteral("list"), QStringLiteral("--format"),
                                       QStringLiteral("{start-date} {start-time} {title}"),
                                       QStringLiteral("2027-03-22"), QStringLiteral("7d")});
        QVERIFY2(listed.contains(QStringLiteral("2027-03-24 11:30 Stand-up (late)")), qPrintable(listed));
        QVERIFY2(!listed.contains(QStringLiteral("2027-03-23")), qPrintable(listed));
    }

    void brokenFilesAreSkippedWithOneLineEachAndNeverRewritten()
    {
        KhalHome k;
        const QByteArray garbage = "this is not a calendar\n";
        const QByteArray noStart =
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\nUID:x\r\nSUMMARY:No start\r\n"
            "END:VEVENT\r\nEND:VCALENDAR\r\n";
        const QString first =
            k.home.write(QStringLiteral(".local/share/calendars/work/garbage.ics"), garbage);
        const QString second =
            k.home.write(QStringLiteral(".local/share/calendars/work/nostart.ics"), noStart);
        k.home.write(
            QStringLiteral(".local/share/calendars/work/good.ics"),
            EventWriter::newEvent({QStringLiteral("Good"), kNow.addDays(1), kNow.addDays(1).addSecs(60), {}},
                                  QStringLiteral("good"), kNow, kLondon));
        test::LogCapture log;
        k.store.start();
        k.settle();
        QVERIFY(k.find(QStringLiteral("Good")));
        k.store.add(QStringLiteral("work"),
                    {QStringLiteral("Another"), kNow.addDays(2), kNow.addDays(2).addSecs(60), {}});
        k.settle();
        QVERIFY(k.find(QStringLiteral("Another")));
        QCOMPARE(log.count(QStringLiteral("garbage.ics")), 1);
        QCOMPARE(log.count(QStringLiteral("nostart.ics")), 1);
        QCOMPARE(test::TempHome::read(first), garbage);
        QCOMPARE(test::TempHome::read(second), noStart);
    }
};

NORVA_TEST(VdirEventStoreTest)
#include "tst_VdirEventStore.moc"
