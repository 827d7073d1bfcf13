#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// The file work of the notes mirror, in the folder the person chose. Each operation that can fail
// returns the system's words for why ("No space left on device"), or nothing when it worked.
class NotesFileOps {
public:
    virtual ~NotesFileOps() = default;
    virtual bool folderExists(const QString& folder) const = 0;
    // The file's bytes; none when it cannot be read (or is not there).
    virtual std::optional<QByteArray> read(const QString& path) const = 0;
    virtual bool exists(const QString& path) const = 0;
    // Whole or not at all.
    virtual std::optional<QString> write(const QString& path, const QByteArray& bytes) = 0;
    virtual std::optional<QString> move(const QString& from, const QString& to) = 0;
    virtual std::optional<QString> remove(const QString& path) = 0;
};

// The file work on this computer's own file system.
class LocalNotesFileOps final : public NotesFileOps {
public:
    bool folderExists(const QString& folder) const override;
    std::optional<QByteArray> read(const QString& path) const override;
    bool exists(const QString& path) const override;
    std::optional<QString> write(const QString& path, const QByteArray& bytes) override;
    std::optional<QString> move(const QString& from, const QString& to) override;
    std::optional<QString> remove(const QString& path) override;
};

} // namespace norva
