#pragma once

#include "reminders/Reminder.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>

#include <optional>

namespace norva {

class ICalendarFile;

// The to-do side of one iCalendar file: what Norva reads of its VTODO, and the edits it makes to
// it. Edits come back as new bytes in which only the changed properties' lines differ.
namespace TodoFile {

// What one file holds for the reminders: its to-dos (list fields left empty) and whether it
// holds events, which leave its whole collection to the meetings.
struct Contents {
    QList<Reminder> todos;
    bool holdsEvents = false;
};

Contents read(const ICalendarFile& file);

// A new file for one to-do, as todoman would write it.
QByteArray create(const QString& uid, const QString& title, const std::optional<QDateTime>& due,
                  bool dueHasTime, const QDateTime& now);

// Ticks a to-do done (a repeating one moves to its next occurrence instead) or not done.
std::optional<QByteArray> setCompleted(const QByteArray& bytes, const QString& uid, bool done,
                                       const QDateTime& now);
std::optional<QByteArray> setTitle(const QByteArray& bytes, const QString& uid, const QString& title,
                                   const QDateTime& now);
std::optional<QByteArray> setDue(const QByteArray& bytes, const QString& uid,
                                 const std::optional<QDateTime>& due, bool dueHasTime, const QDateTime& now);

} // namespace TodoFile
} // namespace norva
