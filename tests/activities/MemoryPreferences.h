#pragma once

#include "app/PreferencesDatabase.h"

#include <QHash>

namespace norva::test {

// Preferences kept in memory, for tests that only need the settings store to answer switches.
class MemoryPreferences final : public PreferencesDatabase {
public:
    std::optional<QVariant> value(const QString& key) const override
    {
        const auto it = m_values.find(key);
        return it == m_values.end() ? std::nullopt : std::optional<QVariant>(*it);
    }
    void setValue(const QString& key, const std::optional<QVariant>& value) override
    {
        if (value)
            m_values.insert(key, *value);
        else
            m_values.remove(key);
        emit changed();
    }

private:
    QHash<QString, QVariant> m_values;
};

} // namespace norva::test
