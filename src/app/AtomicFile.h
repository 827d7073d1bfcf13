#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// Writes a whole file or nothing: the bytes go to a temporary file beside it, which replaces the
// old file only once every byte is written, so a crash or a full disk never leaves half a file.
// Makes the folder when needed. Returns why it failed, or nothing when the file is in place.
std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes);

// Where a file is kept before Norva writes over what it held: beside it, named with why and the
// moment in UTC ("clipboard.json.unreadable-20261118-100000") so a later one never meets it.
// The notes are stamped the way a person reads a date ("yyyy-MM-dd-HHmmss").
inline QString asideCopyName(const QString& path, const QString& why, const QDateTime& now,
                             const QString& stamp = QStringLiteral("yyyyMMdd-HHmmss"))
{
    return path + QLatin1Char('.') + why + QLatin1Char('-') + now.toUTC().toString(stamp);
}

// Where a file Norva could not read is moved before Norva writes its own.
inline QString unreadableCopyName(const QString& path, const QDateTime& now,
                                  const QString& stamp = QStringLiteral("yyyyMMdd-HHmmss"))
{
    return asideCopyName(path, QStringLiteral("unreadable"), now, stamp);
}

// A quit between writing and renaming leaves the save's temporary file ("<name>.XXXXXX") beside
// the file, which itself is whole (old or new). Removes such leftovers and returns their names,
// for the caller's log line (halfWrittenLine).
QStringList clearHalfWrittenSaves(const QString& path);
// "<area>: removed <name>, a save that a quit left half written"
QString halfWrittenLine(const QString& area, const QString& name);

} // namespace norva
