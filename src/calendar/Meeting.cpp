#include "calendar/Meeting.h"

namespace norva {

QString Meeting::key() const
{
    if (const ManualMeeting* own = manual())
        return QStringLiteral("norva/") + own->id.toString(QUuid::WithoutBraces);
    const EventOccurrence& from = event()->ekOccurrence;
    QString key = from.calendarId + QLatin1Char('/') + from.fileName + QLatin1Char('/') + from.uid;
    if (from.recurrenceId)
        key += QLatin1Char('/') + QString::number(from.recurrenceId->toSecsSinceEpoch());
    return key;
}

QString Meeting::clockText(const QDateTime& instant, const QTimeZone& zone)
{
    // Hours and minutes only: the locale's short format carries seconds in some locales (C, POSIX).
    return instant.toTimeZone(zone).time().toString(QStringLiteral("HH:mm"));
}

} // namespace norva
