#pragma once

#include "reminders/DateDetector.h"

#include <QRegularExpression>

namespace norva::due {

// Norva's own detector of typed-out dates: month names with a day ("March 3", "3rd of March 2027"),
// "the 3rd", ISO dates, numeric dates with slashes or dots, "in 3 days/weeks/months/years", each
// optionally led by a weekday. A day given without a year is the next one still to come.
class TypedDateDetector : public DateDetector {
public:
    static DetectorStart create();

    // Whether the locale writes numeric dates month first ("M/d/yy") rather than day first.
    static bool monthComesFirst(const QLocale& locale);

    QList<DetectedDate> detect(const QString& text, const QDateTime& now, const Calendar& calendar,
                               const QLocale& locale) const override;

private:
    TypedDateDetector() = default;

    QRegularExpression m_monthFirst;
    QRegularExpression m_dayFirst;
    QRegularExpression m_ordinal;
    QRegularExpression m_iso;
    QRegularExpression m_numeric;
    QRegularExpression m_relative;
    QRegularExpression m_leadIn;
};

} // namespace norva::due
