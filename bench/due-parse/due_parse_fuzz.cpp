// due-parse-fuzz: random and mutated phrases, seeded and bounded in time, through every entry of
// the due-date parser. A crash, an out-of-bounds read (under the sanitizers), a parse that takes
// too long or a reading that breaks its own bounds fails the run.
#include "DueParseSetting.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <random>

namespace {

using norva::due::DueParser;

// A single parse far beyond this is a runaway pattern, not a slow machine.
constexpr qint64 kSlowParseNs = 2'000'000'000;
constexpr int kMaxLength = 160;

const QStringList kTokens = {"tomorrow",
                             "today",
                             "tonight",
                             "next",
                             "week",
                             "next week",
                             "fri",
                             "friday",
                             "sun",
                             "tues",
                             "thurs",
                             "morning",
                             "afternoon",
                             "evening",
                             "night",
                             "in the",
                             "at",
                             "on",
                             "the",
                             "this",
                             "for",
                             "over",
                             "breakfast",
                             "brunch",
                             "lunch",
                             "dinner",
                             "supper",
                             "noon",
                             "midday",
                             "midnight",
                             "12",
                             "5",
                             "09",
                             "13",
                             "5pm",
                             "12am",
                             "5:30",
                             "5:30p",
                             "9.30",
                             "9h30",
                             "5 p.m.",
                             "o'clock",
                             "o’clock",
                             "am",
                             "pm",
                             "a.m",
                             "p.m.",
                             "march",
                             "mar",
                             "sept",
                             "dec",
                             "3rd",
                             "the 31st",
                             "2026-12-03",
                             "3/4",
                             "3/4/2026",
                             "12.12.26",
                             "10-12",
                             "2.5",
                             "in 3 days",
                             "in 2 weeks",
                             "in 999999999999 years",
                             "in 99999999999999999999 days",
                             "uhr",
                             "midi",
                             "@",
                             "around",
                             ",",
                             ".",
                             ":",
                             "/",
                             "-",
                             "  ",
                             "\n",
                             "\t",
                             "é",
                             "ß",
                             "\u202F",
                             "\u00A0",
                             "😀",
                             "۵",
                             "٣"};

QString randomText(std::mt19937& random)
{
    std::uniform_int_distribution<int> count(0, 12);
    std::uniform_int_distribution<int> pick(0, static_cast<int>(kTokens.size()) - 1);
    std::uniform_int_distribution<int> spaced(0, 3);
    QString text;
    for (int n = count(random); n > 0; --n) {
        text += kTokens.at(pick(random));
        if (spaced(random) != 0)
            text += QLatin1Char(' ');
    }
    return text;
}

QString mutated(QString text, std::mt19937& random)
{
    std::uniform_int_distribution<int> kind(0, 5);
    std::uniform_int_distribution<int> anyChar(0, 0xFFFF); // lone surrogates included on purpose
    std::uniform_int_distribution<int> ascii(0x20, 0x7E);
    for (int edits = std::uniform_int_distribution<int>(1, 4)(random); edits > 0; --edits) {
        const int at =
            text.isEmpty() ? 0 : std::uniform_int_distribution<int>(0, static_cast<int>(text.size()))(random);
        switch (kind(random)) {
        case 0:
            text.insert(at, QChar(static_cast<char16_t>(anyChar(random))));
            break;
        case 1:
            text.insert(at, QChar(static_cast<char16_t>(ascii(random))));
            break;
        case 2:
            if (!text.isEmpty())
                text.remove(std::min<qsizetype>(at, text.size() - 1), 1);
            break;
        case 3:
            text.insert(at, kTokens.at(std::uniform_int_distribution<int>(
                                0, static_cast<int>(kTokens.size()) - 1)(random)));
            break;
        case 4:
            text = text.left(at); // a phrase cut short, as while typing
            break;
        default:
            text += text.mid(at); // repeated words
            break;
        }
    }
    return text.left(kMaxLength);
}

struct Setting {
    QDateTime now;
    norva::due::Calendar calendar;
    QLocale locale;
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    double seconds = 4;
    unsigned seed = 20261118;
    long maxPhrases = 2'000'000;
    const QStringList arguments = app.arguments();
    for (qsizetype i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--seconds"))
            seconds = arguments.at(++i).toDouble();
        else if (arguments.at(i) == QLatin1String("--seed"))
            seed = arguments.at(++i).toUInt();
        else if (arguments.at(i) == QLatin1String("--phrases"))
            maxPhrases = arguments.at(++i).toLong();
    }
    const QStringList table = norva::due::readPhrases(QStringLiteral(DUE_PARSE_PHRASES));
    const QTimeZone london("Europe/London");
    const QTimeZone newYork("America/New_York");
    const QList<Setting> settings = {
        {QDateTime(QDate(2026, 11, 18), QTime(10, 0), london), {london, Qt::Monday}, QLocale("en_GB")},
        {QDateTime(QDate(2026, 3, 28), QTime(23, 30), london), {london, Qt::Monday}, QLocale("en_GB")},
        {QDateTime(QDate(2026, 10, 31), QTime(22, 0), newYork), {newYork, Qt::Sunday}, QLocale("en_US")},
        {QDateTime(QDate(2026, 12, 31), QTime(23, 59), newYork), {newYork, Qt::Sunday}, QLocale("en_US")},
    };

    std::mt19937 random(seed);
    const DueParser parser;
    // The first parse compiles every pattern; the slowest figure below is about parsing alone.
    (void)parser.parse(QStringLiteral("tomorrow"), settings.front().now, settings.front().calendar,
                       settings.front().locale);
    QElapsedTimer budget;
    budget.start();
    long phrases = 0;
    long readings = 0;
    qint64 slowest = 0;
    QString slowestText;
    while (phrases < maxPhrases && budget.elapsed() < static_cast<qint64>(seconds * 1000)) {
        QString text;
        if (!table.isEmpty() && random() % 2 == 0)
            text = mutated(table.at(static_cast<qsizetype>(random() % table.size())), random);
        else
            text = random() % 3 == 0 ? mutated(randomText(random), random) : randomText(random);
        const Setting& setting = settings.at(static_cast<qsizetype>(random() % settings.size()));

        QElapsedTimer one;
        one.start();
        const auto reading = parser.parse(text, setting.now, setting.calendar, setting.locale);
        const auto clock = parser.typedClock(text);
        const auto found = parser.detections(text, setting.now, setting.calendar, setting.locale);
        (void)DueParser::isStillBeingTyped(text);
        const qint64 took = one.nsecsElapsed();
        ++phrases;

        const auto fail = [&](const char* what) {
            std::fprintf(stderr, "due-parse-fuzz: %s for %s (seed %u)\n", what,
                         norva::due::DueParseSetting::jsonLine(text, reading).constData(), seed);
            return 1;
        };
        if (took > slowest) {
            slowest = took;
            slowestText = text;
        }
        if (took > kSlowParseNs)
            return fail("a parse ran away");
        if (reading) {
            ++readings;
            if (!reading->date.isValid())
                return fail("a reading without a valid date");
            if (reading->title.size() > text.size())
                return fail("a title longer than its text");
            (void)DueParser::clockText(reading->date, setting.calendar, setting.locale);
            (void)DueParser::daysAhead(reading->date, setting.now, setting.calendar);
        }
        if (clock && (clock->hour < 0 || clock->hour > 23 || clock->minute < 0 || clock->minute > 59))
            return fail("a typed clock off the clock face");
        for (const auto& detection : found) {
            if (detection.range.start < 0 || detection.range.length <= 0 ||
                detection.range.end() > text.size())
                return fail("a detection outside its text");
        }
    }
    std::printf("due-parse-fuzz: %ld phrases, %ld readings, seed %u, slowest %.1f us, no crash\n", phrases,
                readings, seed, static_cast<double>(slowest) / 1000.0);
    return 0;
}
