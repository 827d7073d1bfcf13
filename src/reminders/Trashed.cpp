#include "reminders/Trashed.h"

#include "reminders/Reminder.h"

namespace norva {

Trashed Trashed::of(const Reminder& reminder)
{
    Trashed trashed{reminder.id, reminder.title, reminder.listName, reminder.due, std::nullopt};
    if (reminder.due)
        trashed.dueHasTime = reminder.dueHasTime;
    return trashed;
}

QJsonObject Trashed::toJson() const
{
    QJsonObject object{
        {QStringLiteral("id"), id}, {QStringLiteral("title"), title}, {QStringLiteral("listName"), listName}};
    if (due)
        object.insert(QStringLiteral("due"), due->toUTC().toString(Qt::ISODate));
    if (dueHasTime)
        object.insert(QStringLiteral("dueHasTime"), *dueHasTime);
    return object;
}

std::optional<Trashed> Trashed::fromJson(const QJsonObject& object)
{
    const auto id = object.value(QStringLiteral("id"));
    const auto title = object.value(QStringLiteral("title"));
    const auto listName = object.value(QStringLiteral("listName"));
    if (!id.isString() || !title.isString() || !listName.isString())
        return std::nullopt;
    Trashed trashed{id.toString(), title.toString(), listName.toString(), std::nullopt, std::nullopt};
    if (object.contains(QStringLiteral("due"))) {
        const QDateTime due =
            QDateTime::fromString(object.value(QStringLiteral("due")).toString(), Qt::ISODate);
        if (!due.isValid())
            return std::nullopt;
        trashed.due = due;
    }
    if (object.value(QStringLiteral("dueHasTime")).isBool())
        trashed.dueHasTime = object.value(QStringLiteral("dueHasTime")).toBool();
    return trashed;
}

QList<Trashed> archiving(QList<Trashed> trash, const QList<Trashed>& fresh, int cap)
{
    QList<Trashed> result = fresh;
    result.append(trash);
    if (result.size() > cap)
        result.resize(cap);
    return result;
}

} // namespace norva
