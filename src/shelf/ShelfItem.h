#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace norva {

// One file on the shelf, stored in "shelf.json" as an object with exactly the keys "id", "path",
// "addedAt" and "isScreenshot".
struct ShelfItem {
    QUuid id;
    QString path; // absolute
    QDateTime addedAt;
    bool isScreenshot = false;

    bool operator==(const ShelfItem&) const = default;

    QJsonObject toJson() const;
    static std::optional<ShelfItem> fromJson(const QJsonObject& object);
};

// What the shelf shows about a file beside its name.
struct FileFacts {
    std::optional<qint64> bytes;
    bool isFolder = false;
    bool isPicture = false;
    QByteArray pictureFormat; // as Qt's image reader names it ("png", "jpeg"); empty for no picture

    static FileFacts of(const QString& path);
};

} // namespace norva
