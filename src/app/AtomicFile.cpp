#include "app/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

namespace norva {
namespace {

// QSaveFile often reports a failed flush or commit as "Unknown error"; the system's own words
// (errno, still set by the failing write) say what happened ("No space left on device").
QString failureOf(const QSaveFile& file, int systemError)
{
    const QString words = file.errorString();
    if (systemError != 0 && (words.isEmpty() || words == QLatin1String("Unknown error")))
        return QString::fromLocal8Bit(std::strerror(systemError));
    return words;
}

} // namespace

std::optional<QString> writeFileAtomically(const QString& path, const QByteArray& bytes)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return QStringLiteral("its folder could not be made");
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    errno = 0;
    if (file.write(bytes) != bytes.size()) {
        const QString why = failureOf(file, errno);
        file.cancelWriting();
        return why;
    }
    if (!file.commit())
        return failureOf(file, errno);
    return std::nullopt;
}

QStringList clearHalfWrittenSaves(const QString& path)
{
    const QFileInfo info(path);
    const QRegularExpression leftover(QStringLiteral("^") + QRegularExpression::escape(info.fileName()) +
                                      QStringLiteral("\\.[A-Za-z0-9]{6}$"));
    const QDir folder = info.absoluteDir();
    QStringList removed;
    for (const QString& name :
         folder.entryList({info.fileName() + QStringLiteral(".*")}, QDir::Files | QDir::Hidden)) {
        if (leftover.match(name).hasMatch() && QFile::remove(folder.filePath(name)))
            removed << name;
    }
    return removed;
}

QString halfWrittenLine(const QString& area, const QString& name)
{
    return area + QStringLiteral(": removed ") + name +
           QStringLiteral(", a save that a quit left half written");
}

} // namespace norva
