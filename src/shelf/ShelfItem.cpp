#include "shelf/ShelfItem.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

namespace norva {

QJsonObject ShelfItem::toJson() const
{
    return {{QStringLiteral("id"), id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("path"), path},
            {QStringLiteral("addedAt"), addedAt.toUTC().toString(Qt::ISODateWithMs)},
            {QStringLiteral("isScreenshot"), isScreenshot}};
}

std::optional<ShelfItem> ShelfItem::fromJson(const QJsonObject& object)
{
    ShelfItem item;
    item.id = QUuid::fromString(object.value(QStringLiteral("id")).toString());
    item.path = object.value(QStringLiteral("path")).toString();
    item.addedAt =
        QDateTime::fromString(object.value(QStringLiteral("addedAt")).toString(), Qt::ISODateWithMs);
    item.isScreenshot = object.value(QStringLiteral("isScreenshot")).toBool(false);
    if (item.id.isNull() || item.path.isEmpty() || !QDir::isAbsolutePath(item.path) ||
        !item.addedAt.isValid())
        return std::nullopt;
    item.addedAt = item.addedAt.toUTC();
    return item;
}

FileFacts FileFacts::of(const QString& path)
{
    const QFileInfo info(path);
    FileFacts facts;
    facts.isFolder = info.isDir();
    if (info.isFile())
        facts.bytes = info.size();
    if (info.isFile())
        facts.pictureFormat = QImageReader::imageFormat(path);
    facts.isPicture = !facts.pictureFormat.isEmpty();
    return facts;
}

} // namespace norva
