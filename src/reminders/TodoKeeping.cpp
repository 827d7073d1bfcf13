#include "reminders/TodoKeeping.h"

#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace norva {

namespace {

QJsonArray storedArray(const SettingsStore& settings, const QString& key)
{
    const auto text = settings.storedText(key, QStringLiteral("a JSON list"));
    return text ? QJsonDocument::fromJson(text->toUtf8()).array() : QJsonArray();
}

QString compact(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

} // namespace

QStringList TodoKeeping::order() const
{
    if (!m_settings)
        return m_order;
    QStringList ids;
    for (const auto& value : storedArray(*m_settings, SettingsKeys::todosOrder))
        if (value.isString())
            ids.append(value.toString());
    return ids;
}

void TodoKeeping::setOrder(const QStringList& ids)
{
    if (!m_settings) {
        m_order = ids;
        return;
    }
    if (ids == order())
        return;
    m_settings->write(QVariant(compact(QJsonArray::fromStringList(ids))), SettingsKeys::todosOrder);
}

QList<Trashed> TodoKeeping::trash() const
{
    if (!m_settings)
        return m_trash;
    QList<Trashed> trash;
    for (const auto& value : storedArray(*m_settings, SettingsKeys::todosTrash))
        if (auto trashed = Trashed::fromJson(value.toObject()))
            trash.append(*trashed);
    return trash;
}

void TodoKeeping::setTrash(const QList<Trashed>& trash)
{
    if (!m_settings) {
        m_trash = trash;
        return;
    }
    QJsonArray array;
    for (const Trashed& trashed : trash)
        array.append(trashed.toJson());
    m_settings->write(QVariant(compact(array)), SettingsKeys::todosTrash);
}

} // namespace norva
