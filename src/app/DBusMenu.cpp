#include "app/DBusMenu.h"

namespace norva {
namespace {

// The menu's layout never changes while Norva runs, so it has one revision.
constexpr uint kRevision = 1;

} // namespace

DBusMenu::DBusMenu(QList<Entry> entries, QObject* parent) : QObject(parent), m_entries(std::move(entries))
{
    registerStatusNotifierTypes();
}

QVariantMap DBusMenu::propertiesOf(int id) const
{
    if (id == 0)
        return {{QStringLiteral("children-display"), QStringLiteral("submenu")}};
    if (id < 1 || id > m_entries.size())
        return {};
    const Entry& entry = m_entries.at(id - 1);
    if (entry.label.isEmpty())
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    return {{QStringLiteral("label"), entry.label},
            {QStringLiteral("enabled"), true},
            {QStringLiteral("visible"), true}};
}

DBusMenuLayout DBusMenu::layout() const
{
    DBusMenuLayout root{0, propertiesOf(0), {}};
    for (int id = 1; id <= m_entries.size(); ++id)
        root.children.append({id, propertiesOf(id), {}});
    return root;
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                         DBusMenuLayout& layout)
{
    Q_UNUSED(propertyNames); // every entry has only a handful: all are sent
    const DBusMenuLayout whole = this->layout();
    if (parentId == 0) {
        layout = whole;
        if (recursionDepth == 0)
            layout.children.clear();
    } else {
        layout = {parentId, propertiesOf(parentId), {}};
    }
    return kRevision;
}

DBusMenuItemPropertiesList DBusMenu::GetGroupProperties(const QList<int>& ids,
                                                        const QStringList& propertyNames)
{
    Q_UNUSED(propertyNames);
    DBusMenuItemPropertiesList items;
    for (const int id : ids)
        items.append({id, propertiesOf(id)});
    return items;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString& name)
{
    return QDBusVariant(propertiesOf(id).value(name));
}

void DBusMenu::Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp)
{
    Q_UNUSED(data);
    Q_UNUSED(timestamp);
    if (eventId == QLatin1String("clicked") && id >= 1 && id <= m_entries.size() &&
        !m_entries.at(id - 1).label.isEmpty())
        emit triggered(id);
}

bool DBusMenu::AboutToShow(int id)
{
    Q_UNUSED(id);
    return false; // nothing to update before showing
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors)
{
    Q_UNUSED(ids);
    idErrors.clear();
    return {};
}

} // namespace norva
