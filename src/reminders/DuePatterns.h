#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace norva::due {

// Every rule pattern of the due-date parser, compiled once on first use and then shared read-only
// by every thread. A pattern that does not compile is logged and replaced by one that never matches,
// so the parser carries on without that rule.
class DuePatterns {
public:
    static const DuePatterns& shared();

    // Compiles one pattern case-insensitively; on failure logs the reason and returns a pattern
    // that matches nothing.
    static QRegularExpression compile(const QString& pattern);

    // The weekday names, Sunday first; a name's row plus one is its weekday number.
    static const QStringList& weekdayRows();

    QRegularExpression twelveHour;
    QRegularExpression dottedTwelveHour;
    QRegularExpression written;
    QRegularExpression dottedMeridiem;
    QRegularExpression dottedWritten;
    QRegularExpression hourAlone;
    QRegularExpression noon;
    QRegularExpression midnight;
    QRegularExpression saysNoon;
    QRegularExpression nightBefore;
    QRegularExpression saysANight;
    QRegularExpression atBefore;
    QRegularExpression morningWords;
    QRegularExpression afternoonWords;
    QRegularExpression eveningWords;
    QRegularExpression partAfterDay;
    QRegularExpression partAfterTime;
    QRegularExpression partOfDayWords;
    QRegularExpression partOfDayOnly;
    QRegularExpression weekdayMention;
    QRegularExpression bareNumber;
    QRegularExpression bareHourAhead;
    QRegularExpression halfAmOrPm;
    QRegularExpression dateTypedOut;
    QRegularExpression clockTypedOut;
    QRegularExpression lookalikeNumber;
    QRegularExpression mealFirst;
    QRegularExpression mealLast;
    QRegularExpression mealAnywhere;
    QRegularExpression dayWord;

private:
    DuePatterns();
};

} // namespace norva::due
