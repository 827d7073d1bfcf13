#pragma once

#include "reminders/Trashed.h"

#include <QList>
#include <QStringList>

namespace norva {

class SettingsStore;

// What Norva keeps of its own about the to-dos, in the preferences: the manual order (ids) and
// the trash. A store over stated to-dos (the demo) keeps them in memory only.
class TodoKeeping {
public:
    explicit TodoKeeping(SettingsStore* settings) : m_settings(settings) {}

    QStringList order() const;
    void setOrder(const QStringList& ids);
    QList<Trashed> trash() const;
    void setTrash(const QList<Trashed>& trash);

private:
    SettingsStore* m_settings; // null: memory only
    QStringList m_order;
    QList<Trashed> m_trash;
};

} // namespace norva
