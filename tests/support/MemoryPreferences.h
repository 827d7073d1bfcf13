#pragma once

#include "app/PreferencesDatabase.h"

#include <QHash>
#include <QStringList>
#include <QVariantMap>

namespace norva::test {

// Preferences held in memory, for tests of the parts that only read and write them. outsideChange()
// stands for another process writing the same preferences.
class MemoryPreferences final : public PreferencesDatabase {
    Q_OBJECT
public:
    std::optional<QVariant> value(const QString& key) const override
    {
        const auto it = m_values.constFind(key);
        return it == m_values.cend() ? std::nullopt : std::optional<QVariant>(*it);
    }
    void setValue(const QString& key, const std::optional<QVariant>& value) override
    {
        if (value)
            m_values.insert(key, *value);
        else
            m_values.remove(key);
        emit changed();
    }
    QStringList keys() const
    {
        QStringList list = m_values.keys();
        list.sort();
        return list;
    }
    void outsideChange(const QString& key, const std::optional<QVariant>& value) { setValue(key, value); }
    // One save by another process that changes several keys; an invalid value removes its key.
    void outsideChanges(const QVariantMap& values)
    {
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            if (it->isValid())
                m_values.insert(it.key(), *it);
            else
                m_values.remove(it.key());
        }
        emit changed();
    }

private:
    QHash<QString, QVariant> m_values;
};

} // namespace norva::test
