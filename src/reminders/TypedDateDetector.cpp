#include "reminders/TypedDateDetector.h"

#include <algorithm>
#include <limits>

namespace norva::due {
namespace {

const QString kMonths = QStringLiteral("january|jan|february|feb|march|mar|april|apr|may|june|jun|july|jul|"
                                       "august|aug|september|sept|sep|october|oct|november|nov|december|dec");
const QString kWeekdays =
    QStringLiteral("sunday|sun|monday|mon|tuesday|tues|tue|wednesday|wed|thursday|thurs|thur|thu|friday|fri|"
                   "saturday|sat");

// How far a yearless day or a day of the month may be pushed forward to find one that exists
// (29 February, the 31st): two leap cycles, and a year of months.
constexpr int kYearsToTry = 8;
constexpr int kMonthsToTry = 12;
constexpr int kFirstYearOfTwoDigitYears = 2000;
constexpr int kTwoDigitYear = 100;

int monthNumber(const QString& name)
{
    static const QStringList prefixes = {QStringLiteral("jan"), QStringLiteral("feb"), QStringLiteral("mar"),
                                         QStringLiteral("apr"), QStringLiteral("may"), QStringLiteral("jun"),
                                         QStringLiteral("jul"), QStringLiteral("aug"), QStringLiteral("sep"),
                                         QStringLiteral("oct"), QStringLiteral("nov"), QStringLiteral("dec")};
    return static_cast<int>(prefixes.indexOf(name.left(3).toLower())) + 1;
}

// The given day and month in the given year when one is typed, otherwise the next one from today on.
QDate resolveDay(int year, int month, int day, const QDate& today)
{
    if (year > 0)
        return QDate(year, month, day);
    for (int offset = 0; offset <= kYearsToTry; ++offset) {
        const QDate candidate(today.year() + offset, month, day);
        if (candidate.isValid() && candidate >= today)
            return candidate;
    }
    return {};
}

// "The 3rd": this month's 3rd when it is still to come, otherwise the next month that has that day.
QDate resolveDayOfMonth(int day, const QDate& today)
{
    const QDate firstOfMonth(today.year(), today.month(), 1);
    for (int offset = 0; offset <= kMonthsToTry; ++offset) {
        const QDate month = firstOfMonth.addMonths(offset);
        const QDate candidate(month.year(), month.month(), day);
        if (candidate.isValid() && candidate >= today)
            return candidate;
    }
    return {};
}

int yearOf(const QString& typed)
{
    if (typed.isEmpty())
        return 0;
    const int year = typed.toInt();
    return typed.size() == 2 ? kFirstYearOfTwoDigitYears + year % kTwoDigitYear : year;
}

QDate relativeDay(const QString& countText, const QString& unit, const QDate& today)
{
    qint64 count = 1; // "in a week"
    if (countText.front().isDigit()) {
        bool ok = false;
        count = countText.toLongLong(&ok);
        if (!ok)
            return {};
    }
    const QString u = unit.toLower();
    if (u.startsWith(QLatin1String("day")))
        return today.addDays(count);
    if (u.startsWith(QLatin1String("week")))
        return count > std::numeric_limits<qint64>::max() / kDaysPerWeek
                   ? QDate()
                   : today.addDays(count * kDaysPerWeek);
    // Months and years are counted in int by the calendar; a count beyond that names no day.
    if (count > std::numeric_limits<int>::max())
        return {};
    if (u.startsWith(QLatin1String("month")))
        return today.addMonths(static_cast<int>(count));
    return today.addYears(static_cast<int>(count));
}

} // namespace

bool TypedDateDetector::monthComesFirst(const QLocale& locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype month = format.indexOf(QLatin1Char('M'));
    const qsizetype day = format.indexOf(QLatin1Char('d'));
    return month >= 0 && day >= 0 && month < day;
}

DetectorStart TypedDateDetector::create()
{
    auto detector = std::shared_ptr<TypedDateDetector>(new TypedDateDetector);
    const auto options =
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;
    const auto make = [&](QRegularExpression& target, const QString& pattern) {
        target = QRegularExpression(pattern, options);
        target.optimize();
    };
    make(detector->m_monthFirst,
         QStringLiteral(
             R"re(\b(%1)\.?\s+([0-9]{1,2})(?:st|nd|rd|th)?\b(?![:.h][0-9])(?:,?\s+([0-9]{4})\b)?)re")
             .arg(kMonths));
    make(detector->m_dayFirst,
         QStringLiteral(
             R"re(\b(?:the\s+)?([0-9]{1,2})(?:st|nd|rd|th)?(?:\s+of)?\s+(%1)\b\.?(?:,?\s+([0-9]{4})\b)?)re")
             .arg(kMonths));
    make(detector->m_ordinal, QStringLiteral(R"re(\b(?:the\s+)?([0-9]{1,2})(?:st|nd|rd|th)\b)re"));
    make(detector->m_iso, QStringLiteral(R"re(\b([0-9]{4})-([0-9]{1,2})-([0-9]{1,2})\b(?!-[0-9]))re"));
    // Dotted numbers need a year: without one they are clock times ("9.30") or version numbers.
    make(
        detector->m_numeric,
        QStringLiteral(
            R"re((?<![0-9./-])\b(?:([0-9]{1,2})/([0-9]{1,2})(?:/([0-9]{4}|[0-9]{2}))?|([0-9]{1,2})\.([0-9]{1,2})\.([0-9]{4}|[0-9]{2}))\b(?![./-]?[0-9]))re"));
    make(detector->m_relative,
         QStringLiteral(R"re(\bin\s+([0-9]+|an?)\s+(days?|weeks?|months?|years?)\b)re"));
    // The words that lead into a date and belong to it: "on", a weekday, or both.
    make(detector->m_leadIn, QStringLiteral(R"re((?:\bon\s+)?(?:\b(?:%1)\b\.?,?\s+)?$)re").arg(kWeekdays));

    for (const QRegularExpression* pattern :
         {&detector->m_monthFirst, &detector->m_dayFirst, &detector->m_ordinal, &detector->m_iso,
          &detector->m_numeric, &detector->m_relative, &detector->m_leadIn}) {
        if (!pattern->isValid())
            return {nullptr, pattern->errorString()};
    }
    return {detector, {}};
}

QList<DetectedDate> TypedDateDetector::detect(const QString& text, const QDateTime& now, const Calendar&,
                                              const QLocale& locale) const
{
    const QDate today = now.date();
    QList<DetectedDate> found;
    const auto add = [&](const QRegularExpressionMatch& match, const QDate& day) {
        const TextRange range{match.capturedStart(0), match.capturedLength(0)};
        for (const DetectedDate& earlier : found) {
            if (earlier.range.overlaps(range))
                return;
        }
        found.append({range, day, std::nullopt});
    };

    // The most specific forms go first, so that "3rd of March" is not also taken as "the 3rd".
    for (auto it = m_iso.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        const QDate day(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        if (day.isValid())
            add(m, day);
    }
    // A month name with a day, either way round: which capture holds the day, month and year.
    const struct {
        const QRegularExpression& pattern;
        int day, month, year;
    } named[] = {{m_monthFirst, 2, 1, 3}, {m_dayFirst, 1, 2, 3}};
    for (const auto& form : named) {
        for (auto it = form.pattern.globalMatch(text); it.hasNext();) {
            const auto m = it.next();
            const QDate day = resolveDay(yearOf(m.captured(form.year)), monthNumber(m.captured(form.month)),
                                         m.captured(form.day).toInt(), today);
            if (day.isValid())
                add(m, day);
        }
    }
    const bool monthFirst = monthComesFirst(locale);
    for (auto it = m_numeric.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        const bool slashed = m.capturedLength(1) > 0;
        const int first = m.captured(slashed ? 1 : 4).toInt();
        const int second = m.captured(slashed ? 2 : 5).toInt();
        const int year = yearOf(m.captured(slashed ? 3 : 6));
        const QDate day =
            monthFirst ? resolveDay(year, first, second, today) : resolveDay(year, second, first, today);
        if (day.isValid())
            add(m, day);
    }
    for (auto it = m_relative.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        add(m, relativeDay(m.captured(1), m.captured(2), today));
    }
    for (auto it = m_ordinal.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        const QDate day = resolveDayOfMonth(m.captured(1).toInt(), today);
        if (day.isValid())
            add(m, day);
    }

    // Widen each date over the words that lead into it ("on friday, 4 December").
    for (DetectedDate& date : found) {
        const auto lead = m_leadIn.match(QStringView(text).left(date.range.start));
        if (lead.hasMatch() && lead.capturedLength(0) > 0) {
            date.range.length += date.range.start - lead.capturedStart(0);
            date.range.start = lead.capturedStart(0);
        }
    }
    std::sort(found.begin(), found.end(),
              [](const DetectedDate& a, const DetectedDate& b) { return a.range.start < b.range.start; });
    return found;
}

} // namespace norva::due
