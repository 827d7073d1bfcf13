#include "notes/QuickNote.h"

namespace norva {
namespace {

QString instantText(const QDateTime& instant)
{
    return instant.toUTC().toString(Qt::ISODateWithMs);
}

QDateTime instantFrom(const QJsonValue& value)
{
    return value.isString() ? QDateTime::fromString(value.toString(), Qt::ISODateWithMs) : QDateTime();
}

} // namespace

QString QuickNote::firstLine() const
{
    for (const QStringView line : QStringView(text).split(QLatin1Char('\n'))) {
        const QStringView trimmed = line.trimmed();
        if (!trimmed.isEmpty())
            return trimmed.toString();
    }
    return {};
}

QJsonObject QuickNote::toJson() const
{
    return {{QStringLiteral("id"), id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("text"), text},
            {QStringLiteral("category"), category},
            {QStringLiteral("updatedAt"), instantText(updatedAt)},
            {QStringLiteral("createdAt"), instantText(createdAt)}};
}

std::optional<QuickNote> QuickNote::fromJson(const QJsonObject& object)
{
    QuickNote note;
    note.id = QUuid::fromString(object.value(QStringLiteral("id")).toString());
    const QJsonValue text = object.value(QStringLiteral("text"));
    if (note.id.isNull() || !text.isString())
        return std::nullopt;
    note.text = text.toString();
    note.category = object.value(QStringLiteral("category")).toString();
    note.createdAt = instantFrom(object.value(QStringLiteral("createdAt")));
    note.updatedAt = instantFrom(object.value(QStringLiteral("updatedAt")));
    if (!note.createdAt.isValid())
        note.createdAt =
            note.updatedAt.isValid() ? note.updatedAt : QDateTime::fromMSecsSinceEpoch(0, Qt::UTC);
    if (!note.updatedAt.isValid())
        note.updatedAt = note.createdAt;
    return note;
}

} // namespace norva
