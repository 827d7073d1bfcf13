#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// Writes a plain ZIP archive that every unzip tool opens (Files, Finder, Windows Explorer,
// unzip, 7-Zip): small files deflated, large or incompressible ones stored, names in UTF-8, each
// source under its own name with its folder kept as the top level (as "ditto --keepParent" does).
// Written under a temporary name and moved into place. No ZIP64, so each file and the whole
// archive must stay under 4 GB.
class ZipWriter {
public:
    // Files up to this size are deflated in memory; larger ones are stored as they are.
    static constexpr qint64 kDeflateLimit = 32 * 1024 * 1024;

    // Writes the archive; returns why it was not written, or nothing when it was.
    static std::optional<QString> write(const QStringList& sources, const QString& destination);
    // The CRC-32 (ZIP's polynomial) of the bytes, continuing from `crc`.
    static quint32 crc32(const char* data, qint64 size, quint32 crc = 0);
};

} // namespace norva
