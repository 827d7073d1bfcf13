#include "calendar/MeetingSettings.h"

#include "app/SettingsStore.h"

#include <QStringList>

namespace norva {

const QString MeetingSettings::kLeadMinutesKey = QStringLiteral("meetings.leadMinutes.v1");
const QString MeetingSettings::kAddressesKey = QStringLiteral("meetings.addresses.v1");
const QString MeetingSettings::kNewEventsCalendarKey = QStringLiteral("meetings.newEventsCalendar.v1");

Seconds MeetingSettings::leadTime() const
{
    const qint64 minutes = std::clamp<qint64>(
        m_settings.storedInteger(kLeadMinutesKey).value_or(kDefaultLeadMinutes), 0, kMostLeadMinutes);
    return Seconds(double(minutes * 60));
}

void MeetingSettings::setLeadMinutes(qint64 minutes)
{
    m_settings.write(QVariant(std::clamp<qint64>(minutes, 0, kMostLeadMinutes)), kLeadMinutesKey);
}

QSet<QString> MeetingSettings::addresses() const
{
    QSet<QString> addresses;
    const QString stored = m_settings.storedText(kAddressesKey).value_or(QString());
    for (QString address : stored.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        address = address.trimmed().toLower();
        if (address.startsWith(QLatin1String("mailto:")))
            address = address.mid(7);
        if (!address.isEmpty())
            addresses.insert(address);
    }
    return addresses;
}

bool MeetingSettings::hasAddresses() const
{
    return m_settings.storedText(kAddressesKey).has_value();
}

void MeetingSettings::setAddresses(const QStringList& addresses)
{
    m_settings.write(QVariant(addresses.join(QStringLiteral(", "))), kAddressesKey);
}

QString MeetingSettings::newEventsCalendar() const
{
    return m_settings.storedText(kNewEventsCalendarKey).value_or(QString());
}

void MeetingSettings::setNewEventsCalendar(const QString& calendarId)
{
    m_settings.write(QVariant(calendarId), kNewEventsCalendarKey);
}

} // namespace norva
