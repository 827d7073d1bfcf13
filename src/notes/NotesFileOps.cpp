#include "notes/NotesFileOps.h"

#include "app/AtomicFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace norva {

bool LocalNotesFileOps::folderExists(const QString& folder) const
{
    return QFileInfo(folder).isDir();
}

std::optional<QByteArray> LocalNotesFileOps::read(const QString& path) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

bool LocalNotesFileOps::exists(const QString& path) const
{
    return QFileInfo::exists(path);
}

std::optional<QString> LocalNotesFileOps::write(const QString& path, const QByteArray& bytes)
{
    return writeFileAtomically(path, bytes);
}

// rename(2) rather than QFile::rename: it never copies, and it says why it failed.
std::optional<QString> LocalNotesFileOps::move(const QString& from, const QString& to)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    return std::nullopt;
}

std::optional<QString> LocalNotesFileOps::remove(const QString& path)
{
    if (std::remove(QFile::encodeName(path).constData()) != 0)
        return QString::fromLocal8Bit(std::strerror(errno));
    return std::nullopt;
}

} // namespace norva
