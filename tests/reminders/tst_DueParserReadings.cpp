// What the due-date parser reads in typed to-dos, at fixed instants in London and New York. Each
// table gathers one behaviour; an empty expected date means no reading at all.
#include "TestMain.h"

#include "reminders/DueParser.h"

#include <QtTest>

using namespace norva::due;

namespace {

// The instant, zone and locale the rows below are read at, until the next `at`.
struct Setting {
    QString zone;
    QString now;
    QString locale;
};
Setting g_setting;

void at(const char* zone, const char* now, const char* locale)
{
    g_setting = {QString::fromLatin1(zone), QString::fromLatin1(now), QString::fromLatin1(locale)};
}

void addColumns()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("date");
    QTest::addColumn<bool>("hasTime");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("title");
}

// One typed text and what it must read as: the due with its offset, whether a time was said,
// the label and the title.
void row(const QString& text, const char* date, bool hasTime = false, const char* label = "",
         const char* title = "")
{
    const QString name = QStringLiteral("%1 %2 | %3")
                             .arg(g_setting.zone.section(QLatin1Char('/'), -1), g_setting.now,
                                  QString(text).replace(QLatin1Char('\n'), QLatin1String("\\n")));
    QTest::addRow("%s", qPrintable(name))
        << g_setting.zone << g_setting.now << g_setting.locale << text << QString::fromUtf8(date) << hasTime
        << QString::fromUtf8(label) << QString::fromUtf8(title);
}

void none(const QString& text)
{
    row(text, "");
}

void verifyReading()
{
    QFETCH(QString, zone);
    QFETCH(QString, now);
    QFETCH(QString, locale);
    QFETCH(QString, text);
    QFETCH(QString, date);
    QFETCH(bool, hasTime);
    QFETCH(QString, label);
    QFETCH(QString, title);

    const QTimeZone timeZone(zone.toUtf8());
    QVERIFY(timeZone.isValid());
    const QLocale theLocale(locale);
    const Calendar calendar{timeZone, theLocale.firstDayOfWeek()};
    const QDateTime wall = QDateTime::fromString(now, Qt::ISODate);
    const QDateTime instant(wall.date(), wall.time(), timeZone);

    const auto reading = DueParser().parse(text, instant, calendar, theLocale);
    if (date.isEmpty()) {
        QVERIFY2(!reading, qPrintable(QStringLiteral("read %1").arg(
                               reading ? reading->date.toString(Qt::ISODate) : QString())));
        return;
    }
    QVERIFY(reading);
    const QDateTime expected = QDateTime::fromString(date, Qt::ISODate);
    QVERIFY(expected.isValid());
    QCOMPARE(reading->date.toTimeZone(timeZone).toString(Qt::ISODate),
             expected.toTimeZone(timeZone).toString(Qt::ISODate));
    QCOMPARE(reading->date.offsetFromUtc(), expected.offsetFromUtc());
    QCOMPARE(reading->hasTime, hasTime);
    QCOMPARE(reading->label, label);
    QCOMPARE(reading->title, title);
}

constexpr bool kTime = true;
constexpr bool kDay = false;

} // namespace

class DueParserReadings : public QObject {
    Q_OBJECT
private slots:
    void dayWords_data();
    void dayWords() { verifyReading(); }
    void clockTimes_data();
    void clockTimes() { verifyReading(); }
    void partsOfTheDay_data();
    void partsOfTheDay() { verifyReading(); }
    void nightCarriedPastMidnight_data();
    void nightCarriedPastMidnight() { verifyReading(); }
    void holdsBackWhileTyping_data();
    void holdsBackWhileTyping() { verifyReading(); }
    void typedOutDates_data();
    void typedOutDates() { verifyReading(); }
    void daylightSavingChanges_data();
    void daylightSavingChanges() { verifyReading(); }
    void labelsAndTitles_data();
    void labelsAndTitles() { verifyReading(); }
};

// Wednesday 18 November 2026; weeks begin on Monday in London and on Sunday in New York.
void DueParserReadings::dayWords_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    row("call mum tomorrow at 5pm", "2026-11-19T17:00:00+00:00", kTime, "Tomorrow", "call mum");
    row("pay rent today", "2026-11-18T00:00:00+00:00", kDay, "Today", "pay rent");
    row("pay rent tomorrow", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow", "pay rent");
    row("TOMORROW call mum", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow", "call mum");
    row("pay rent next week", "2026-11-23T00:00:00+00:00", kDay, "Next week", "pay rent");
    row("call mum tonight", "2026-11-18T00:00:00+00:00", kDay, "Tonight", "call mum");
    row("today", "2026-11-18T00:00:00+00:00", kDay, "Today", "");
    row("water plants friday", "2026-11-20T00:00:00+00:00", kDay, "20 Nov", "water plants");
    row("water plants fri", "2026-11-20T00:00:00+00:00", kDay, "20 Nov", "water plants");
    row("water plants wednesday", "2026-11-18T00:00:00+00:00", kDay, "18 Nov", "water plants");
    row("water plants wed 11am", "2026-11-18T11:00:00+00:00", kTime, "18 Nov", "water plants");
    row("water plants wed 9am", "2026-11-25T09:00:00+00:00", kTime, "25 Nov", "water plants");
    row("sunday hike", "2026-11-22T00:00:00+00:00", kDay, "22 Nov", "hike");
    row("tues gym", "2026-11-24T00:00:00+00:00", kDay, "24 Nov", "gym");
    row("thurs gym", "2026-11-19T00:00:00+00:00", kDay, "19 Nov", "gym");
    row("thur gym", "2026-11-19T00:00:00+00:00", kDay, "19 Nov", "gym");
    row("thu gym", "2026-11-19T00:00:00+00:00", kDay, "19 Nov", "gym");
    row("sat market", "2026-11-21T00:00:00+00:00", kDay, "21 Nov", "market");
    row("mon standup", "2026-11-23T00:00:00+00:00", kDay, "23 Nov", "standup");
    row("next fri", "2026-11-27T00:00:00+00:00", kDay, "27 Nov", "");
    row("fri next week", "2026-11-27T00:00:00+00:00", kDay, "27 Nov", "");
    row("next week fri", "2026-11-27T00:00:00+00:00", kDay, "27 Nov", "");
    row("next friday call bank", "2026-11-27T00:00:00+00:00", kDay, "27 Nov", "call bank");
    row("call bank friday next week", "2026-11-27T00:00:00+00:00", kDay, "27 Nov", "call bank");
    row("next sunday hike", "2026-11-29T00:00:00+00:00", kDay, "29 Nov", "hike");
    row("next monday review", "2026-11-23T00:00:00+00:00", kDay, "23 Nov", "review");
    row("next wednesday review", "2026-11-25T00:00:00+00:00", kDay, "25 Nov", "review");
    none("tomorrowland tickets");
    none("buy milk");
    none("");
    none("   ");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    row("call mum tomorrow at 5pm", "2026-11-19T17:00:00-05:00", kTime, "Tomorrow", "call mum");
    row("pay rent next week", "2026-11-22T00:00:00-05:00", kDay, "Next week", "pay rent");
    row("next sunday hike", "2026-11-22T00:00:00-05:00", kDay, "Nov 22", "hike");
    row("next fri", "2026-11-27T00:00:00-05:00", kDay, "Nov 27", "");
    row("next saturday market", "2026-11-28T00:00:00-05:00", kDay, "Nov 28", "market");
    row("water plants friday", "2026-11-20T00:00:00-05:00", kDay, "Nov 20", "water plants");
    row("pay rent today", "2026-11-18T00:00:00-05:00", kDay, "Today", "pay rent");
}

void DueParserReadings::clockTimes_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    row("call at 5pm", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 5 pm", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call 5PM", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 9am", "2026-11-19T09:00:00+00:00", kTime, "Tomorrow", "call");
    row("call 12am", "2026-11-19T00:00:00+00:00", kTime, "Tomorrow", "call");
    row("call 12pm", "2026-11-18T12:00:00+00:00", kTime, "Today", "call");
    none("call 13pm");
    none("call 5:75pm");
    none("call 0am");
    none("call at 24:00");
    row("call 5:30pm", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call 5:30p", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call 5:30a", "2026-11-19T05:30:00+00:00", kTime, "Tomorrow", "call");
    row("call 5 p.m.", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 7 a.m", "2026-11-19T07:00:00+00:00", kTime, "Tomorrow", "call");
    row("call 5.30pm", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call 5h30 pm", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call 5.30 p.m.", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call at 17:30", "2026-11-18T17:30:00+00:00", kTime, "Today", "call");
    row("call at 23:59", "2026-11-18T23:59:00+00:00", kTime, "Today", "call");
    row("call at 11:30", "2026-11-18T11:30:00+00:00", kTime, "Today", "call");
    row("call at 9:30", "2026-11-18T21:30:00+00:00", kTime, "Today", "call");
    row("call at 09:30", "2026-11-19T09:30:00+00:00", kTime, "Tomorrow", "call");
    row("call 9.30", "2026-11-18T21:30:00+00:00", kTime, "Today", "call");
    row("call at 5", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 5 o'clock", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 5 o’clock", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 5p ", "2026-11-18T17:00:00+00:00", kTime, "Today", "call");
    row("call at 5a tomorrow", "2026-11-19T05:00:00+00:00", kTime, "Tomorrow", "call");
    row("lunch at noon", "2026-11-18T12:00:00+00:00", kTime, "Today", "lunch");
    row("call at midday", "2026-11-18T12:00:00+00:00", kTime, "Today", "call");
    row("call at 12 noon", "2026-11-18T12:00:00+00:00", kTime, "Today", "call");
    row("deploy at midnight", "2026-11-19T00:00:00+00:00", kTime, "Tomorrow", "deploy");
    row("deploy at 12:00 midnight", "2026-11-19T00:00:00+00:00", kTime, "Tomorrow", "deploy");
    row("room 101 at 5pm", "2026-11-18T17:00:00+00:00", kTime, "Today", "room 101");
    row("call at 5:30 tomorrow", "2026-11-19T17:30:00+00:00", kTime, "Tomorrow", "call");
    row("tomorrow 5 call mum", "2026-11-19T17:00:00+00:00", kTime, "Tomorrow", "call mum");
    row("tomorrow 9 call mum", "2026-11-19T09:00:00+00:00", kTime, "Tomorrow", "call mum");
    row("tomorrow 09 call", "2026-11-19T09:00:00+00:00", kTime, "Tomorrow", "call");
    row("tomorrow 5pm call", "2026-11-19T17:00:00+00:00", kTime, "Tomorrow", "call");
    row("dentist fri 9.30", "2026-11-20T09:30:00+00:00", kTime, "20 Nov", "dentist");
    row("dentist fri at 3", "2026-11-20T15:00:00+00:00", kTime, "20 Nov", "dentist");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    row("call at 5pm", "2026-11-18T17:00:00-05:00", kTime, "Today", "call");
    row("call at 9am", "2026-11-19T09:00:00-05:00", kTime, "Tomorrow", "call");
    row("call 12am", "2026-11-19T00:00:00-05:00", kTime, "Tomorrow", "call");
    row("call 12pm", "2026-11-18T12:00:00-05:00", kTime, "Today", "call");
    none("call 13pm");
    row("call at 9:30", "2026-11-18T21:30:00-05:00", kTime, "Today", "call");
    row("lunch at noon", "2026-11-18T12:00:00-05:00", kTime, "Today", "lunch");
}

void DueParserReadings::partsOfTheDay_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    row("gym tomorrow at 09 in the evening", "2026-11-19T09:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym tomorrow at 9 in the evening", "2026-11-19T21:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym at 9 in the evening", "2026-11-18T21:00:00+00:00", kTime, "Today", "gym");
    row("gym at 09 this evening", "2026-11-19T09:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym at 10 at night", "2026-11-18T22:00:00+00:00", kTime, "Today", "gym");
    row("gym tomorrow morning at 8", "2026-11-19T08:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym tomorrow morning", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow", "gym");
    row("gym tomorrow evening 7", "2026-11-19T19:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym tomorrow afternoon at 3", "2026-11-19T15:00:00+00:00", kTime, "Tomorrow", "gym");
    row("gym this afternoon", "2026-11-18T00:00:00+00:00", kDay, "Today", "gym");
    row("gym this evening at 6", "2026-11-18T18:00:00+00:00", kTime, "Today", "gym");
    row("gym in the morning", "2026-11-18T00:00:00+00:00", kDay, "Today", "gym");
    row("evening run", "2026-11-18T00:00:00+00:00", kDay, "Today", "run");
    row("gym friday evening", "2026-11-20T00:00:00+00:00", kDay, "20 Nov", "gym");
    row("gym friday evening at 6", "2026-11-20T18:00:00+00:00", kTime, "20 Nov", "gym");
    row("call mum at 5 in the morning", "2026-11-19T05:00:00+00:00", kTime, "Tomorrow", "call mum");
    row("call mum at 5 in the afternoon", "2026-11-18T17:00:00+00:00", kTime, "Today", "call mum");
    row("at 12 this evening call", "2026-11-18T12:00:00+00:00", kTime, "Today", "call");
    row("breakfast with sam at 8", "2026-11-19T08:00:00+00:00", kTime, "Tomorrow", "breakfast with sam");
    row("dinner with sam at 7", "2026-11-18T19:00:00+00:00", kTime, "Today", "dinner with sam");
    row("supper at 8", "2026-11-18T20:00:00+00:00", kTime, "Today", "supper");
    row("dinner tomorrow", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow", "dinner");
    row("dinner tomorrow at 7", "2026-11-19T19:00:00+00:00", kTime, "Tomorrow", "dinner");
    row("lunch tomorrow at 1", "2026-11-19T13:00:00+00:00", kTime, "Tomorrow", "lunch");
    row("sunday brunch", "2026-11-22T00:00:00+00:00", kDay, "22 Nov", "brunch");
    none("tonight");
    none("this evening");
    none("in the morning");
    none("tonight, tonight!");
    none("at night");
    none("The Evening");
    none("for the afternoon");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    row("gym at 9 in the evening", "2026-11-18T21:00:00-05:00", kTime, "Today", "gym");
    row("gym tomorrow at 09 in the evening", "2026-11-19T09:00:00-05:00", kTime, "Tomorrow", "gym");
    row("dinner tomorrow", "2026-11-19T00:00:00-05:00", kDay, "Tomorrow", "dinner");
    none("tonight");
}

void DueParserReadings::nightCarriedPastMidnight_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    row("party tonight at 1", "2026-11-19T01:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 1am", "2026-11-19T01:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 12am", "2026-11-19T00:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 4", "2026-11-19T04:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 5", "2026-11-18T17:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 9", "2026-11-18T21:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 11", "2026-11-18T23:00:00+00:00", kTime, "Tonight", "party");
    row("party tonight at 11pm", "2026-11-18T23:00:00+00:00", kTime, "Tonight", "party");
    row("party at midnight tonight", "2026-11-19T00:00:00+00:00", kTime, "Tonight", "party");
    row("deploy tonight at 00:30", "2026-11-19T00:30:00+00:00", kTime, "Tonight", "deploy");
    row("tonight 2 call", "2026-11-19T02:00:00+00:00", kTime, "Tonight", "call");
    row("tomorrow night at 1 party", "2026-11-20T01:00:00+00:00", kTime, "Tomorrow", "party");
    row("tomorrow night at 11 party", "2026-11-19T23:00:00+00:00", kTime, "Tomorrow", "party");
    row("friday night at 2 gig", "2026-11-21T02:00:00+00:00", kTime, "20 Nov", "gig");
    row("gym at 2 at night", "2026-11-19T02:00:00+00:00", kTime, "Tonight", "gym");
    row("gig 4 dec night at 1", "2026-12-05T01:00:00+00:00", kTime, "4 Dec", "gig");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    row("party tonight at 1", "2026-11-19T01:00:00-05:00", kTime, "Tonight", "party");
    row("party at midnight tonight", "2026-11-19T00:00:00-05:00", kTime, "Tonight", "party");
    row("friday night at 2 gig", "2026-11-21T02:00:00-05:00", kTime, "Nov 20", "gig");
}

void DueParserReadings::holdsBackWhileTyping_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    none("tomo");
    none("call mum tomo");
    none("call mum tom");
    none("call mum t");
    none("(tomo");
    none("call mum frid");
    none("gym eve");
    none("gym even");
    none("call mum next w");
    none("call at 5p");
    none("call at 12a");
    none("call mum tomorrow 5:");
    none("call mum tomorrow 5");
    none("call mum tomorrow 5.");
    row("call mum tomorrow", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow", "call mum");
    row("call mum fri", "2026-11-20T00:00:00+00:00", kDay, "20 Nov", "call mum");
    row("call mum tues", "2026-11-24T00:00:00+00:00", kDay, "24 Nov", "call mum");
    row("gym evening", "2026-11-18T00:00:00+00:00", kDay, "Today", "gym");
    row("call mum tomorrow 5:30", "2026-11-19T17:30:00+00:00", kTime, "Tomorrow", "call mum");
    row("call mum tomorrow 5pm", "2026-11-19T17:00:00+00:00", kTime, "Tomorrow", "call mum");
    row("sat", "2026-11-21T00:00:00+00:00", kDay, "21 Nov", "");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    none("tomo");
    none("call mum tomorrow 5:");
    row("call mum tomorrow", "2026-11-19T00:00:00-05:00", kDay, "Tomorrow", "call mum");
}

void DueParserReadings::typedOutDates_data()
{
    addColumns();
    at("Europe/London", "2026-11-18T10:00:00", "en_GB");
    row("meet on March 3", "2027-03-03T00:00:00+00:00", kDay, "3 Mar 2027", "meet");
    row("meet march 3rd", "2027-03-03T00:00:00+00:00", kDay, "3 Mar 2027", "meet");
    row("meet 3 march", "2027-03-03T00:00:00+00:00", kDay, "3 Mar 2027", "meet");
    row("meet 3rd of March", "2027-03-03T00:00:00+00:00", kDay, "3 Mar 2027", "meet");
    row("meet the 3rd of march", "2027-03-03T00:00:00+00:00", kDay, "3 Mar 2027", "meet");
    row("meet Dec 3", "2026-12-03T00:00:00+00:00", kDay, "3 Dec", "meet");
    row("meet dec 3, 2027", "2027-12-03T00:00:00+00:00", kDay, "3 Dec 2027", "meet");
    row("meet 3 December 2027", "2027-12-03T00:00:00+00:00", kDay, "3 Dec 2027", "meet");
    row("meet nov 18", "2026-11-18T00:00:00+00:00", kDay, "18 Nov", "meet");
    row("meet nov 17", "2027-11-17T00:00:00+00:00", kDay, "17 Nov 2027", "meet");
    row("pay rent on the 3rd", "2026-12-03T00:00:00+00:00", kDay, "3 Dec", "pay rent");
    row("pay rent on the 30th", "2026-11-30T00:00:00+00:00", kDay, "30 Nov", "pay rent");
    row("pay rent the 31st", "2026-12-31T00:00:00+00:00", kDay, "31 Dec", "pay rent");
    row("party 2026-12-24 at 8pm", "2026-12-24T20:00:00+00:00", kTime, "24 Dec", "party");
    row("party 2027-01-01", "2027-01-01T00:00:00+00:00", kDay, "1 Jan 2027", "party");
    row("invoice 24/12/2026", "2026-12-24T00:00:00+00:00", kDay, "24 Dec", "invoice");
    row("invoice 4/12/2026", "2026-12-04T00:00:00+00:00", kDay, "4 Dec", "invoice");
    row("invoice 4.12.2026", "2026-12-04T00:00:00+00:00", kDay, "4 Dec", "invoice");
    row("invoice 4.12.26", "2026-12-04T00:00:00+00:00", kDay, "4 Dec", "invoice");
    row("invoice on 4/12", "2026-12-04T00:00:00+00:00", kDay, "4 Dec", "invoice");
    row("renew in 3 days", "2026-11-21T00:00:00+00:00", kDay, "21 Nov", "renew");
    row("renew in 2 weeks", "2026-12-02T00:00:00+00:00", kDay, "2 Dec", "renew");
    row("renew in 1 month", "2026-12-18T00:00:00+00:00", kDay, "18 Dec", "renew");
    row("renew in 2 years", "2028-11-18T00:00:00+00:00", kDay, "18 Nov 2028", "renew");
    row("renew in a week", "2026-11-25T00:00:00+00:00", kDay, "25 Nov", "renew");
    row("gig friday 4 december", "2026-12-04T00:00:00+00:00", kDay, "4 Dec", "gig");
    row("gig on fri, dec 4 at 8pm", "2026-12-04T20:00:00+00:00", kTime, "4 Dec", "gig");
    row("dentist march 3 at 10:30", "2027-03-03T10:30:00+00:00", kTime, "3 Mar 2027", "dentist");
    none("version 2.5 notes");
    none("page 3/4");
    none("pages 10-12");
    none("3rd floor");
    none("maybe later");
    none("call may");
    none("paid invoice 2026-11-01");
    // A date before today is passed over, and the day word after it read instead.
    row("paid 2026-11-01 invoice, chase tomorrow", "2026-11-19T00:00:00+00:00", kDay, "Tomorrow",
        "paid 2026-11-01 invoice, chase");
    none("invoice 31/02/2027");

    at("America/New_York", "2026-11-18T10:00:00", "en_US");
    row("invoice on 4/12", "2027-04-12T00:00:00-04:00", kDay, "Apr 12, 2027", "invoice");
    row("invoice 12/24/2026", "2026-12-24T00:00:00-05:00", kDay, "Dec 24", "invoice");
    row("meet march 3", "2027-03-03T00:00:00-05:00", kDay, "Mar 3, 2027", "meet");
    row("renew in 3 days", "2026-11-21T00:00:00-05:00", kDay, "Nov 21", "renew");
    none("version 2.5 notes");
    none("page 3/4");
}

// Days across the clock changes of 2026: London on 29 March and 25 October, New York on 8 March and
// 1 November. A wall time the change skips is the first moment after it; one shown twice is the first.
void DueParserReadings::daylightSavingChanges_data()
{
    addColumns();
    at("Europe/London", "2026-03-27T10:00:00", "en_GB");
    row("call sunday 1:30am", "2026-03-29T02:00:00+01:00", kTime, "29 Mar", "call");
    row("call sunday 12:30am", "2026-03-29T00:30:00+00:00", kTime, "29 Mar", "call");
    row("call sunday 9am", "2026-03-29T09:00:00+01:00", kTime, "29 Mar", "call");
    row("call sunday", "2026-03-29T00:00:00+00:00", kDay, "29 Mar", "call");
    row("call monday", "2026-03-30T00:00:00+01:00", kDay, "30 Mar", "call");
    row("call in 3 days at 9am", "2026-03-30T09:00:00+01:00", kTime, "30 Mar", "call");
    row("call saturday night at 1:30", "2026-03-29T02:00:00+01:00", kTime, "28 Mar", "call");
    row("call next week", "2026-03-30T00:00:00+01:00", kDay, "Next week", "call");

    at("Europe/London", "2026-03-28T23:30:00", "en_GB");
    row("call at 1:30am", "2026-03-29T02:00:00+01:00", kTime, "Tomorrow", "call");
    row("call tomorrow at 3am", "2026-03-29T03:00:00+01:00", kTime, "Tomorrow", "call");

    at("Europe/London", "2026-10-23T10:00:00", "en_GB");
    row("call sunday 1:30am", "2026-10-25T01:30:00+01:00", kTime, "25 Oct", "call");
    row("call sunday 9am", "2026-10-25T09:00:00+00:00", kTime, "25 Oct", "call");
    row("call sunday", "2026-10-25T00:00:00+01:00", kDay, "25 Oct", "call");
    row("call next week", "2026-10-26T00:00:00+00:00", kDay, "Next week", "call");

    at("America/New_York", "2026-03-06T10:00:00", "en_US");
    row("call sunday 2:30am", "2026-03-08T03:00:00-04:00", kTime, "Mar 8", "call");
    row("call sunday 9am", "2026-03-08T09:00:00-04:00", kTime, "Mar 8", "call");
    row("call sunday", "2026-03-08T00:00:00-05:00", kDay, "Mar 8", "call");
    row("call in 3 days", "2026-03-09T00:00:00-04:00", kDay, "Mar 9", "call");

    at("America/New_York", "2026-10-30T10:00:00", "en_US");
    row("call sunday 1:30am", "2026-11-01T01:30:00-04:00", kTime, "Nov 1", "call");
    row("call sunday 9am", "2026-11-01T09:00:00-05:00", kTime, "Nov 1", "call");
    row("call sunday", "2026-11-01T00:00:00-04:00", kDay, "Nov 1", "call");
    row("call monday", "2026-11-02T00:00:00-05:00", kDay, "Nov 2", "call");
    row("call in 3 days", "2026-11-02T00:00:00-05:00", kDay, "Nov 2", "call");
    row("call saturday night at 1:30", "2026-11-01T01:30:00-04:00", kTime, "Oct 31", "call");
}

void DueParserReadings::labelsAndTitles_data()
{
    addColumns();
    at("Europe/London", "2026-12-31T10:00:00", "en_GB");
    row("call tomorrow", "2027-01-01T00:00:00+00:00", kDay, "Tomorrow", "call");
    row("call friday", "2027-01-01T00:00:00+00:00", kDay, "1 Jan 2027", "call");
    row("call thursday", "2026-12-31T00:00:00+00:00", kDay, "31 Dec", "call");
    row("call  mum   tomorrow   at 5pm  please", "2027-01-01T17:00:00+00:00", kTime, "Tomorrow",
        "call mum please");
    row("  tomorrow\n call mum \n", "2027-01-01T00:00:00+00:00", kDay, "Tomorrow", "call mum");
    row("Café with Zoë tomorrow at 5pm", "2027-01-01T17:00:00+00:00", kTime, "Tomorrow", "Café with Zoë");
    row("🎉 party tomorrow at 8pm 🎉", "2027-01-01T20:00:00+00:00", kTime, "Tomorrow", "🎉 party 🎉");

    at("America/New_York", "2026-12-31T10:00:00", "en_US");
    row("call friday", "2027-01-01T00:00:00-05:00", kDay, "Jan 1, 2027", "call");
    row("call thursday", "2026-12-31T00:00:00-05:00", kDay, "Dec 31", "call");
    row("call tonight at 10", "2026-12-31T22:00:00-05:00", kTime, "Tonight", "call");
    row("at 5pm tomorrow: call mum", "2027-01-01T17:00:00-05:00", kTime, "Tomorrow", ": call mum");
}

NORVA_TEST(DueParserReadings)
#include "tst_DueParserReadings.moc"
