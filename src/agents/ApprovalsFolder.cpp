#include "agents/ApprovalsFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norva {
namespace {

constexpr mode_t privateFolderMode = 0700;

QString reason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

timespec toTimespec(const QDateTime& when)
{
    const qint64 ms = when.toMSecsSinceEpoch();
    timespec t{};
    t.tv_sec = static_cast<time_t>(ms / 1000);
    t.tv_nsec = static_cast<long>((ms % 1000) * 1000000);
    if (t.tv_nsec < 0) {
        t.tv_sec -= 1;
        t.tv_nsec += 1000000000;
    }
    return t;
}

// A file's modification time: POSIX names it st_mtim, macOS st_mtimespec; whichever the C library
// has is taken.
template <typename Stat> timespec modificationTime(const Stat& info)
{
    if constexpr (requires { info.st_mtim; })
        return info.st_mtim;
    else
        return info.st_mtimespec;
}

} // namespace

ApprovalsFolder::ApprovalsFolder(QString path) : m_path(std::move(path)) {}

FileResult ApprovalsFolder::ensure() const
{
    const QByteArray folder = native(m_path);
    struct stat info {};
    if (::lstat(folder.constData(), &info) != 0) {
        if (errno != ENOENT)
            return FileResult::failed(reason(errno));
        const QString parent = QFileInfo(m_path).absolutePath();
        if (!QDir().mkpath(parent))
            return FileResult::failed(QStringLiteral("its parent folder could not be made"));
        if (::mkdir(folder.constData(), privateFolderMode) != 0 && errno != EEXIST)
            return FileResult::failed(reason(errno));
        if (::lstat(folder.constData(), &info) != 0)
            return FileResult::failed(reason(errno));
    }
    if (S_ISLNK(info.st_mode))
        return FileResult::failed(QStringLiteral("it is a link"));
    if (!S_ISDIR(info.st_mode))
        return FileResult::failed(QStringLiteral("it is not a folder"));
    if (info.st_uid != ::getuid())
        return FileResult::failed(QStringLiteral("it belongs to another user"));
    if ((info.st_mode & 07777) != privateFolderMode && ::chmod(folder.constData(), privateFolderMode) != 0)
        return FileResult::failed(reason(errno));
    return FileResult::done();
}

QStringList ApprovalsFolder::files() const
{
    return QDir(m_path).entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks | QDir::System, QDir::Name);
}

QStringList ApprovalsFolder::names() const
{
    return QDir(m_path).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

bool ApprovalsFolder::isLink(const QString& name) const
{
    struct stat info {};
    return ::lstat(native(filePath(name)).constData(), &info) == 0 && S_ISLNK(info.st_mode);
}

std::optional<QByteArray> ApprovalsFolder::read(const QString& name) const
{
    const int fd = ::open(native(filePath(name)).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return std::nullopt;
    struct stat info {};
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > readLimit) {
        ::close(fd);
        return std::nullopt;
    }
    QByteArray content;
    char buffer[8192];
    for (;;) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            ::close(fd);
            return std::nullopt;
        }
        if (got == 0)
            break;
        content.append(buffer, got);
        if (content.size() > readLimit)
            break;
    }
    ::close(fd);
    return content;
}

std::optional<QDateTime> ApprovalsFolder::modified(const QString& name) const
{
    struct stat info {};
    if (::lstat(native(filePath(name)).constData(), &info) != 0 || !S_ISREG(info.st_mode))
        return std::nullopt;
    const timespec t = modificationTime(info);
    return QDateTime::fromMSecsSinceEpoch(qint64(t.tv_sec) * 1000 + t.tv_nsec / 1000000, Qt::UTC);
}

FileResult ApprovalsFolder::write(const QString& name, const QByteArray& content, int mode) const
{
    QByteArray temporary = native(filePath(QStringLiteral(".") + name + QStringLiteral(".norva-XXXXXX")));
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0)
        return FileResult::failed(reason(errno));
    ::fchmod(fd, static_cast<mode_t>(mode));
    qint64 written = 0;
    while (written < content.size()) {
        const ssize_t step = ::write(fd, content.constData() + written, size_t(content.size() - written));
        if (step < 0 && errno == EINTR)
            continue;
        if (step < 0) {
            const int error = errno;
            ::close(fd);
            ::unlink(temporary.constData());
            return FileResult::failed(reason(error));
        }
        written += step;
    }
    if (::close(fd) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return FileResult::failed(reason(error));
    }
    // rename() replaces a link of the final name by the file itself; it never writes through it.
    if (::rename(temporary.constData(), native(filePath(name)).constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return FileResult::failed(reason(error));
    }
    return FileResult::done();
}

FileResult ApprovalsFolder::touch(const QString& name, const QDateTime& when) const
{
    const QByteArray path = native(filePath(name));
    struct stat info {};
    if (::lstat(path.constData(), &info) != 0 || !S_ISREG(info.st_mode)) {
        if (const FileResult made = write(name, QByteArray()); !made)
            return made;
    }
    const timespec t = toTimespec(when);
    const timespec times[2] = {t, t};
    if (::utimensat(AT_FDCWD, path.constData(), times, AT_SYMLINK_NOFOLLOW) != 0)
        return FileResult::failed(reason(errno));
    return FileResult::done();
}

FileResult ApprovalsFolder::remove(const QString& name) const
{
    if (::unlink(native(filePath(name)).constData()) != 0 && errno != ENOENT)
        return FileResult::failed(reason(errno));
    return FileResult::done();
}

} // namespace norva
