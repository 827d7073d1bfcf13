#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace norva {

// A folder of Norva's own under its data folder for one area (the clipboard's pictures, the
// shelf's drops). Files are written under a hidden temporary name and moved into place, so a
// quit never leaves a half picture with a real name; at launch the hidden leftovers are cleared
// and deletions that failed last time are tried again.
class OwnedFolder {
public:
    // The result of a write: the file's path, or why it was not written.
    struct Written {
        std::optional<QString> path;
        QString error;
    };

    // `area` opens each log line ("Norva clipboard"), `noun` names one file ("picture"),
    // `holder` names what keeps the files ("the clipboard history").
    OwnedFolder(QString url, QString area, QString noun, QString holder,
                std::function<void(const QString&)> log = {});

    // At launch: makes the folder, clears what a quit left half written, retries failed deletions.
    void prepare();

    // Writes a whole file atomically; safe to call off the main thread.
    Written write(const QString& name, const QByteArray& bytes) const;
    // A file name not yet taken in the folder: "base.suffix", then "base 2.suffix" and so on.
    QString freeName(const QString& base, const QString& suffix) const;
    // Deletes one of the folder's files. One that will not go stays listed for the next launch.
    bool remove(const QString& path);

    bool holds(const QString& path) const;
    // The folder's finished files (hidden bookkeeping and half-written files left out).
    QStringList files() const;
    QString url() const { return m_url; }
    QString area() const { return m_area; }
    QString folderName() const;

    // Names of Norva's own bookkeeping inside the folder.
    static constexpr const char* kPartialPrefix = ".partial-";
    static constexpr const char* kDeleteLaterFile = ".delete-later";

private:
    void clearHalfWritten();
    void retryDeletions();
    QStringList deleteLater() const;
    void setDeleteLater(const QStringList& names) const;
    QString plural(int count) const;

    QString m_url;
    QString m_area;
    QString m_noun;
    QString m_holder;
    std::function<void(const QString&)> m_log;
};

} // namespace norva
