#include "reminders/DuePatterns.h"

#include "app/Log.h"

namespace norva::due {

const DuePatterns& DuePatterns::shared()
{
    // A function-local static is built exactly once even when several threads ask at the same time.
    static const DuePatterns patterns;
    return patterns;
}

QRegularExpression DuePatterns::compile(const QString& pattern)
{
    // Unicode properties keep \b, \s and \W right around accented letters and no-break spaces.
    QRegularExpression expression(pattern, QRegularExpression::CaseInsensitiveOption |
                                               QRegularExpression::UseUnicodePropertiesOption);
    if (!expression.isValid()) {
        logLine(QStringLiteral("Norva plan: a due-words pattern did not compile (%1)")
                    .arg(expression.errorString()));
        // A negative look-ahead on nothing never matches: the parser goes on without this rule.
        expression = QRegularExpression(QStringLiteral("(?!)"));
    }
    // Compiling now rather than at the first match means the shared patterns are never written to
    // again once they are handed out.
    expression.optimize();
    return expression;
}

const QStringList& DuePatterns::weekdayRows()
{
    static const QStringList rows = {
        QStringLiteral("sunday|sun"),
        QStringLiteral("monday|mon"),
        QStringLiteral("tuesday|tues|tue"),
        QStringLiteral("wednesday|wed"),
        QStringLiteral("thursday|thurs|thur|thu"),
        QStringLiteral("friday|fri"),
        QStringLiteral("saturday|sat"),
    };
    return rows;
}

namespace {

QString dayWordPattern()
{
    const QString w = DuePatterns::weekdayRows().join(QLatin1Char('|'));
    return QStringLiteral(
               R"re(\b(?:next\s+(%1)|(%1)\s+next\s+week|next\s+week\s+(%1)|(today|tonight|tomorrow|next week|%1))\b)re")
        .arg(w);
}

} // namespace

DuePatterns::DuePatterns()
    : twelveHour(compile(QStringLiteral(R"re(\b(?:at\s+)?([0-9]{1,2})(?::([0-9]{2}))?\s*(am|pm)\b)re"))),
      dottedTwelveHour(
          compile(QStringLiteral(R"re(\b(?:at\s+)?([0-9]{1,2})(?::([0-9]{2}))?\s*([ap])\.m\b\.?)re"))),
      written(compile(QStringLiteral(
          R"re(\b(?:at\s+)?([0-9]{1,2}):([0-9]{2})(?:([ap])(?![a-z0-9])|\b)(?!\s*(?:[ap]m\b|[ap]\.m\b)))re"))),
      dottedMeridiem(compile(QStringLiteral(
          R"re((?<![0-9.,])\b(?:at\s+)?([0-9]{1,2})[.h]([0-9]{2})\s*(?:(am|pm)\b|([ap])\.m\b\.?))re"))),
      dottedWritten(compile(QStringLiteral(
          R"re((?<![0-9.,])\b(at\s+)?([0-9]{1,2})[.h]([0-9]{2})\b(?![.,]?[0-9])(?!\s*(?:[ap]m\b|[ap]\.m\b)))re"))),
      hourAlone(compile(QStringLiteral(
          R"re(\bat\s+([0-9]{1,2})(?:([ap])(?![a-z0-9])|(?:\s*o['’]clock)?\b)(?!\s*[:.]\s*[0-9]{2})(?!\s*[/-]\s*[0-9])(?!\s*(?:[ap]m\b|[ap]\.m\b|noon\b|midday\b|midnight\b)))re"))),
      noon(compile(QStringLiteral(R"re(\b(?:at\s+)?(?:12(?::00)?\s+)?(?:noon|midday)\b)re"))),
      midnight(compile(QStringLiteral(R"re(\b(?:at\s+)?(?:12(?::00)?\s+)?midnight\b)re"))),
      saysNoon(compile(QStringLiteral(
          R"re(\b12\s*(?:p\.?m\b\.?|[:.h]\s*00\b|h\b|uhr\b)|\b(?:noon|midday|midi|mittags?)\b|\bat\s+12\b(?!\s*[:./-]?\s*[0-9]))re"))),
      nightBefore(compile(QStringLiteral(R"re(\b(?:tonight|night)\s+$)re"))),
      saysANight(compile(QStringLiteral(R"re(\b(?:tonight|night)\b)re"))),
      atBefore(compile(QStringLiteral(R"re(\bat\s+$)re"))),
      morningWords(compile(QStringLiteral(R"re(\b(?:morning|breakfast)\b)re"))),
      afternoonWords(compile(QStringLiteral(R"re(\b(?:afternoon|dinner|supper)\b)re"))),
      eveningWords(compile(QStringLiteral(R"re(\b(?:evening|night|tonight)\b)re"))),
      partAfterDay(compile(QStringLiteral(R"re(^\s+(morning|afternoon|evening|night)\b)re"))),
      partAfterTime(
          compile(QStringLiteral(R"re(^\s+(?:in\s+the\s+(morning|afternoon|evening)|at\s+(night))\b)re"))),
      partOfDayWords(compile(QStringLiteral(
          R"re(\b(?:(?:in\s+the|this|at)\s+)?(?:morning|afternoon|evening|night|tonight)\b)re"))),
      partOfDayOnly(compile(QStringLiteral(
          R"re(^[\s\W]*(?:(?:the|this|a|an|in|at|on|of|for)\s+)*(?:morning|afternoon|evening|night|tonight)(?:[\s\W]+(?:(?:the|this|a|an|in|at|on|of|for)\s+)*(?:morning|afternoon|evening|night|tonight))*[\s\W]*$)re"))),
      weekdayMention(compile(QStringLiteral(
          R"re(\b(?:(sun)(?:day)?|(mon)(?:day)?|(tue)(?:s|sday)?|(wed)(?:nesday)?|(thu)(?:r|rs|rsday)?|(fri)(?:day)?|(sat)(?:urday)?)\b)re"))),
      bareNumber(compile(QStringLiteral(R"re(^\s*[0-9]{1,2}\s*[:.]?\s*$)re"))),
      bareHourAhead(compile(QStringLiteral(
          R"re(^\s+[0-9]{1,2}(?![0-9])(?!\s*(?:[:.h][0-9]|[ap]m\b|[ap]\.m\b|o['’]clock\b)))re"))),
      halfAmOrPm(compile(QStringLiteral(R"re(^[0-9]{1,2}[ap]$)re"))),
      dateTypedOut(compile(QStringLiteral(
          R"re(\b(?:january|february|march|april|may|june|july|august|september|october|november|december|jan|feb|mar|apr|jun|jul|aug|sep|sept|oct|nov|dec)\b|\bthe\s+[0-9]{1,2}(?:st|nd|rd|th)\b|\b[0-9]{4}-[0-9]{1,2}-[0-9]{1,2}\b|\b[0-9]{1,2}/[0-9]{1,2}/[0-9]{2,4}\b|\b[0-9]{1,2}\.[0-9]{1,2}\.[0-9]{2,4}\b|\bon\s+[0-9]{1,2}/[0-9]{1,2}\b|\bin\s+[0-9]+\s+(?:days?|weeks?|months?|years?)\b)re"))),
      clockTypedOut(compile(QStringLiteral(
          R"re(\b[0-9]{1,2}:[0-9]{2}\b|\b[0-9]{1,2}h[0-9]{2}\b|\b[0-9]{1,2}(?::[0-9]{2})?\s*(?:[ap]m\b|[ap]\.m\b)|\b[0-9]{1,2}\s*(?:o['’]clock|uhr)\b|(?:\b(?:at|around)|@)\s*[0-9]{1,2}\b)re"))),
      lookalikeNumber(compile(QStringLiteral(
          R"re(\b[0-9]{1,4}[/-][0-9]{1,4}\b(?![/-][0-9])|\b[0-9]+\.[0-9]+\b(?!\.[0-9])|\b[0-9]{1,2}(?:st|nd|rd|th)\b)re"))),
      mealFirst(compile(QStringLiteral(
          R"re(^(?:(?:for|at|over)\s+)?(?:breakfast|brunch|lunch|dinner|supper)\b(?:\s+(?:for|on)\b)?\s*)re"))),
      mealLast(compile(
          QStringLiteral(R"re(\s*\b(?:(?:for|at|over)\s+)?(?:breakfast|brunch|lunch|dinner|supper)$)re"))),
      mealAnywhere(compile(QStringLiteral(
          R"re(\b(?:(?:for|at|over)\s+)?(?:breakfast|brunch|lunch|dinner|supper)\b(?:\s+(?:for|on)\b)?)re"))),
      dayWord(compile(dayWordPattern()))
{}

} // namespace norva::due
