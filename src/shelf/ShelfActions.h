#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>

namespace norva {

// The shelf's file work: zip, convert, copy and move to a folder, open, show in the file manager.
// Every call blocks and is meant for a background thread; each returns the new path(s) or why not.
class ShelfActions {
public:
    enum class ImageFormat { png, jpeg, heic, tiff };
    struct Failure {
        QString why;
    };
    template <typename T>
    using Result = std::variant<T, Failure>;

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
    // The converted picture's name: the original's base name with the format's suffix.
    static QString convertedName(const QString& picture, ImageFormat format);
    static std::optional<ImageFormat> formatFrom(const QString& name);
    static Result<QStringList> copyToFolder(const QStringList& paths, const QString& folder);
    static Result<QStringList> moveToFolder(const QStringList& paths, const QString& folder);
    static Result<bool> open(const QString& path);
    static Result<bool> reveal(const QString& path);

    static QString formatName(ImageFormat format); // "PNG", "JPEG", "HEIC", "TIFF"
    static QString formatSuffix(ImageFormat format);
    // "name.ext", else "name 2.ext" and on: the first name not taken in the folder.
    static QString freePath(const QString& folder, const QString& fileName);
    static ProcessRun runProcess(const QString& program, const QStringList& arguments);
};

} // namespace norva
