#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace norva {

// Writes a whole file or nothing: the bytes go to a temporary file beside it, which replaces the
// old file only once every byte is written, so a crash or a full disk never leaves half a file.
// Makes the folder when needed. Returns why it failed, or nothing when the file is in place.
std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes);

} // namespace norva
