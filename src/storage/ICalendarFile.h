#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

struct icalcomponent_impl;
using icalcomponent = struct icalcomponent_impl;

namespace norva {

// Who a file on disk is, cheaply: a file whose stamp is unchanged is not read again.
struct FileStamp {
    qint64 modifiedNs = 0;
    qint64 size = 0;
    quint64 inode = 0;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

// One iCalendar file of a calendar folder, read with libical. Any component kind is welcome
// (VTODO for the reminders, VEVENT for the meetings): the file keeps its bytes as read, so a
// later edit can change a few properties and leave every other byte as another program wrote it.
//
// Reading refuses what could harm or stall Norva: links (a planted link to /etc/shadow is never
// followed), anything but a regular file (a FIFO would block), files over kMaxBytes, binary
// bytes, text cut short, and components nested or filled beyond reason.
class ICalendarFile {
public:
    // A calendar item larger than this is not something a person typed; 10 MB of attachments is
    // left for the program that put it there.
    static constexpr qint64 kMaxBytes = 4 * 1024 * 1024;
    static constexpr int kMaxDepth = 8;
    static constexpr int kMaxProperties = 2000;

    struct Read {
        std::shared_ptr<const ICalendarFile> file; // absent when the file could not be read
        QString reason;                            // why not, for the one log line
        FileStamp stamp;
    };

    // Reads and parses a file on disk; never follows a link.
    static Read read(const QString& path);
    // Parses bytes already in memory (the fuzzer's and the tests' way in).
    static std::optional<ICalendarFile> parse(const QByteArray& bytes, QString* reason = nullptr);
    // The stamp of a path without reading it; absent when it is not a regular file.
    static std::optional<FileStamp> stampOf(const QString& path);

    ICalendarFile(const ICalendarFile&) = default;
    ICalendarFile& operator=(const ICalendarFile&) = default;
    ICalendarFile(ICalendarFile&&) noexcept = default;
    ICalendarFile& operator=(ICalendarFile&&) noexcept = default;
    ~ICalendarFile() = default;

    const QByteArray& bytes() const { return m_bytes; }
    // The parsed VCALENDAR; owned by this file and shared read-only between copies.
    const icalcomponent* calendar() const { return m_calendar.get(); }
    // True when the calendar holds at least one component of the kind ("VTODO", "VEVENT").
    bool holds(const char* kind) const;

private:
    ICalendarFile(QByteArray bytes, std::shared_ptr<icalcomponent> calendar)
        : m_bytes(std::move(bytes)), m_calendar(std::move(calendar))
    {}

    QByteArray m_bytes;
    std::shared_ptr<icalcomponent> m_calendar;
};

// Writes a calendar item the way vdir tools expect: a hidden temporary file in the same folder,
// moved over the item in one step, so todoman or vdirsyncer never see half a file. The move
// replaces a link planted at the path instead of writing through it.
// Returns why it failed, or nothing when the file is in place.
std::optional<QString> writeCalendarItem(const QString& path, const QByteArray& bytes);

} // namespace norva
