#include "clipboard/ClipboardItem.h"

#include <QJsonArray>

#include <array>

namespace norva {
namespace {

constexpr std::array kKindNames{"text", "link", "image", "file", "color", "code"};

QString dateText(const QDateTime& date)
{
    return date.toUTC().toString(Qt::ISODateWithMs);
}

std::optional<QDateTime> dateFrom(const QJsonValue& value)
{
    if (!value.isString())
        return std::nullopt;
    QDateTime date = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
    if (!date.isValid())
        return std::nullopt;
    return date.toUTC();
}

std::optional<QString> optionalText(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional<QString>(value.toString()) : std::nullopt;
}

} // namespace

QString ClipboardItem::kindName(ClipboardKind kind)
{
    return QString::fromLatin1(kKindNames.at(static_cast<size_t>(kind)));
}

std::optional<ClipboardKind> ClipboardItem::kindFrom(const QString& name)
{
    for (size_t i = 0; i < kKindNames.size(); ++i) {
        if (name == QLatin1String(kKindNames.at(i)))
            return static_cast<ClipboardKind>(i);
    }
    return std::nullopt;
}

QJsonObject ClipboardItem::toJson() const
{
    QJsonObject object{{QStringLiteral("id"), id.toString(QUuid::WithoutBraces)},
                       {QStringLiteral("kind"), kindName(kind)},
                       {QStringLiteral("date"), dateText(date)},
                       {QStringLiteral("pinned"), pinned}};
    if (text)
        object.insert(QStringLiteral("text"), *text);
    if (filePaths)
        object.insert(QStringLiteral("filePaths"), QJsonArray::fromStringList(*filePaths));
    if (imageFile)
        object.insert(QStringLiteral("imageFile"), *imageFile);
    if (contentHash)
        object.insert(QStringLiteral("contentHash"), *contentHash);
    if (app)
        object.insert(QStringLiteral("app"), *app);
    if (caption) {
        QJsonObject shown{{QStringLiteral("date"), dateText(caption->date)}};
        if (caption->app)
            shown.insert(QStringLiteral("app"), *caption->app);
        object.insert(QStringLiteral("caption"), shown);
    }
    return object;
}

std::optional<ClipboardItem> ClipboardItem::fromJson(const QJsonObject& object)
{
    ClipboardItem item;
    item.id = QUuid::fromString(object.value(QStringLiteral("id")).toString());
    const auto kind = kindFrom(object.value(QStringLiteral("kind")).toString());
    const auto date = dateFrom(object.value(QStringLiteral("date")));
    if (item.id.isNull() || !kind || !date)
        return std::nullopt;
    item.kind = *kind;
    item.date = *date;
    item.text = optionalText(object, QStringLiteral("text"));
    const QJsonValue paths = object.value(QStringLiteral("filePaths"));
    if (paths.isArray()) {
        QStringList list;
        for (const auto& path : paths.toArray()) {
            if (!path.isString())
                return std::nullopt;
            list << path.toString();
        }
        item.filePaths = list;
    }
    item.imageFile = optionalText(object, QStringLiteral("imageFile"));
    const QJsonValue hash = object.value(QStringLiteral("contentHash"));
    if (hash.isDouble())
        item.contentHash = hash.toInteger();
    item.pinned = object.value(QStringLiteral("pinned")).toBool(false);
    item.app = optionalText(object, QStringLiteral("app"));
    const QJsonValue caption = object.value(QStringLiteral("caption"));
    if (caption.isObject()) {
        if (const auto shownDate = dateFrom(caption.toObject().value(QStringLiteral("date"))))
            item.caption = ClipboardCaption{*shownDate, optionalText(caption.toObject(), QStringLiteral("app"))};
    }
    // A clip must carry what its kind copies back.
    const bool whole = item.kind == ClipboardKind::image  ? item.imageFile.has_value()
                       : item.kind == ClipboardKind::file ? item.filePaths.has_value()
                                                          : item.text.has_value();
    if (!whole)
        return std::nullopt;
    return item;
}

} // namespace norva
