#pragma once

#include "notes/QuickNote.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace norva {

// How a quick note reads as a Markdown file in the notes mirror: a YAML front matter between "---"
// lines with "created:", "updated:", "category:" and "norva:" (the note's id, by which Norva knows
// its own files), then the note's text.
namespace MarkdownNote {

QByteArray render(const QuickNote& note);
// An ISO 8601 instant in UTC, to the second ("2026-11-18T10:00:00Z").
QString iso(const QDateTime& instant);
// The text as a YAML scalar: plain when it reads back as itself, double-quoted otherwise.
QString yamlScalar(const QString& text);
// The file's name without ".md": the first line made safe for a file name, or the creation moment.
QString baseName(const QuickNote& note);
// "yyyy-MM-dd HH.mm" in local time, for a note without a usable first line.
QString untitledStamp(const QDateTime& created);
// The note id in a file's front matter, when the file is one of Norva's own.
std::optional<QUuid> ownerID(const QByteArray& content);

} // namespace MarkdownNote
} // namespace norva
