#include "shelf/ShelfActions.h"

#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "shelf/ShelfPlatform.h"
#include "shelf/ZipWriter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QUrl>

#include <array>

namespace norva {
namespace {

constexpr std::array kFormatNames{"PNG", "JPEG", "HEIC", "TIFF"};
constexpr std::array kFormatSuffixes{"png", "jpg", "heic", "tiff"};
constexpr std::array kWriterFormats{"png", "jpeg", "heic", "tiff"};
constexpr int kProcessWaitMs = 10 * 60 * 1000; // a very large zip may take minutes

bool copyTree(const QString& from, const QString& to)
{
    const QFileInfo info(from);
    if (!info.isDir())
        return QFile::copy(from, to);
    if (!QDir().mkpath(to))
        return false;
    const QDir source(from);
    for (const QString& name : source.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        if (!copyTree(source.filePath(name), QDir(to).filePath(name)))
            return false;
    }
    return true;
}

} // namespace

QString ShelfActions::formatName(ImageFormat format)
{
    return QString::fromLatin1(kFormatNames.at(size_t(format)));
}

QString ShelfActions::formatSuffix(ImageFormat format)
{
    return QString::fromLatin1(kFormatSuffixes.at(size_t(format)));
}

QString ShelfActions::freePath(const QString& folder, const QString& fileName)
{
    const QDir dir(folder);
    const QFileInfo name(fileName);
    const QString base = name.completeBaseName().isEmpty() ? fileName : name.completeBaseName();
    const QString suffix = name.suffix().isEmpty() || name.completeBaseName().isEmpty()
                               ? QString()
                               : QLatin1Char('.') + name.suffix();
    QString candidate = fileName;
    for (int n = 2; dir.exists(candidate); ++n)
        candidate = base + QLatin1Char(' ') + QString::number(n) + suffix;
    return dir.filePath(candidate);
}

QString ShelfActions::archivePath(const QStringList& sources, const QString& folder)
{
    const QString name = sources.size() == 1 ? QFileInfo(sources.first()).fileName() + QStringLiteral(".zip")
                                             : QStringLiteral("Archive.zip");
    return freePath(folder, name);
}

ShelfActions::ProcessRun ShelfActions::runProcess(const QString& program, const QStringList& arguments)
{
    const ProcessResult result = norva::runProcess(program, arguments, {}, kProcessWaitMs);
    if (!result.started)
        return {false, 0, result.startError};
    // A zip that hung or was killed has no status of its own; it counts as failed.
    const int status = result.timedOut || result.crashed ? -1 : result.exitCode;
    return {true, status, result.failureReason(QFileInfo(program).fileName())};
}

ShelfActions::Result<QString> ShelfActions::compress(const QStringList& sources, const QString& archive,
                                                     const ProcessRunner& runner)
{
    const bool useDitto = Platform::zipsWithDitto() || bool(runner); // a test hands in a stand-in for ditto
    if (useDitto) {
        const ProcessRunner run = runner ? runner : ProcessRunner(&ShelfActions::runProcess);
        if (sources.size() != 1)
            return Failure{QStringLiteral("ditto zips one item at a time")};
        const ProcessRun result =
            run(QStringLiteral("/usr/bin/ditto"),
                {QStringLiteral("-c"), QStringLiteral("-k"), QStringLiteral("--sequesterRsrc"),
                 QStringLiteral("--keepParent"), sources.first(), archive});
        if (!result.started)
            return Failure{QStringLiteral("ditto would not start: ") + result.error};
        if (result.status != 0)
            return Failure{QStringLiteral("ditto stopped with status ") + QString::number(result.status)};
        return archive;
    }
    if (const auto why = ZipWriter::write(sources, archive))
        return Failure{*why};
    return archive;
}

QString ShelfActions::convertedName(const QString& picture, ImageFormat format)
{
    return QFileInfo(picture).completeBaseName() + QLatin1Char('.') + formatSuffix(format);
}

std::optional<ShelfActions::ImageFormat> ShelfActions::formatFrom(const QString& name)
{
    for (size_t i = 0; i < kFormatNames.size(); ++i) {
        if (name.compare(QLatin1String(kFormatNames.at(i)), Qt::CaseInsensitive) == 0)
            return static_cast<ImageFormat>(i);
    }
    return std::nullopt;
}

ShelfActions::Result<QString> ShelfActions::convert(const QString& picture, ImageFormat format,
                                                    const QString& target)
{
    QImageReader reader(picture);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return Failure{QStringLiteral("it did not read as a picture")};
    const QByteArray writerFormat(kWriterFormats.at(size_t(format)));
    if (!QImageWriter::supportedImageFormats().contains(writerFormat)) {
        return Failure{Platform::thisComputer() + QStringLiteral(" cannot write ") + formatName(format)};
    }
    QImageWriter writer(target, writerFormat);
    // JPEG has no transparency: lay the picture on white rather than on black.
    QImage output = image;
    if (format == ImageFormat::jpeg && image.hasAlphaChannel()) {
        output = QImage(image.size(), QImage::Format_RGB32);
        output.fill(Qt::white);
        QPainter painter(&output);
        painter.drawImage(0, 0, image);
    }
    if (!writer.write(output)) {
        QFile::remove(target);
        return Failure{writer.errorString()};
    }
    return target;
}

ShelfActions::Result<QStringList> ShelfActions::copyToFolder(const QStringList& paths, const QString& folder)
{
    if (!QFileInfo(folder).isDir())
        return Failure{QFileInfo(folder).fileName() + QStringLiteral(" is not a folder")};
    QStringList copied;
    for (const QString& path : paths) {
        const QString target = freePath(folder, QFileInfo(path).fileName());
        if (!copyTree(path, target))
            return Failure{QFileInfo(path).fileName() + QStringLiteral(" would not copy")};
        copied << target;
    }
    return copied;
}

ShelfActions::Result<QStringList> ShelfActions::moveToFolder(const QStringList& paths, const QString& folder)
{
    if (!QFileInfo(folder).isDir())
        return Failure{QFileInfo(folder).fileName() + QStringLiteral(" is not a folder")};
    QStringList moved;
    for (const QString& path : paths) {
        const QString target = freePath(folder, QFileInfo(path).fileName());
        // rename moves within one disk; across disks the copy is made whole before the original goes.
        if (QDir().rename(path, target)) {
            moved << target;
            continue;
        }
        const bool copied = copyTree(path, target);
        const bool removed =
            copied && (QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path));
        if (!copied || !removed)
            return Failure{QFileInfo(path).fileName() + QStringLiteral(" would not move")};
        moved << target;
    }
    return moved;
}

ShelfActions::Result<bool> ShelfActions::open(const QString& path)
{
    if (!QFileInfo::exists(path))
        return Failure{QFileInfo(path).fileName() + QStringLiteral(" is gone")};
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        return Failure{QStringLiteral("no program opens ") + QFileInfo(path).fileName()};
    return true;
}

ShelfActions::Result<bool> ShelfActions::reveal(const QString& path)
{
    if (!QFileInfo::exists(path))
        return Failure{QFileInfo(path).fileName() + QStringLiteral(" is gone")};
    // The freedesktop file-manager interface selects the file; without it, the folder opens.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return true;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath())))
        return Failure{QStringLiteral("no file manager answered")};
    return true;
}

} // namespace norva
