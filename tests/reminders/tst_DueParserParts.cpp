// The due-date parser's other entries: the typed clock, the filtered date detections, the clock
// text, the day count, its log lines, and reading from several threads at once.
#include "LogCapture.h"
#include "TableRows.h"
#include "TestMain.h"

#include "reminders/DueParser.h"
#include "reminders/DuePatterns.h"

#include <QtTest>

#include <thread>
#include <vector>

using namespace norva::due;
using norva::test::textRow;

namespace {

const QTimeZone kLondon("Europe/London");
const QTimeZone kNewYork("America/New_York");
const Calendar kLondonCalendar{kLondon, Qt::Monday};
const QLocale kBritish("en_GB");
const QDateTime kNow(QDate(2026, 11, 18), QTime(10, 0), kLondon);

// Stands in for a platform detector that reports whatever spans it is told to, so that the filter
// in front of it can be tried on spans Norva's own detector would never report.
class SpanDetector : public DateDetector {
public:
    explicit SpanDetector(QList<TextRange> spans, std::optional<Clock> clock = std::nullopt)
        : m_spans(std::move(spans)), m_clock(clock)
    {}
    QList<DetectedDate> detect(const QString&, const QDateTime&, const Calendar&,
                               const QLocale&) const override
    {
        QList<DetectedDate> dates;
        for (const TextRange& span : m_spans)
            dates.append({span, QDate(2026, 12, 4), m_clock});
        return dates;
    }

private:
    QList<TextRange> m_spans;
    std::optional<Clock> m_clock;
};

DueParser parserReporting(QList<TextRange> spans, std::optional<Clock> clock = std::nullopt)
{
    return DueParser([spans, clock] {
        return DetectorStart{std::make_shared<SpanDetector>(spans, clock), {}};
    });
}

} // namespace

class DueParserParts : public QObject {
    Q_OBJECT
private slots:
    void typedClockIsTheTimeAsTyped_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("hour"); // -1: no time typed
        QTest::addColumn<int>("minute");
        QTest::newRow("am/pm") << "call at 5pm" << 17 << 0;
        QTest::newRow("written with p") << "call 5:30p" << 17 << 30;
        QTest::newRow("12am") << "at 12am" << 0 << 0;
        QTest::newRow("leading zero") << "at 09" << 9 << 0;
        QTest::newRow("plain stays plain") << "at 9 in the evening" << 9 << 0;
        QTest::newRow("dotted") << "dentist 9.30" << 9 << 30;
        QTest::newRow("h") << "dentist 9h30" << 9 << 30;
        QTest::newRow("o'clock") << "at 5 o'clock" << 5 << 0;
        QTest::newRow("noon") << "lunch at noon" << 12 << 0;
        QTest::newRow("midnight") << "deploy at midnight" << 0 << 0;
        QTest::newRow("after a day word") << "tomorrow 5 call" << 5 << 0;
        QTest::newRow("am/pm first") << "at 9 or 5pm" << 17 << 0;
        QTest::newRow("13pm") << "call 13pm" << -1 << 0;
        QTest::newRow("5:75pm") << "call 5:75pm" << -1 << 0;
        QTest::newRow("version") << "version 2.5" << -1 << 0;
        QTest::newRow("date") << "on 3/4" << -1 << 0;
        QTest::newRow("no time") << "buy milk tomorrow" << -1 << 0;
    }
    void typedClockIsTheTimeAsTyped()
    {
        QFETCH(QString, text);
        QFETCH(int, hour);
        const auto clock = DueParser().typedClock(text);
        if (hour < 0) {
            QVERIFY(!clock);
            return;
        }
        QVERIFY(clock);
        QCOMPARE(clock->hour, hour);
        QTEST(clock->minute, "minute");
    }

    void detectionsDropNumbersThatOnlyLookLikeDates_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qsizetype>("start");
        QTest::addColumn<qsizetype>("length");
        QTest::addColumn<bool>("kept");
        QTest::newRow("version number") << "version 2.5 notes" << qsizetype(8) << qsizetype(3) << false;
        QTest::newRow("fraction") << "page 3/4" << qsizetype(5) << qsizetype(3) << false;
        QTest::newRow("range") << "pages 10-12" << qsizetype(6) << qsizetype(5) << false;
        QTest::newRow("ordinal") << "3rd floor" << qsizetype(0) << qsizetype(3) << false;
        QTest::newRow("on a slashed date") << "invoice on 3/4" << qsizetype(11) << qsizetype(3) << true;
        QTest::newRow("the ordinal") << "pay on the 3rd" << qsizetype(11) << qsizetype(3) << true;
        QTest::newRow("a clock beside it") << "call at 3/4" << qsizetype(8) << qsizetype(3) << true;
        QTest::newRow("full slashed date") << "invoice 3/4/2026" << qsizetype(8) << qsizetype(8) << true;
        QTest::newRow("month name") << "meet dec 4" << qsizetype(5) << qsizetype(5) << true;
        QTest::newRow("glued to letters") << "abc2026x" << qsizetype(3) << qsizetype(4) << false;
        QTest::newRow("glued to digits") << "call 12025 now" << qsizetype(6) << qsizetype(4) << false;
        QTest::newRow("standing alone") << "call 2026 now" << qsizetype(5) << qsizetype(4) << true;
        QTest::newRow("beyond the text") << "short" << qsizetype(3) << qsizetype(9) << false;
        QTest::newRow("empty span") << "short" << qsizetype(1) << qsizetype(0) << false;
    }
    void detectionsDropNumbersThatOnlyLookLikeDates()
    {
        QFETCH(QString, text);
        QFETCH(qsizetype, start);
        QFETCH(qsizetype, length);
        QFETCH(bool, kept);
        const auto found =
            parserReporting({{start, length}}).detections(text, kNow, kLondonCalendar, kBritish);
        QCOMPARE(found.size(), kept ? 1 : 0);
        if (kept)
            QCOMPARE(found.front().range, (TextRange{start, length}));
    }

    // The stand-in detector reads every span as Friday 4 December, at 15:30 where it says a time. A
    // weekday alone is left to the day word; the detector's time counts only where the rules read none.
    void detectedDatesGiveWayToTheRules_data()
    {
        for (const char* column : {"text", "span", "detectorTime", "due", "title"})
            QTest::addColumn<QString>(column);
        textRow("a weekday alone", {"next friday call bank", "5 6", "", "2026-11-27T00:00:00Z", "call bank"});
        textRow("a weekday with its date",
                {"friday 4 december gig", "0 17", "", "2026-12-04T00:00:00Z", "gig"});
        textRow("the detector's time", {"meet dec 4", "5 5", "15:30", "2026-12-04T15:30:00Z", "meet"});
        textRow("the rules' time", {"meet dec 4 at 5pm", "5 5", "15:30", "2026-12-04T17:00:00Z", "meet"});
    }
    void detectedDatesGiveWayToTheRules()
    {
        QFETCH(QString, text);
        QFETCH(QString, span);
        QFETCH(QString, detectorTime);
        QFETCH(QString, due);
        const QDateTime dueAt = QDateTime::fromString(due, Qt::ISODate);
        const QTime time = QTime::fromString(detectorTime, QStringLiteral("HH:mm"));
        const auto reading =
            parserReporting(
                {{span.section(QLatin1Char(' '), 0, 0).toInt(), span.section(QLatin1Char(' '), 1).toInt()}},
                time.isValid() ? std::optional(Clock{time.hour(), time.minute()}) : std::nullopt)
                .parse(text, kNow, kLondonCalendar, kBritish);
        QVERIFY(reading);
        QCOMPARE(reading->date, dueAt);
        QCOMPARE(reading->hasTime, dueAt.time() != QTime(0, 0));
        QTEST(reading->title, "title");
    }

    void detectionsTellTodayAndThePast()
    {
        const DueParser parser;
        const auto today = parser.detections(QStringLiteral("meet nov 18"), kNow, kLondonCalendar, kBritish);
        QCOMPARE(today.size(), 1);
        QCOMPARE(today.front().day, QDate(2026, 11, 18));
        QVERIFY(today.front().isOnToday);
        QVERIFY(!today.front().isBeforeToday);
        QCOMPARE(today.front().weekday, 4); // Wednesday, counting from Sunday = 1

        const auto past = parser.detections(QStringLiteral("paid 2026-11-01, due 2026-12-04"), kNow,
                                            kLondonCalendar, kBritish);
        QCOMPARE(past.size(), 2);
        QVERIFY(past.at(0).isBeforeToday);
        QVERIFY(!past.at(0).isOnToday);
        QCOMPARE(past.at(1).day, QDate(2026, 12, 4));
        QCOMPARE(past.at(1).weekday, 6); // Friday
        QCOMPARE(past.at(1).range, (TextRange{21, 10}));
    }

    void clockTextUsesOrdinarySpaces_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("zone");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const char* locale, const char* zone, const char* text) {
            QTest::newRow(name) << QString::fromLatin1(locale) << QString::fromLatin1(zone)
                                << QString::fromLatin1(text);
        };
        row("en_GB London", "en_GB", "Europe/London", "17:00");
        row("en_US London", "en_US", "Europe/London", "5:00 PM");
        row("en_US New York", "en_US", "America/New_York", "12:00 PM");
        row("C London, without seconds", "C", "Europe/London", "17:00");
        row("de_DE New York", "de_DE", "America/New_York", "12:00");
    }
    void clockTextUsesOrdinarySpaces()
    {
        QFETCH(QString, locale);
        QFETCH(QString, zone);
        const QDateTime fivePmInLondon(QDate(2026, 11, 18), QTime(17, 0), QTimeZone::utc());
        const Calendar calendar{QTimeZone(zone.toUtf8()), Qt::Monday};
        const QString text = DueParser::clockText(fivePmInLondon, calendar, QLocale(locale));
        QTEST(text, "expected");
        QVERIFY(!text.contains(QChar(0x202F)));
        QVERIFY(!text.contains(QChar(0x00A0)));
    }

    void daysAheadCountsCalendarDays_data()
    {
        QTest::addColumn<QString>("zone");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("of");
        QTest::addColumn<int>("days");
        const auto row = [](const char* name, const char* zone, const char* from, const char* of, int days) {
            QTest::newRow(name) << QString::fromLatin1(zone) << QString::fromLatin1(from)
                                << QString::fromLatin1(of) << days;
        };
        row("same day", "Europe/London", "2026-11-18T00:10:00Z", "2026-11-18T23:50:00Z", 0);
        row("next morning", "Europe/London", "2026-11-18T23:50:00Z", "2026-11-19T00:10:00Z", 1);
        row("over the spring change", "Europe/London", "2026-03-28T23:30:00Z", "2026-03-29T22:30:00Z", 1);
        row("23-hour day, late to early", "Europe/London", "2026-03-28T12:00:00Z",
            "2026-03-30T00:30:00+01:00", 2);
        row("over the autumn change", "America/New_York", "2026-10-31T23:30:00-04:00",
            "2026-11-01T23:30:00-05:00", 1);
        row("a week over it", "America/New_York", "2026-10-28T00:00:00-04:00", "2026-11-04T00:00:00-05:00",
            7);
        row("backwards", "Europe/London", "2026-11-18T10:00:00Z", "2026-11-17T23:00:00Z", -1);
        row("zone decides the day", "America/New_York", "2026-11-18T10:00:00Z", "2026-11-19T03:00:00Z", 0);
    }
    void daysAheadCountsCalendarDays()
    {
        QFETCH(QString, zone);
        QFETCH(QString, from);
        QFETCH(QString, of);
        QFETCH(int, days);
        const Calendar calendar{QTimeZone(zone.toUtf8()), Qt::Monday};
        QCOMPARE(DueParser::daysAhead(QDateTime::fromString(of, Qt::ISODate),
                                      QDateTime::fromString(from, Qt::ISODate), calendar),
                 days);
    }

    void aPatternThatDoesNotCompileIsLoggedAndMatchesNothing()
    {
        norva::test::LogCapture log;
        const QRegularExpression broken = DuePatterns::compile(QStringLiteral("(at\\s+"));
        const QString reason = QRegularExpression(QStringLiteral("(at\\s+")).errorString();
        QCOMPARE(
            log.lines(),
            QStringList{QStringLiteral("Norva plan: a due-words pattern did not compile (%1)").arg(reason)});
        QVERIFY(!broken.match(QStringLiteral("at 5")).hasMatch());
        QVERIFY(!broken.match(QString()).hasMatch());
    }

    void everyRulePatternCompiles()
    {
        norva::test::LogCapture log;
        DuePatterns::compile(DuePatterns::shared().dayWord.pattern());
        const DuePatterns& p = DuePatterns::shared();
        for (const QRegularExpression* rule :
             {&p.twelveHour,    &p.dottedTwelveHour, &p.written,       &p.dottedMeridiem,
              &p.dottedWritten, &p.hourAlone,        &p.noon,          &p.midnight,
              &p.saysNoon,      &p.nightBefore,      &p.saysANight,    &p.atBefore,
              &p.morningWords,  &p.afternoonWords,   &p.eveningWords,  &p.partAfterDay,
              &p.partAfterTime, &p.partOfDayWords,   &p.partOfDayOnly, &p.weekdayMention,
              &p.bareNumber,    &p.bareHourAhead,    &p.halfAmOrPm,    &p.dateTypedOut,
              &p.clockTypedOut, &p.lookalikeNumber,  &p.mealFirst,     &p.mealLast,
              &p.mealAnywhere,  &p.dayWord}) {
            QVERIFY2(rule->isValid() && rule->pattern() != QLatin1String("(?!)"),
                     qPrintable(rule->pattern()));
            QVERIFY(rule->patternOptions().testFlag(QRegularExpression::CaseInsensitiveOption));
        }
        QVERIFY(log.lines().isEmpty());
    }

    void aDetectorThatDoesNotStartLeavesTheRules()
    {
        norva::test::LogCapture log;
        const DueParser parser([] { return DetectorStart{nullptr, QStringLiteral("no patterns")}; });
        const auto ruled =
            parser.parse(QStringLiteral("call mum tomorrow at 5pm"), kNow, kLondonCalendar, kBritish);
        QVERIFY(ruled);
        QCOMPARE(ruled->date, QDateTime(QDate(2026, 11, 19), QTime(17, 0), kLondon));
        QVERIFY(!parser.parse(QStringLiteral("meet on March 3"), kNow, kLondonCalendar, kBritish));
        QCOMPARE(log.lines(), QStringList{QStringLiteral("Norva plan: the date detector did not start (no "
                                                         "patterns); due words read by the rules only")});
    }

    void theDetectorStartsOnceForEveryThread()
    {
        int starts = 0;
        const DueParser parser([&starts] {
            ++starts;
            return DetectorStart{std::make_shared<SpanDetector>(QList<TextRange>{}), {}};
        });
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back(
                [&] { (void)parser.detections(QStringLiteral("x"), kNow, kLondonCalendar, kBritish); });
        for (auto& thread : threads)
            thread.join();
        QCOMPARE(starts, 1);
    }

    void aDueBeyondTheCalendarIsLoggedAndNotRead_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        QTest::newRow("a day past the last year")
            << "renew in 999999999 years"
            << QStringLiteral("Norva plan: due words named a day the calendar could not "
                              "place (1000002025-11-18)");
        // The last day a date-time can hold ends a little after seven in the morning, and has no
        // night after it.
        QTest::newRow("a time past the last moment")
            << "in 106751970392 days at 11pm deploy"
            << QStringLiteral("Norva plan: due words named a time the calendar could not place (23:00)");
        QTest::newRow("a night past the last day")
            << "in 106751970392 days night at 1 deploy"
            << QStringLiteral(
                   "Norva plan: due words named a night the calendar could not carry past midnight");
    }
    void aDueBeyondTheCalendarIsLoggedAndNotRead()
    {
        QFETCH(QString, text);
        QFETCH(QString, line);
        norva::test::LogCapture log;
        QVERIFY(!DueParser().parse(text, kNow, kLondonCalendar, kBritish));
        QCOMPARE(log.lines(), QStringList{line});
    }

    void readsTheSameFromManyThreads()
    {
        const QStringList texts = {"call mum tomorrow at 5pm",
                                   "dentist fri 9.30",
                                   "pay rent next week",
                                   "party tonight at 1",
                                   "meet on March 3",
                                   "renew in 3 days",
                                   "version 2.5 notes",
                                   "gym tomorrow at 09 in the evening",
                                   "dinner tomorrow",
                                   "call sunday 1:30am",
                                   "tomo",
                                   "invoice 4.12.2026 at noon"};
        const auto readAll = [&texts](const DueParser& parser) {
            QStringList read;
            for (const QString& text : texts) {
                const auto reading = parser.parse(text, kNow, kLondonCalendar, kBritish);
                read << (reading ? reading->date.toString(Qt::ISODate) + reading->label + reading->title
                                 : QString());
            }
            return read;
        };
        const QStringList expected = readAll(DueParser());
        std::vector<QStringList> results(4);
        std::vector<std::thread> threads;
        for (size_t t = 0; t < results.size(); ++t) {
            threads.emplace_back([&, t] {
                const DueParser own; // shares the patterns and the detector
                for (int round = 0; round < 50; ++round)
                    results[t] = readAll(own);
            });
        }
        for (auto& thread : threads)
            thread.join();
        for (const QStringList& got : results)
            QCOMPARE(got, expected);
    }
};

NORVA_TEST(DueParserParts)
#include "tst_DueParserParts.moc"
