#include "storage/ICalendarFile.h"

#include <QFileInfo>

#include <libical/ical.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace norva {

namespace {

void settleLibical()
{
    // A malformed line must come back as an error property, never abort Norva.
    static std::once_flag once;
    std::call_once(once, [] { icalerror_set_errors_are_fatal(0); });
}

FileStamp stampFrom(const struct stat& info)
{
    return FileStamp{qint64(info.st_mtim.tv_sec) * 1'000'000'000 + info.st_mtim.tv_nsec, qint64(info.st_size),
                     quint64(info.st_ino)};
}

QByteArray trimmedLine(const QByteArray& bytes, qsizetype from, qsizetype to)
{
    while (to > from && (bytes[to - 1] == '\r' || bytes[to - 1] == ' ' || bytes[to - 1] == '\t'))
        --to;
    return bytes.mid(from, to - from);
}

// Checks the shape of the text before libical sees it: libical is forgiving and would build a
// calendar out of half a file, and nothing stops it nesting as deep as a hostile file goes.
std::optional<QString> shapeProblem(const QByteArray& bytes)
{
    if (bytes.contains('\0'))
        return QStringLiteral("it holds binary bytes");
    int depth = 0;
    int deepest = 0;
    QList<int> linesAtDepth{0};
    QByteArray firstLine;
    QByteArray lastLine;
    qsizetype start = 0;
    while (start < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        if (end < 0)
            end = bytes.size();
        const QByteArray line = trimmedLine(bytes, start, end);
        start = end + 1;
        if (line.isEmpty() || line[0] == ' ' || line[0] == '\t')
            continue; // a folded continuation belongs to the line before
        if (firstLine.isEmpty())
            firstLine = line;
        lastLine = line;
        const QByteArray upper = line.left(6).toUpper();
        if (upper.startsWith("BEGIN:")) {
            ++depth;
            deepest = std::max(deepest, depth);
            if (depth > ICalendarFile::kMaxDepth)
                return QStringLiteral("its components nest deeper than %1").arg(ICalendarFile::kMaxDepth);
            linesAtDepth.append(0);
        } else if (upper.startsWith("END:")) {
            if (depth == 0)
                return QStringLiteral("a component ends that never began");
            --depth;
            linesAtDepth.removeLast();
        } else if (++linesAtDepth.last() > ICalendarFile::kMaxProperties) {
            return QStringLiteral("a component holds more than %1 properties")
                .arg(ICalendarFile::kMaxProperties);
        }
    }
    if (firstLine.startsWith("\xEF\xBB\xBF"))
        firstLine = firstLine.mid(3);
    if (firstLine.toUpper() != "BEGIN:VCALENDAR")
        return QStringLiteral("it is not an iCalendar file");
    if (depth != 0 || lastLine.toUpper() != "END:VCALENDAR")
        return QStringLiteral("it ends before its calendar does");
    return std::nullopt;
}

} // namespace

std::optional<ICalendarFile> ICalendarFile::parse(const QByteArray& bytes, QString* reason)
{
    settleLibical();
    if (const auto problem = shapeProblem(bytes)) {
        if (reason)
            *reason = *problem;
        return std::nullopt;
    }
    icalcomponent* parsed = icalparser_parse_string(bytes.constData());
    if (parsed == nullptr || icalcomponent_isa(parsed) != ICAL_VCALENDAR_COMPONENT) {
        if (parsed != nullptr)
            icalcomponent_free(parsed);
        if (reason)
            *reason = QStringLiteral("libical found no calendar in it");
        return std::nullopt;
    }
    return ICalendarFile(bytes, std::shared_ptr<icalcomponent>(parsed, icalcomponent_free));
}

ICalendarFile::Read ICalendarFile::read(const QString& path)
{
    Read result;
    const QByteArray local = QFile::encodeName(path);
    const int fd = ::open(local.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        result.reason = errno == ELOOP ? QStringLiteral("it is a link, which Norva never follows")
                                       : QString::fromLocal8Bit(std::strerror(errno));
        return result;
    }
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        result.reason = QStringLiteral("it is not a plain file");
        return result;
    }
    result.stamp = stampFrom(info);
    if (info.st_size > kMaxBytes) {
        ::close(fd);
        result.reason = QStringLiteral("it is larger than %1 MB").arg(kMaxBytes / (1024 * 1024));
        return result;
    }
    QByteArray bytes(qsizetype(info.st_size), Qt::Uninitialized);
    qsizetype got = 0;
    while (got < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + got, size_t(bytes.size() - got));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        got += n;
    }
    ::close(fd);
    bytes.truncate(got); // a file cut short while we read parses (or fails) as what we got
    QString reason;
    auto parsed = parse(bytes, &reason);
    if (!parsed) {
        result.reason = reason;
        return result;
    }
    result.file = std::make_shared<const ICalendarFile>(std::move(*parsed));
    return result;
}

std::optional<FileStamp> ICalendarFile::stampOf(const QString& path)
{
    struct stat info {};
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0 || !S_ISREG(info.st_mode))
        return std::nullopt;
    return stampFrom(info);
}

bool ICalendarFile::holds(const char* kind) const
{
    const icalcomponent_kind wanted = icalcomponent_string_to_kind(kind);
    auto* calendar = const_cast<icalcomponent*>(m_calendar.get());
    return icalcomponent_get_first_component(calendar, wanted) != nullptr;
}

std::optional<QString> writeCalendarItem(const QString& path, const QByteArray& bytes)
{
    const QFileInfo target(path);
    QByteArray pattern = QFile::encodeName(target.absolutePath() + QStringLiteral("/.norva-") +
                                           target.fileName() + QStringLiteral(".XXXXXX"));
    const int fd = ::mkstemp(pattern.data());
    if (fd < 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + written, size_t(bytes.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        written += n;
    }
    const bool whole = written == bytes.size() && ::fsync(fd) == 0;
    const int writeErrno = errno;
    // An item keeps the permissions it had; a new one is the person's alone, as mkstemp made it.
    struct stat old {};
    if (::lstat(QFile::encodeName(path).constData(), &old) == 0 && S_ISREG(old.st_mode))
        ::fchmod(fd, old.st_mode & 07777);
    ::close(fd);
    if (!whole) {
        ::unlink(pattern.constData());
        return QString::fromLocal8Bit(std::strerror(writeErrno));
    }
    if (::rename(pattern.constData(), QFile::encodeName(path).constData()) != 0) {
        const int renameErrno = errno;
        ::unlink(pattern.constData());
        return QString::fromLocal8Bit(std::strerror(renameErrno));
    }
    return std::nullopt;
}

} // namespace norva
