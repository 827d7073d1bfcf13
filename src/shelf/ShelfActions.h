#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <variant>

namespace norva {

class FileOpener;

// The shelf's file work: zip, convert, copy and move to a folder, open, show in the file manager.
// Every call blocks and is meant for a background thread; each returns the new path(s) or why not.
class ShelfActions {
public:
    // What a picture is converted to; `pdf` is a document with one page per picture.
    enum class ImageFormat { png, jpeg, heic, tiff, webp, pdf };
    struct Failure {
        Failure(QString reason, QString whatToDo = {}) : why(std::move(reason)), advice(std::move(whatToDo))
        {}
        QString why;
        QString advice; // what the person can do about it, where there is something to say
    };
    template <typename T> using Result = std::variant<T, Failure>;

    // Runs a program to its end: (program, arguments) -> (started, exit status, error text).
    struct ProcessRun {
        bool started = false;
        int status = 0;
        QString error;
    };
    using ProcessRunner = std::function<ProcessRun(const QString&, const QStringList&)>;

    // Zips the sources into `archive`. On macOS through "/usr/bin/ditto" (run by `runner`),
    // elsewhere through Norva's own zip writer.
    static Result<QString> compress(const QStringList& sources, const QString& archive,
                                    const ProcessRunner& runner = {});
    // The archive name for the sources: "name.zip" for one, "Archive.zip" for several, free in folder.
    static QString archivePath(const QStringList& sources, const QString& folder);
    // Writes the picture anew in the format at `target`; returns it.
    static Result<QString> convert(const QString& picture, ImageFormat format, const QString& target);
    // Writes one PDF at `target` with a page for each picture, each page the picture's own size.
    static Result<QString> pdfOf(const QStringList& pictures, const QString& target);
    // The converted picture's name: the original's base name with the format's suffix.
    static QString convertedName(const QString& picture, ImageFormat format);
    static std::optional<ImageFormat> formatFrom(const QString& name);
    // What a picture of the format its reader names ("png", "jpeg", "webp"...) is offered to become:
    // JPEG, PNG, WebP and HEIC where this system's image plug-ins write them, and PDF, never its own
    // format. Nothing for a file that is no picture (an empty reader format).
    static QList<ImageFormat> convertTargets(const QByteArray& pictureFormat);
    // Whether this system can write the format (PNG and PDF always; the others need a plug-in).
    static bool canWrite(ImageFormat format);
    static Result<QStringList> copyToFolder(const QStringList& paths, const QString& folder);
    static Result<QStringList> moveToFolder(const QStringList& paths, const QString& folder);
    static Result<bool> open(const QString& path, FileOpener& opener);
    // Shows the file in the file manager, selected; where no file manager answers that, its folder opens.
    static Result<bool> reveal(const QString& path, FileOpener& opener);

    static QString formatName(ImageFormat format); // "PNG", "JPEG", "HEIC", "TIFF", "WebP", "PDF"
    static QString formatSuffix(ImageFormat format);
    // "name.ext", else "name 2.ext" and on: the first name not taken in the folder.
    static QString freePath(const QString& folder, const QString& fileName);
    static ProcessRun runProcess(const QString& program, const QStringList& arguments);
};

} // namespace norva
