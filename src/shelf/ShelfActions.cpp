#include "shelf/ShelfActions.h"

#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "shelf/FileOpener.h"
#include "shelf/ShelfPlatform.h"
#include "shelf/ZipWriter.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QUrl>

#include <array>

namespace norva {
namespace {

using ImageFormat = ShelfActions::ImageFormat;

constexpr std::array kFormatNames{"PNG", "JPEG", "HEIC", "TIFF", "WebP", "PDF"};
constexpr std::array kFormatSuffixes{"png", "jpg", "heic", "tiff", "webp", "pdf"};
// The names Qt's image plug-ins go by; a PDF is drawn by QPdfWriter, which every Qt has.
constexpr std::array kWriterFormats{"png", "jpeg", "heic", "tiff", "webp", ""};
// What the shelf offers a picture to become, in the order the menu lists them. TIFF is left out:
// nobody asks a shelf for it, and a menu that lists it is one row longer for everyone.
constexpr std::array kOffered{ImageFormat::jpeg, ImageFormat::png, ImageFormat::webp, ImageFormat::heic,
                              ImageFormat::pdf};
// A PDF page is the picture's size at the resolution of a usual screen, so a screenshot prints
// as large as it looked.
constexpr int kPdfResolution = 96;
constexpr double kPointsPerInch = 72.0;
constexpr int kProcessWaitMs = 10 * 60 * 1000; // a very large zip may take minutes
constexpr int kFileManagerWaitMs = 3000;       // a file manager that starts on the call answers in this

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

bool ShelfActions::canWrite(ImageFormat format)
{
    if (format == ImageFormat::pdf)
        return true;
    return QImageWriter::supportedImageFormats().contains(QByteArray(kWriterFormats.at(size_t(format))));
}

QList<ShelfActions::ImageFormat> ShelfActions::convertTargets(const QByteArray& pictureFormat)
{
    if (pictureFormat.isEmpty())
        return {};
    const QByteArray own = pictureFormat.toLower();
    QList<ImageFormat> targets;
    for (const ImageFormat format : kOffered) {
        if (own != kWriterFormats.at(size_t(format)) && canWrite(format))
            targets << format;
    }
    return targets;
}

ShelfActions::Result<QString> ShelfActions::convert(const QString& picture, ImageFormat format,
                                                    const QString& target)
{
    if (format == ImageFormat::pdf)
        return pdfOf({picture}, target);
    QImageReader reader(picture);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return Failure{QStringLiteral("it did not read as a picture")};
    if (!canWrite(format))
        return Failure{Platform::thisComputer() + QStringLiteral(" cannot write ") + formatName(format)};
    QImageWriter writer(target, kWriterFormats.at(size_t(format)));
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

ShelfActions::Result<QString> ShelfActions::pdfOf(const QStringList& pictures, const QString& target)
{
    QPdfWriter writer(target);
    writer.setResolution(kPdfResolution);
    writer.setCreator(QStringLiteral("Norva"));
    QPainter painter;
    const auto fail = [&](const QString& why) -> Result<QString> {
        if (painter.isActive())
            painter.end();
        QFile::remove(target);
        return Failure{why};
    };
    for (const QString& picture : pictures) {
        // One picture at a time, so a PDF of many screenshots holds one of them in memory, not all.
        QImageReader reader(picture);
        reader.setAutoTransform(true);
        const QImage image = reader.read();
        if (image.isNull())
            return fail(pictures.size() == 1
                            ? QStringLiteral("it did not read as a picture")
                            : QFileInfo(picture).fileName() + QStringLiteral(" did not read as a picture"));
        writer.setPageSize(QPageSize(QSizeF(image.size()) * kPointsPerInch / kPdfResolution, QPageSize::Point,
                                     QString(), QPageSize::ExactMatch));
        writer.setPageMargins(QMarginsF());
        if (!painter.isActive()) {
            if (!painter.begin(&writer))
                return fail(QStringLiteral("the PDF could not be written"));
        } else if (!writer.newPage()) {
            return fail(QStringLiteral("the PDF could not take another page"));
        }
        painter.drawImage(QRectF(0, 0, writer.width(), writer.height()), image);
    }
    if (!painter.isActive())
        return fail(QStringLiteral("there was no picture to put in it"));
    if (!painter.end())
        return fail(QStringLiteral("the PDF could not be written"));
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

namespace {

ShelfActions::Result<bool> openWith(FileOpener& opener, const QString& path)
{
    if (const auto refusal = opener.open(path))
        return ShelfActions::Failure{refusal->why, refusal->advice};
    return true;
}

} // namespace

ShelfActions::Result<bool> ShelfActions::open(const QString& path, FileOpener& opener)
{
    if (!QFileInfo::exists(path))
        return Failure{QFileInfo(path).fileName() + QStringLiteral(" is gone"),
                       QStringLiteral("That file is no longer there.")};
    return openWith(opener, path);
}

ShelfActions::Result<bool> ShelfActions::reveal(const QString& path, FileOpener& opener)
{
    if (!QFileInfo::exists(path))
        return Failure{QFileInfo(path).fileName() + QStringLiteral(" is gone"),
                       QStringLiteral("That file is no longer there.")};
    // The freedesktop file-manager interface selects the file; without it, the folder opens.
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, kFileManagerWaitMs);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return true;
    return openWith(opener, QFileInfo(path).absolutePath());
}

} // namespace norva
