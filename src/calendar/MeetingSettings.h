#pragma once

#include "app/Clock.h"

#include <QSet>
#include <QString>

namespace norva {

class SettingsStore;

// The meetings' own preferences, read through the settings store: how long before a meeting the
// closed notch shows it, the person's own addresses (to tell an invitation they declined), and
// the calendar that new events go into.
class MeetingSettings {
public:
    static const QString kLeadMinutesKey;       // "meetings.leadMinutes.v1", 10 when absent
    static const QString kAddressesKey;         // "meetings.addresses.v1", addresses split by commas
    static const QString kNewEventsCalendarKey; // "meetings.newEventsCalendar.v1", a calendar folder's name
    static constexpr qint64 kDefaultLeadMinutes = 10;
    static constexpr qint64 kMostLeadMinutes = 24 * 60;

    explicit MeetingSettings(SettingsStore& settings) : m_settings(settings) {}

    Seconds leadTime() const;
    void setLeadMinutes(qint64 minutes);
    // Lower-case, without "mailto:"; empty until the person (or Norva's first guess) sets them.
    QSet<QString> addresses() const;
    bool hasAddresses() const;
    void setAddresses(const QStringList& addresses);
    QString newEventsCalendar() const;
    void setNewEventsCalendar(const QString& calendarId);

    SettingsStore& store() const { return m_settings; }

private:
    SettingsStore& m_settings;
};

} // namespace norva
