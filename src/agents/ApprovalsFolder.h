#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// The outcome of one file operation: done, or not done with the reason in the person's words.
struct FileResult {
    bool ok = true;
    QString error;

    static FileResult done() { return {}; }
    static FileResult failed(QString why) { return {false, std::move(why)}; }
    explicit operator bool() const { return ok; }
};

// The approvals folder, the door through which a local process can approve a shell command.
// Norva keeps it private to the person (0700) and never acts through a link inside it: reads refuse
// links, writes replace a link by a fresh file (write to a temporary name, then move into place).
class ApprovalsFolder {
public:
    // The largest file Norva reads from the folder; a payload is a few kilobytes.
    static constexpr qint64 readLimit = 4 * 1024 * 1024;

    explicit ApprovalsFolder(QString path);

    QString path() const { return m_path; }
    QString filePath(const QString& name) const { return m_path + QLatin1Char('/') + name; }

    // Creates the folder 0700 (parents too) or tightens an existing one to 0700. Fails when the
    // path is a link, not a folder, or belongs to someone else.
    FileResult ensure() const;

    // The names of the regular files in the folder (links and folders are left out).
    QStringList files() const;
    // Every name in the folder but its sub-folders: regular files and links (dangling ones too),
    // for the sweeping that must see what it will never read.
    QStringList names() const;
    bool isLink(const QString& name) const;
    // The content of a regular file; none when it is missing, a link or unreadable.
    std::optional<QByteArray> read(const QString& name) const;
    // Modification time of a regular file; none when it is missing or a link.
    std::optional<QDateTime> modified(const QString& name) const;
    bool exists(const QString& name) const { return modified(name).has_value(); }

    // Writes the whole file under a temporary name and moves it into place (mode 0600 unless given).
    FileResult write(const QString& name, const QByteArray& content, int mode = 0600) const;
    // Sets the file's modification time; a missing file or a link is replaced by an empty file first.
    FileResult touch(const QString& name, const QDateTime& when) const;
    // Removes the file (or a link of that name, never its target). A missing file is not a failure.
    FileResult remove(const QString& name) const;

private:
    QString m_path;
};

} // namespace norva
