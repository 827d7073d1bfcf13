#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace norva {

// Writes a whole file or nothing: the bytes go to a temporary file beside it, which replaces the
// old file only once every byte is written, so a crash or a full disk never leaves half a file.
// Makes the folder when needed. Returns why it failed, or nothing when the file is in place.
std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes);

// Where a file Norva could not read is moved before Norva writes its own: beside it, named with
// the moment in UTC ("clipboard.json.unreadable-20261118-100000") so a later one never meets it.
// The notes are stamped the way a person reads a date ("yyyy-MM-dd-HHmmss").
inline QString unreadableCopyName(const QString& path, const QDateTime& now,
                                  const QString& stamp = QStringLiteral("yyyyMMdd-HHmmss"))
{
    return path + QStringLiteral(".unreadable-") + now.toUTC().toString(stamp);
}

} // namespace norva
