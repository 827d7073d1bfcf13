#include "shelf/ZipWriter.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <array>

namespace norva {
namespace {

constexpr quint32 kLocalHeader = 0x04034b50;
constexpr quint32 kCentralHeader = 0x02014b50;
constexpr quint32 kEndOfCentral = 0x06054b50;
constexpr quint16 kVersion = 20;         // 2.0: deflate and folders
constexpr quint16 kMadeByUnix = 0x0314;  // Unix, 2.0: keeps the permission bits
constexpr quint16 kUtf8Names = 1u << 11; // general purpose flag: names are UTF-8
constexpr quint16 kStored = 0;
constexpr quint16 kDeflated = 8;
constexpr qint64 kZipLimit = 0xFFFFFFFFLL;
constexpr qint64 kChunk = 1 << 20;

struct Entry {
    QString name; // inside the archive, '/' separated, folders end with '/'
    QString path; // on disk; empty for folders
    quint16 method = kStored;
    quint32 crc = 0;
    quint32 packed = 0;
    quint32 size = 0;
    quint16 time = 0;
    quint16 date = 0;
    quint32 mode = 0;
    quint32 offset = 0;
};

void put16(QByteArray& out, quint16 value)
{
    out.append(char(value & 0xff)).append(char(value >> 8));
}

void put32(QByteArray& out, quint32 value)
{
    put16(out, quint16(value & 0xffff));
    put16(out, quint16(value >> 16));
}

void dosStamp(const QDateTime& when, Entry& entry)
{
    const QDateTime local = when.isValid() ? when.toLocalTime() : QDateTime(QDate(1980, 1, 1), QTime(0, 0));
    const QDate d = local.date();
    const QTime t = local.time();
    const int year = std::max(d.year(), 1980);
    entry.date = quint16(((year - 1980) << 9) | (d.month() << 5) | d.day());
    entry.time = quint16((t.hour() << 11) | (t.minute() << 5) | (t.second() / 2));
}

quint32 unixMode(const QFileInfo& info)
{
    const auto p = info.permissions();
    quint32 mode = info.isDir() ? 040000 : 0100000;
    mode |= (p & QFileDevice::ReadOwner) ? 0400 : 0;
    mode |= (p & QFileDevice::WriteOwner) ? 0200 : 0;
    mode |= (p & QFileDevice::ExeOwner) ? 0100 : 0;
    mode |= (p & QFileDevice::ReadGroup) ? 040 : 0;
    mode |= (p & QFileDevice::ExeGroup) ? 010 : 0;
    mode |= (p & QFileDevice::ReadOther) ? 04 : 0;
    mode |= (p & QFileDevice::ExeOther) ? 01 : 0;
    return mode;
}

QByteArray localHeader(const Entry& e, const QByteArray& name)
{
    QByteArray h;
    put32(h, kLocalHeader);
    put16(h, kVersion);
    put16(h, kUtf8Names);
    put16(h, e.method);
    put16(h, e.time);
    put16(h, e.date);
    put32(h, e.crc);
    put32(h, e.packed);
    put32(h, e.size);
    put16(h, quint16(name.size()));
    put16(h, 0);
    return h + name;
}

QByteArray centralHeader(const Entry& e, const QByteArray& name)
{
    QByteArray h;
    put32(h, kCentralHeader);
    put16(h, kMadeByUnix);
    put16(h, kVersion);
    put16(h, kUtf8Names);
    put16(h, e.method);
    put16(h, e.time);
    put16(h, e.date);
    put32(h, e.crc);
    put32(h, e.packed);
    put32(h, e.size);
    put16(h, quint16(name.size()));
    put16(h, 0); // extra
    put16(h, 0); // comment
    put16(h, 0); // disk
    put16(h, 0); // internal attributes
    put32(h, e.mode << 16 | (e.name.endsWith(QLatin1Char('/')) ? 0x10 : 0));
    put32(h, e.offset);
    return h + name;
}

// qCompress gives zlib's format: a 4-byte length, a 2-byte header, raw deflate, a 4-byte Adler-32.
// ZIP wants the raw deflate in the middle.
QByteArray rawDeflate(const QByteArray& data)
{
    constexpr int kLengthPrefix = 4;
    constexpr int kZlibHeader = 2;
    constexpr int kAdlerTrailer = 4;
    const QByteArray zlib = qCompress(data, 6);
    return zlib.mid(kLengthPrefix + kZlibHeader, zlib.size() - kLengthPrefix - kZlibHeader - kAdlerTrailer);
}

void collect(const QFileInfo& info, const QString& name, QList<Entry>& entries)
{
    Entry entry;
    entry.mode = unixMode(info);
    dosStamp(info.lastModified(), entry);
    if (info.isDir() && !info.isSymLink()) {
        entry.name = name + QLatin1Char('/');
        entries.append(entry);
        const QDir folder(info.absoluteFilePath());
        const auto children =
            folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo& child : children)
            collect(child, name + QLatin1Char('/') + child.fileName(), entries);
        return;
    }
    entry.name = name;
    entry.path = info.absoluteFilePath();
    entries.append(entry);
}

} // namespace

quint32 ZipWriter::crc32(const char* data, qint64 size, quint32 crc)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> t{};
        for (quint32 n = 0; n < 256; ++n) {
            quint32 c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[n] = c;
        }
        return t;
    }();
    crc = ~crc;
    for (qint64 i = 0; i < size; ++i)
        crc = table[(crc ^ static_cast<unsigned char>(data[i])) & 0xff] ^ (crc >> 8);
    return ~crc;
}

std::optional<QString> ZipWriter::write(const QStringList& sources, const QString& destination)
{
    QList<Entry> entries;
    for (const QString& source : sources) {
        const QFileInfo info(source);
        if (!info.exists())
            return QStringLiteral("%1 is gone").arg(info.fileName());
        collect(info, info.fileName(), entries);
    }
    QSaveFile archive(destination);
    if (!archive.open(QIODevice::WriteOnly))
        return archive.errorString();
    qint64 offset = 0;
    auto emit_ = [&archive, &offset](const QByteArray& bytes) {
        offset += bytes.size();
        return archive.write(bytes) == bytes.size();
    };
    for (Entry& entry : entries) {
        if (offset > kZipLimit)
            return QStringLiteral("the archive would be larger than 4 GB");
        entry.offset = quint32(offset);
        const QByteArray name = entry.name.toUtf8();
        if (entry.path.isEmpty()) {
            if (!emit_(localHeader(entry, name)))
                return archive.errorString();
            continue;
        }
        QFile file(entry.path);
        if (!file.open(QIODevice::ReadOnly))
            return QStringLiteral("%1 would not open (%2)").arg(entry.name, file.errorString());
        const qint64 size = file.size();
        if (size > kZipLimit)
            return QStringLiteral("%1 is larger than 4 GB").arg(entry.name);
        entry.size = quint32(size);
        if (size <= kDeflateLimit) {
            const QByteArray data = file.readAll();
            entry.crc = crc32(data.constData(), data.size());
            const QByteArray packed = rawDeflate(data);
            const bool deflate = !packed.isEmpty() && packed.size() < data.size();
            entry.method = deflate ? kDeflated : kStored;
            entry.packed = quint32(deflate ? packed.size() : data.size());
            if (!emit_(localHeader(entry, name)) || !emit_(deflate ? packed : data))
                return archive.errorString();
            continue;
        }
        // Large files are stored: one pass for the CRC, one to copy, never all in memory.
        quint32 crc = 0;
        while (!file.atEnd()) {
            const QByteArray chunk = file.read(kChunk);
            crc = crc32(chunk.constData(), chunk.size(), crc);
        }
        entry.crc = crc;
        entry.packed = entry.size;
        if (!emit_(localHeader(entry, name)) || !file.seek(0))
            return archive.errorString();
        while (!file.atEnd()) {
            if (!emit_(file.read(kChunk)))
                return archive.errorString();
        }
    }
    const qint64 centralStart = offset;
    for (const Entry& entry : std::as_const(entries)) {
        if (!emit_(centralHeader(entry, entry.name.toUtf8())))
            return archive.errorString();
    }
    if (offset > kZipLimit || entries.size() > 0xFFFF)
        return QStringLiteral("the archive would be larger than a plain zip holds");
    QByteArray end;
    put32(end, kEndOfCentral);
    put16(end, 0);
    put16(end, 0);
    put16(end, quint16(entries.size()));
    put16(end, quint16(entries.size()));
    put32(end, quint32(offset - centralStart));
    put32(end, quint32(centralStart));
    put16(end, 0);
    if (!emit_(end) || !archive.commit())
        return archive.errorString();
    return std::nullopt;
}

} // namespace norva
