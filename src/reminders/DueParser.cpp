#include "reminders/DueParser.h"

#include "app/Log.h"
#include "reminders/DuePatterns.h"
#include "reminders/TypedDateDetector.h"

#include <QRegularExpression>

#include <algorithm>
#include <mutex>

namespace norva::due {

// The detector a parser uses, started on first need and once only, however many threads ask.
struct DueParser::DetectorSlot {
    DetectorFactory factory;
    std::once_flag once;
    std::shared_ptr<const DateDetector> detector;
};

namespace {

// A time said with a night word before this hour belongs to the small hours after midnight.
constexpr int kSmallHoursEnd = 5;
// On a day other than today, a bare hour below this one is an afternoon hour ("friday at 3").
constexpr int kWakingHoursStart = 7;
constexpr int kHoursPerHalfDay = 12;
constexpr int kHoursPerDay = 24;
constexpr int kMinutesPerHour = 60;
constexpr qint64 kSecondsPerDay = 86400;

const DuePatterns& rules()
{
    return DuePatterns::shared();
}

TextRange rangeOf(const QRegularExpressionMatch& match, int group = 0, qsizetype offset = 0)
{
    return {match.capturedStart(group) + offset, match.capturedLength(group)};
}

bool overlapsAny(const TextRange& range, const QList<TextRange>& others)
{
    return std::any_of(others.begin(), others.end(),
                       [&](const TextRange& other) { return range.overlaps(other); });
}

bool anyMatchOverlaps(const QRegularExpression& pattern, const QString& text, const TextRange& range)
{
    for (auto it = pattern.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        if (rangeOf(match).overlaps(range))
            return true;
        if (match.capturedStart(0) >= range.end())
            break;
    }
    return false;
}

// ---- Day words ----------------------------------------------------------------------------------

int weekdayNumber(const QString& name)
{
    const QString lower = name.toLower();
    const QStringList& rows = DuePatterns::weekdayRows();
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (rows.at(row).split(QLatin1Char('|')).contains(lower))
            return static_cast<int>(row) + 1;
    }
    return 0;
}

std::optional<Found<DayWord>> firstDayWord(const QString& text)
{
    const auto match = rules().dayWord.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const TextRange range = rangeOf(match);
    for (int group = 1; group <= 3; ++group) {
        if (match.capturedLength(group) > 0)
            return Found<DayWord>{range,
                                  {DayWord::Kind::weekdayNextWeek, weekdayNumber(match.captured(group))}};
    }
    const QString word = match.captured(4).toLower().simplified();
    if (word == QLatin1String("today"))
        return Found<DayWord>{range, {DayWord::Kind::today}};
    if (word == QLatin1String("tonight"))
        return Found<DayWord>{range, {DayWord::Kind::tonight}};
    if (word == QLatin1String("tomorrow"))
        return Found<DayWord>{range, {DayWord::Kind::tomorrow}};
    if (word == QLatin1String("next week"))
        return Found<DayWord>{range, {DayWord::Kind::nextWeek}};
    return Found<DayWord>{range, {DayWord::Kind::weekday, weekdayNumber(word)}};
}

// The first day of the week after this one, by the calendar's first weekday.
QDate startOfNextWeek(const QDate& today, Qt::DayOfWeek firstDay)
{
    const int intoWeek = (today.dayOfWeek() - static_cast<int>(firstDay) + kDaysPerWeek) % kDaysPerWeek;
    return today.addDays(kDaysPerWeek - intoWeek);
}

QDate dayOfWord(const DayWord& word, const QDate& today, Qt::DayOfWeek firstDay)
{
    switch (word.kind) {
    case DayWord::Kind::today:
    case DayWord::Kind::tonight:
        return today;
    case DayWord::Kind::tomorrow:
        return today.addDays(1);
    case DayWord::Kind::nextWeek:
        return startOfNextWeek(today, firstDay);
    case DayWord::Kind::weekday:
        // A weekday that names today means today; a time already past moves it a week on later.
        return today.addDays((qtDayOfWeek(word.weekday) - today.dayOfWeek() + kDaysPerWeek) % kDaysPerWeek);
    case DayWord::Kind::weekdayNextWeek:
        return startOfNextWeek(today, firstDay)
            .addDays((qtDayOfWeek(word.weekday) - static_cast<int>(firstDay) + kDaysPerWeek) % kDaysPerWeek);
    }
    return {};
}

QString describe(const QDate& date)
{
    if (!date.isValid())
        return QStringLiteral("a day beyond the calendar");
    return QStringLiteral("%1-%2-%3")
        .arg(date.year())
        .arg(date.month(), 2, 10, QLatin1Char('0'))
        .arg(date.day(), 2, 10, QLatin1Char('0'));
}

// ---- Times --------------------------------------------------------------------------------------

std::optional<Clock> meridiemClock(int hour, int minute, QChar half)
{
    if (hour < 1 || hour > kHoursPerHalfDay || minute < 0 || minute >= kMinutesPerHour)
        return std::nullopt;
    const bool afternoon = half.toLower() == QLatin1Char('p');
    if (afternoon)
        return Clock{hour == kHoursPerHalfDay ? hour : hour + kHoursPerHalfDay, minute};
    return Clock{hour == kHoursPerHalfDay ? 0 : hour, minute};
}

std::optional<SaidTime> meridiem(int hour, int minute, QChar half)
{
    const auto clock = meridiemClock(hour, minute, half);
    if (!clock)
        return std::nullopt;
    return SaidTime{SaidTime::Kind::meridiem, *clock, false, true};
}

std::optional<SaidTime> plain(const QString& hourText, int minute)
{
    const int hour = hourText.toInt();
    if (hour >= kHoursPerDay || minute < 0 || minute >= kMinutesPerHour)
        return std::nullopt;
    return SaidTime{SaidTime::Kind::plain, {hour, minute}, hourText.startsWith(QLatin1Char('0')), true};
}

// "at" just before a time goes out of the title with it.
TextRange widenedOverAt(const QString& text, TextRange range)
{
    const auto at = rules().atBefore.match(QStringView(text).left(range.start));
    if (at.hasMatch()) {
        range.length += range.start - at.capturedStart(0);
        range.start = at.capturedStart(0);
    }
    return range;
}

using TimeReader = std::function<std::optional<SaidTime>(const QRegularExpressionMatch&)>;

// One clock rule and how its match reads as a time (nothing when the numbers are off the clock).
struct TimeRule {
    const QRegularExpression* pattern;
    TimeReader read;
};

// The earliest match of any rule of one kind that reads as a valid time outside the taken spans.
std::optional<Found<SaidTime>> earliestTime(const QString& text, const QList<TimeRule>& kind,
                                            const QList<TextRange>& taken)
{
    std::optional<Found<SaidTime>> best;
    for (const TimeRule& rule : kind) {
        for (auto it = rule.pattern->globalMatch(text); it.hasNext();) {
            const auto match = it.next();
            const TextRange range = rangeOf(match);
            if (best && range.start >= best->range.start)
                break;
            if (overlapsAny(range, taken))
                continue;
            if (const auto said = rule.read(match)) {
                best = Found<SaidTime>{range, *said};
                break;
            }
        }
    }
    return best;
}

QChar halfLetter(const QRegularExpressionMatch& match, int group)
{
    const QString captured = match.captured(group);
    return captured.isEmpty() ? QChar() : captured.front();
}

// The first time in the text, looked for kind by kind: with am/pm, written clock times, noon and
// midnight, "at" with an hour, and last a bare hour right after the day word ("tomorrow 5").
std::optional<Found<SaidTime>> findTime(const QString& text, const QList<TextRange>& taken,
                                        std::optional<qsizetype> afterDayWord)
{
    const DuePatterns& p = rules();
    const TimeReader twelve = [](const QRegularExpressionMatch& m) {
        return meridiem(m.captured(1).toInt(), m.captured(2).toInt(), halfLetter(m, 3));
    };
    // Built once: the rules point into the shared patterns, which live as long as the process.
    static const QList<QList<TimeRule>> kinds = {
        {{&p.twelveHour, twelve},
         {&p.dottedTwelveHour, twelve},
         {&p.dottedMeridiem,
          [](const QRegularExpressionMatch& m) {
              const QChar half = m.capturedLength(3) > 0 ? halfLetter(m, 3) : halfLetter(m, 4);
              return meridiem(m.captured(1).toInt(), m.captured(2).toInt(), half);
          }}},
        {{&p.written,
          [](const QRegularExpressionMatch& m) {
              if (m.capturedLength(3) > 0)
                  return meridiem(m.captured(1).toInt(), m.captured(2).toInt(), halfLetter(m, 3));
              return plain(m.captured(1), m.captured(2).toInt());
          }},
         {&p.dottedWritten,
          [](const QRegularExpressionMatch& m) { return plain(m.captured(2), m.captured(3).toInt()); }}},
        {{&p.noon,
          [](const QRegularExpressionMatch&) {
              return std::optional(SaidTime{SaidTime::Kind::noon, {kHoursPerHalfDay, 0}, false, true});
          }},
         {&p.midnight,
          [](const QRegularExpressionMatch&) {
              return std::optional(SaidTime{SaidTime::Kind::midnight, {0, 0}, false, true});
          }}},
        {{&p.hourAlone,
          [](const QRegularExpressionMatch& m) {
              if (m.capturedLength(2) > 0)
                  return meridiem(m.captured(1).toInt(), 0, halfLetter(m, 2));
              return plain(m.captured(1), 0);
          }}},
    };
    constexpr qsizetype kNoonAndMidnight = 2;
    for (qsizetype k = 0; k < kinds.size(); ++k) {
        auto found = earliestTime(text, kinds.at(k), taken);
        if (found && k < kNoonAndMidnight) {
            // "12:00 midnight" is midnight, not the written 12:00 inside it.
            const auto named = earliestTime(text, kinds.at(kNoonAndMidnight), taken);
            if (named && named->range.contains(found->range))
                found = named;
        }
        if (found) {
            found->range = widenedOverAt(text, found->range);
            return found;
        }
    }
    if (afterDayWord) {
        const auto bare = p.bareHourAhead.match(QStringView(text).mid(*afterDayWord));
        if (bare.hasMatch()) {
            const QString digits = bare.captured(0).trimmed();
            const TextRange range{*afterDayWord + bare.capturedEnd(0) - digits.size(), digits.size()};
            if (const auto said = plain(digits, 0); said && !overlapsAny(range, taken))
                return Found<SaidTime>{range, *said};
        }
    }
    return std::nullopt;
}

// ---- Parts of the day ---------------------------------------------------------------------------

// What the parts of the day in a text say: the half they choose for a bare hour, and the words to
// cut from the title (tied to the time, following the day word, or anywhere).
struct PartOfDay {
    std::optional<Half> half;
    bool saysMorning = false;
    QList<TextRange> words;
    QList<TextRange> tied;
    std::optional<TextRange> afterDay;
    bool untied = false;
};

Half halfNamed(const QString& word)
{
    const QString lower = word.toLower();
    if (lower == QLatin1String("morning"))
        return Half::morning;
    if (lower == QLatin1String("afternoon"))
        return Half::afternoon;
    if (lower == QLatin1String("evening"))
        return Half::evening;
    return Half::night;
}

// The half that words anywhere in the text name; "dinner" and "supper" count as afternoon,
// "night" and "tonight" as evening. The earliest such word decides.
std::optional<Half> halfNamedAnywhere(const QString& text)
{
    const DuePatterns& p = rules();
    std::optional<Half> half;
    qsizetype at = text.size();
    const std::pair<const QRegularExpression*, Half> families[] = {{&p.morningWords, Half::morning},
                                                                   {&p.afternoonWords, Half::afternoon},
                                                                   {&p.eveningWords, Half::evening}};
    for (const auto& [pattern, named] : families) {
        const auto match = pattern->match(text);
        if (match.hasMatch() && match.capturedStart(0) < at) {
            at = match.capturedStart(0);
            half = named;
        }
    }
    return half;
}

PartOfDay partOfDay(const QString& text, const std::optional<TextRange>& dayWord,
                    const std::optional<Found<SaidTime>>& time)
{
    const DuePatterns& p = rules();
    PartOfDay part;
    for (auto it = p.partOfDayWords.globalMatch(text); it.hasNext();)
        part.words.append(rangeOf(it.next()));
    part.saysMorning = p.morningWords.match(text).hasMatch();

    std::optional<Half> tiedHalf;
    if (time) {
        const auto after = p.partAfterTime.match(QStringView(text).mid(time->range.end()));
        if (after.hasMatch()) {
            part.tied.append(rangeOf(after, 0, time->range.end()));
            tiedHalf = halfNamed(after.capturedLength(1) > 0 ? after.captured(1) : after.captured(2));
        } else if (p.nightBefore.match(QStringView(text).left(time->range.start)).hasMatch()) {
            // "tomorrow night 11": the time belongs to that night.
            tiedHalf = Half::night;
        }
    }
    std::optional<Half> afterDayHalf;
    if (dayWord) {
        const auto after = p.partAfterDay.match(QStringView(text).mid(dayWord->end()));
        if (after.hasMatch()) {
            part.afterDay = rangeOf(after, 0, dayWord->end());
            afterDayHalf = halfNamed(after.captured(1));
        }
    }
    part.half = tiedHalf ? tiedHalf : afterDayHalf ? afterDayHalf : halfNamedAnywhere(text);
    part.untied = std::any_of(part.words.begin(), part.words.end(), [&](const TextRange& word) {
        return !overlapsAny(word, part.tied) && !(part.afterDay && part.afterDay->overlaps(word));
    });
    return part;
}

// ---- Placing on the calendar --------------------------------------------------------------------

// The instant at which the zone's clocks show this day and time. A time that a clock change skips
// becomes the first moment after the change; a time shown twice is its first showing.
std::optional<QDateTime> placeWallTime(const QDate& day, const Clock& clock, const QTimeZone& zone)
{
    const QDateTime wallAsUtc(day, QTime(clock.hour, clock.minute), QTimeZone::utc());
    if (!day.isValid() || !wallAsUtc.isValid())
        return std::nullopt;
    const qint64 wall = wallAsUtc.toSecsSinceEpoch();
    const auto offsetAt = [&](qint64 secs) {
        return zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(secs, QTimeZone::utc()));
    };
    // Offsets a day either side cover any one clock change around this wall time.
    QList<int> offsets = {offsetAt(wall - kSecondsPerDay), offsetAt(wall), offsetAt(wall + kSecondsPerDay)};
    std::sort(offsets.begin(), offsets.end());
    offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
    std::optional<qint64> first;
    for (const int offset : offsets) {
        const qint64 instant = wall - offset;
        if (offsetAt(instant) == offset && (!first || instant < *first))
            first = instant;
    }
    if (!first) {
        const QTimeZone::OffsetData change =
            zone.nextTransition(QDateTime::fromSecsSinceEpoch(wall - offsets.last() - 1, QTimeZone::utc()));
        if (!change.atUtc.isValid() || change.atUtc.toSecsSinceEpoch() > wall - offsets.first())
            return std::nullopt;
        first = change.atUtc.toSecsSinceEpoch();
    }
    QDateTime placed = QDateTime::fromSecsSinceEpoch(*first, zone);
    if (!placed.isValid())
        return std::nullopt;
    return placed;
}

QString clockDescription(const Clock& clock)
{
    return QStringLiteral("%1:%2")
        .arg(clock.hour, 2, 10, QLatin1Char('0'))
        .arg(clock.minute, 2, 10, QLatin1Char('0'));
}

// The start of the day in the zone, or nothing with the log line that says why.
std::optional<QDateTime> placeDay(const QDate& day, const QTimeZone& zone)
{
    const QDateTime start = day.isValid() ? day.startOfDay(zone) : QDateTime();
    if (!start.isValid()) {
        logLine(QStringLiteral("Norva plan: due words named a day the calendar could not place (%1)")
                    .arg(describe(day)));
        return std::nullopt;
    }
    return start;
}

// The due for a day and a time, or nothing with the log line that says why.
std::optional<QDateTime> placeTime(const QDate& day, const Clock& clock, const QTimeZone& zone)
{
    if (!placeDay(day, zone))
        return std::nullopt;
    auto placed = placeWallTime(day, clock, zone);
    if (!placed)
        logLine(QStringLiteral("Norva plan: due words named a time the calendar could not place (%1)")
                    .arg(clockDescription(clock)));
    return placed;
}

QString labelFor(const std::optional<DayWord>& word, const QDate& day, const QDate& today,
                 const QLocale& locale)
{
    if (word) {
        switch (word->kind) {
        case DayWord::Kind::today:
            return QStringLiteral("Today");
        case DayWord::Kind::tonight:
            return QStringLiteral("Tonight");
        case DayWord::Kind::tomorrow:
            return QStringLiteral("Tomorrow");
        case DayWord::Kind::nextWeek:
            return QStringLiteral("Next week");
        case DayWord::Kind::weekday:
        case DayWord::Kind::weekdayNextWeek:
            break;
        }
    }
    // The locale's month-and-day ("Nov 20" or "20 Nov"), with the year only when it is not this one.
    const bool monthFirst = TypedDateDetector::monthComesFirst(locale);
    if (day.year() == today.year())
        return locale.toString(day, monthFirst ? QStringLiteral("MMM d") : QStringLiteral("d MMM"));
    return locale.toString(day, monthFirst ? QStringLiteral("MMM d, yyyy") : QStringLiteral("d MMM yyyy"));
}

// ---- The title ----------------------------------------------------------------------------------

// A span of due words without the meal phrases in it: "dinner" is what the person has to do.
QList<TextRange> withoutMeals(const QString& text, TextRange range)
{
    const DuePatterns& p = rules();
    const auto first = p.mealFirst.match(QStringView(text).mid(range.start, range.length));
    if (first.hasMatch()) {
        range.start += first.capturedLength(0);
        range.length -= first.capturedLength(0);
    }
    const auto last = p.mealLast.match(QStringView(text).mid(range.start, range.length));
    if (last.hasMatch())
        range.length = last.capturedStart(0);
    QList<TextRange> pieces;
    qsizetype from = range.start;
    for (auto it = p.mealAnywhere.globalMatch(QStringView(text).mid(range.start, range.length));
         it.hasNext();) {
        const TextRange meal = rangeOf(it.next(), 0, range.start);
        pieces.append({from, meal.start - from});
        from = meal.end();
    }
    pieces.append({from, range.end() - from});
    return pieces;
}

QString titleWithout(const QString& text, const QList<TextRange>& dueWords)
{
    QList<TextRange> cuts;
    for (const TextRange& range : dueWords) {
        for (const TextRange& piece : withoutMeals(text, range)) {
            if (piece.length > 0)
                cuts.append(piece);
        }
    }
    std::sort(cuts.begin(), cuts.end(),
              [](const TextRange& a, const TextRange& b) { return a.start < b.start; });
    QString kept;
    kept.reserve(text.size());
    qsizetype from = 0;
    for (const TextRange& cut : cuts) {
        if (cut.start > from)
            kept += QStringView(text).mid(from, cut.start - from);
        // A space where words were cut keeps the words either side apart.
        kept += QLatin1Char(' ');
        from = std::max(from, cut.end());
    }
    kept += QStringView(text).mid(from);
    return kept.simplified();
}

bool isStrictPrefixOfDueWord(const QString& word)
{
    static const QStringList vocabulary = [] {
        QStringList words = {
            QStringLiteral("today"),     QStringLiteral("tonight"), QStringLiteral("tomorrow"),
            QStringLiteral("next"),      QStringLiteral("week"),    QStringLiteral("morning"),
            QStringLiteral("afternoon"), QStringLiteral("evening"), QStringLiteral("night")};
        for (const QString& row : DuePatterns::weekdayRows())
            words += row.split(QLatin1Char('|'));
        return words;
    }();
    // A word that is already whole ("fri", "tues") reads the same as the longer one it may become,
    // so only a part of a word ("tomo", "eve", "frid") holds the reading back.
    if (vocabulary.contains(word))
        return false;
    return std::any_of(vocabulary.begin(), vocabulary.end(),
                       [&](const QString& due) { return due.size() > word.size() && due.startsWith(word); });
}

} // namespace

// ---- DueParser ----------------------------------------------------------------------------------

DueParser::DueParser()
{
    // Every parser made this way shares one detector, started once for the process.
    static const std::shared_ptr<DetectorSlot> shared = [] {
        auto slot = std::make_shared<DetectorSlot>();
        slot->factory = &TypedDateDetector::create;
        return slot;
    }();
    m_detector = shared;
}

DueParser::DueParser(DetectorFactory startDetector) : m_detector(std::make_shared<DetectorSlot>())
{
    m_detector->factory = std::move(startDetector);
}

const DateDetector* DueParser::detector() const
{
    std::call_once(m_detector->once, [this] {
        DetectorStart start = m_detector->factory();
        if (!start.detector)
            logLine(QStringLiteral(
                        "Norva plan: the date detector did not start (%1); due words read by the rules only")
                        .arg(start.error));
        m_detector->detector = std::move(start.detector);
    });
    return m_detector->detector.get();
}

bool DueParser::isStillBeingTyped(const QString& text)
{
    if (text.isEmpty())
        return false;
    const DuePatterns& p = rules();
    if (!text.back().isSpace()) {
        qsizetype start = text.size();
        while (start > 0 && !text.at(start - 1).isSpace())
            --start;
        const QString lastWord = text.mid(start);
        qsizetype letters = 0;
        while (letters < lastWord.size() && !lastWord.at(letters).isLetterOrNumber())
            ++letters;
        const QString word = lastWord.mid(letters).toLower();
        const bool onlyLetters =
            !word.isEmpty() && std::all_of(word.begin(), word.end(), [](QChar c) { return c.isLetter(); });
        if (onlyLetters && isStrictPrefixOfDueWord(word))
            return true;
        if (p.halfAmOrPm.match(lastWord).hasMatch())
            return true;
    }
    const auto day = firstDayWord(text);
    return day && p.bareNumber.match(QStringView(text).mid(day->range.end())).hasMatch();
}

QList<Detection> DueParser::detections(const QString& text, const QDateTime& now, const Calendar& calendar,
                                       const QLocale& locale) const
{
    const DateDetector* found = detector();
    if (!found)
        return {};
    const DuePatterns& p = rules();
    const QDateTime localNow = now.toTimeZone(calendar.timeZone);
    const QDate today = localNow.date();
    QList<Detection> kept;
    for (const DetectedDate& date : found->detect(text, localNow, calendar, locale)) {
        const TextRange range = date.range;
        if (range.start < 0 || range.length <= 0 || range.end() > text.size())
            continue;
        // A version number, fraction or ordinal is not a date unless date or clock words are there too.
        const bool misreads = anyMatchOverlaps(p.lookalikeNumber, text, range) &&
                              !anyMatchOverlaps(p.dateTypedOut, text, range) &&
                              !anyMatchOverlaps(p.clockTypedOut, text, range);
        if (misreads)
            continue;
        // Letters or digits glued to the text around them are part of another word, not a date.
        const QStringView span = QStringView(text).mid(range.start, range.length);
        const bool alphanumericSpan =
            std::all_of(span.begin(), span.end(), [](QChar c) { return c.isLetterOrNumber(); });
        const bool glued = (range.start > 0 && text.at(range.start - 1).isLetterOrNumber()) ||
                           (range.end() < text.size() && text.at(range.end()).isLetterOrNumber());
        if (alphanumericSpan && glued)
            continue;
        Detection detection;
        detection.range = range;
        detection.day = date.day;
        detection.weekday =
            date.day.isValid() ? sundayFirstWeekday(static_cast<Qt::DayOfWeek>(date.day.dayOfWeek())) : 0;
        detection.clock = date.clock;
        detection.isOnToday = date.day == today;
        detection.isBeforeToday = date.day.isValid() && date.day < today;
        kept.append(detection);
    }
    return kept;
}

std::optional<Clock> DueParser::typedClock(const QString& text) const
{
    const auto day = firstDayWord(text);
    const auto time = findTime(text, {}, day ? std::optional(day->range.end()) : std::nullopt);
    if (!time)
        return std::nullopt;
    return time->value.clock;
}

std::optional<Reading> DueParser::parse(const QString& text, const QDateTime& now, const Calendar& calendar,
                                        const QLocale& locale) const
{
    const DuePatterns& p = rules();
    if (text.trimmed().isEmpty() || isStillBeingTyped(text))
        return std::nullopt;
    // "tonight" alone is not a to-do: nothing would be left for its title.
    if (p.partOfDayOnly.match(text).hasMatch())
        return std::nullopt;

    const QTimeZone& zone = calendar.timeZone;
    const QDateTime localNow = now.toTimeZone(zone);
    const QDate today = localNow.date();

    // The day: a day word, or a date the detector found. A detected date that takes in the day word
    // ("friday 4 december") is the more exact of the two; otherwise the earlier one in the text wins.
    std::optional<Found<DayWord>> dayWord = firstDayWord(text);
    std::optional<Detection> detected;
    for (const Detection& detection : detections(text, now, calendar, locale)) {
        if (!detection.isBeforeToday) {
            detected = detection;
            break;
        }
    }
    if (dayWord && detected) {
        // A detected span that is only a weekday name is the day word's to read ("next friday").
        const QString span = text.mid(detected->range.start, detected->range.length).trimmed();
        const auto weekday = p.weekdayMention.match(span);
        const bool onlyAWeekday = weekday.hasMatch() && weekday.capturedLength(0) == span.size();
        if (!onlyAWeekday &&
            (detected->range.contains(dayWord->range) || detected->range.start < dayWord->range.start))
            dayWord.reset();
        else
            detected.reset();
    }
    std::optional<Found<Day>> named;
    if (dayWord)
        named = Found<Day>{dayWord->range, {dayWord->value, {}}};
    else if (detected)
        named = Found<Day>{detected->range, {std::nullopt, detected->day}};
    const std::optional<TextRange> dayRange = named ? std::optional(named->range) : std::nullopt;

    QList<TextRange> taken;
    if (dayRange)
        taken.append(*dayRange);
    std::optional<qsizetype> afterDay;
    if (dayWord) {
        afterDay = dayWord->range.end();
        // "tomorrow evening 7": the bare hour may follow the part of the day too.
        const auto part = p.partAfterDay.match(QStringView(text).mid(*afterDay));
        if (part.hasMatch() && !p.bareHourAhead.match(QStringView(text).mid(*afterDay)).hasMatch())
            afterDay = *afterDay + part.capturedEnd(0);
    }
    std::optional<Found<SaidTime>> time = findTime(text, taken, afterDay);
    if (!time && detected && detected->clock)
        time = Found<SaidTime>{{detected->range.start, 0},
                               {SaidTime::Kind::meridiem, *detected->clock, false, false}};

    const PartOfDay part = partOfDay(text, dayWord ? std::optional(dayWord->range) : std::nullopt, time);
    // With no day and no time, only a part of the day standing on its own names a due ("evening run").
    if (!dayRange && !time && !part.untied)
        return std::nullopt;

    // The named day, before any time moves it.
    std::optional<DayWord> word;
    QDate day = today;
    if (named && named->value.word) {
        word.emplace(*named->value.word);
        day = dayOfWord(*word, today, calendar.firstDayOfWeek);
    } else if (named) {
        day = named->value.date;
    }
    const bool dayIsNamed = named.has_value();

    Reading reading;
    QList<TextRange> dueWords = part.words + part.tied;
    if (dayRange)
        dueWords.append(*dayRange);
    if (part.afterDay)
        dueWords.append(*part.afterDay);

    const auto start = placeDay(day, zone);
    if (!start)
        return std::nullopt;
    if (!time) {
        if (!dayIsNamed)
            word = DayWord{DayWord::Kind::today};
        reading.date = *start;
        reading.hasTime = false;
    } else {
        dueWords.append(time->range);
        const SaidTime& said = time->value;
        const bool saysNight = p.saysANight.match(text).hasMatch() && !p.saysNoon.match(text).hasMatch();

        // The clock the time stands for, or the two it may stand for when a bare hour leaves the half open.
        QList<Clock> clocks{said.clock};
        bool carried = false;
        if (said.kind == SaidTime::Kind::plain && !said.asWritten && said.clock.hour >= 1 &&
            said.clock.hour < kHoursPerHalfDay) {
            if (part.half && saysNight && said.clock.hour < kSmallHoursEnd && *part.half != Half::morning) {
                carried = true; // "tonight at 1" is one in the morning after
            } else if (part.half && *part.half != Half::morning) {
                clocks = {{said.clock.hour + kHoursPerHalfDay, said.clock.minute}};
            } else if (!part.half && !part.saysMorning) {
                clocks = {said.clock, {said.clock.hour + kHoursPerHalfDay, said.clock.minute}};
            }
        } else if (saysNight && said.clock.hour < kSmallHoursEnd && said.kind != SaidTime::Kind::noon) {
            carried = true;
        }
        if (carried) {
            const QDate after = day.addDays(1);
            if (!after.isValid() || !after.startOfDay(zone).isValid()) {
                logLine(QStringLiteral(
                    "Norva plan: due words named a night the calendar could not carry past midnight"));
                return std::nullopt;
            }
            day = after;
        }

        const auto ahead = [&](const QDate& onDay, const Clock& clock) {
            const auto placed = placeWallTime(onDay, clock, zone);
            return placed && *placed > localNow;
        };
        Clock clock = clocks.front();
        if (!dayIsNamed && said.needsADay) {
            // A time alone is on the next occasion still ahead: today, or else tomorrow.
            const auto later =
                std::find_if(clocks.begin(), clocks.end(), [&](const Clock& c) { return ahead(day, c); });
            if (later != clocks.end()) {
                clock = *later;
                word = DayWord{carried ? DayWord::Kind::tonight : DayWord::Kind::today};
            } else {
                day = day.addDays(1);
                word = DayWord{carried ? DayWord::Kind::tonight : DayWord::Kind::tomorrow};
            }
        } else {
            const bool isToday = day == today;
            const auto later =
                std::find_if(clocks.begin(), clocks.end(), [&](const Clock& c) { return ahead(day, c); });
            if (isToday && later != clocks.end()) {
                clock = *later;
            } else {
                if (clocks.size() > 1)
                    clock = said.clock.hour < kWakingHoursStart ? clocks.back() : clocks.front();
                // A weekday that names today, with its time gone by, is next week's.
                if (isToday && dayWord && dayWord->value.kind == DayWord::Kind::weekday)
                    day = day.addDays(kDaysPerWeek);
            }
        }
        const auto placed = placeTime(day, clock, zone);
        if (!placed)
            return std::nullopt;
        reading.date = *placed;
        reading.hasTime = true;
        if (carried && !(word && word->kind == DayWord::Kind::tonight))
            day = day.addDays(-1); // the label names the evening the night began on
    }
    reading.label = labelFor(word, day, today, locale);
    reading.title = titleWithout(text, dueWords);
    return reading;
}

QString DueParser::clockText(const QDateTime& date, const Calendar& calendar, const QLocale& locale)
{
    // Some locales' short format (the C locale's among them) carries seconds; a due never has any.
    QString format = locale.timeFormat(QLocale::ShortFormat);
    format.remove(QRegularExpression(QStringLiteral("[:.]ss?")));
    QString text = locale.toString(date.toTimeZone(calendar.timeZone).time(), format);
    text.replace(QChar(0x202F), QLatin1Char(' '));
    text.replace(QChar(0x00A0), QLatin1Char(' '));
    return text;
}

int DueParser::daysAhead(const QDateTime& of, const QDateTime& from, const Calendar& calendar)
{
    // Counting calendar dates (as if both were at noon) rather than elapsed hours keeps a 23-hour or
    // 25-hour day from making the count one short.
    const QDate ofDay = of.toTimeZone(calendar.timeZone).date();
    const QDate fromDay = from.toTimeZone(calendar.timeZone).date();
    return static_cast<int>(fromDay.daysTo(ofDay));
}

} // namespace norva::due
