#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace norva {

// What a clip holds, in the order the kinds are stored and listed.
enum class ClipboardKind { text, link, image, file, color, code };

// The shown provenance of a clip: when and in which program it was first copied.
struct ClipboardCaption {
    QDateTime date;
    std::optional<QString> app;
    bool operator==(const ClipboardCaption&) const = default;
};

// One clip of the clipboard history, stored in "clipboard.json" as an object with exactly the
// keys "id", "kind", "date", "text", "filePaths", "imageFile", "contentHash", "pinned", "app"
// and "caption" (absent optional keys are left out).
struct ClipboardItem {
    QUuid id;
    ClipboardKind kind = ClipboardKind::text;
    QDateTime date; // when it was last copied
    std::optional<QString> text;
    std::optional<QStringList> filePaths;
    std::optional<QString> imageFile; // a file name inside "ClipboardImages"
    std::optional<qint64> contentHash;
    bool pinned = false;
    std::optional<QString> app;
    std::optional<ClipboardCaption> caption;

    bool operator==(const ClipboardItem&) const = default;

    QJsonObject toJson() const;
    // Refuses an object without a usable id, kind or date; unknown keys are ignored.
    static std::optional<ClipboardItem> fromJson(const QJsonObject& object);

    static QString kindName(ClipboardKind kind);
    static std::optional<ClipboardKind> kindFrom(const QString& name);
};

} // namespace norva
