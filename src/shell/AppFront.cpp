#include "shell/AppFront.h"

#include <QFile>

namespace norva {
namespace {

QVariantMap describe(const FeaturePage& page)
{
    return {{QStringLiteral("id"), page.id},
            {QStringLiteral("title"), page.title},
            {QStringLiteral("qml"), page.qml},
            {QStringLiteral("emptyText"), page.emptyText}};
}

} // namespace

AppFront::AppFront(QList<FeaturePage> pages, bool demo, QString desktopLimits, QObject* parent)
    : QObject(parent), m_pages(std::move(pages)), m_demo(demo), m_desktopLimits(std::move(desktopLimits))
{}

QVariantList AppFront::pages() const
{
    QVariantList list;
    for (const FeaturePage& page : m_pages)
        list.append(describe(page));
    return list;
}

QVariantMap AppFront::pageInfo(const QString& id) const
{
    for (const FeaturePage& page : m_pages) {
        if (page.id == id)
            return describe(page);
    }
    return m_pages.isEmpty() ? QVariantMap() : describe(m_pages.front());
}

bool AppFront::hasQml(const QString& fileName) const
{
    return QFile::exists(QStringLiteral(":/Norva/") + fileName);
}

} // namespace norva
