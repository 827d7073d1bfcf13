#include "QmlViews.h"

#include "MemoryPreferences.h"

#include "app/QmlInstances.h"
#include "shell/Features.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQmlComponent>
#include <QUrl>

#include <functional>

namespace norva::test {
namespace {

void collect(QQuickItem* item, const std::function<bool(QQuickItem*)>& wanted, QList<QQuickItem*>& found)
{
    if (wanted(item))
        found << item;
    for (QQuickItem* child : item->childItems())
        collect(child, wanted, found);
}

} // namespace

QmlViews::QmlViews()
{
    QmlInstances::registerTypes();
    m_shell = std::make_unique<Shell>(std::make_unique<MemoryPreferences>(), m_clock, Shell::Demo{true, {}});
    addFeatures(*m_shell);
    m_front = std::make_unique<AppFront>(m_shell->pages(), true, QString());
    QmlInstances::offer(m_front.get());
    for (QObject* object : m_shell->qmlObjects())
        QmlInstances::offer(object);
    for (const QString& path : sourceFiles())
        QFile::copy(path, m_folder.filePath(QFileInfo(path).fileName()));
    QFile qmldir(m_folder.filePath(QStringLiteral("qmldir")));
    if (qmldir.open(QIODevice::WriteOnly))
        qmldir.write("singleton Theme 1.0 Theme.qml\n");
}

QStringList QmlViews::sourceFiles()
{
    QStringList files;
    const QDir sources(QStringLiteral(NORVA_SOURCE_DIR "/src"));
    for (const QString& folder : sources.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QDir qml(sources.filePath(folder + QStringLiteral("/qml")));
        for (const QString& name : qml.entryList({QStringLiteral("*.qml")}, QDir::Files))
            files << qml.filePath(name);
    }
    return files;
}

std::unique_ptr<QQuickItem> QmlViews::create(const QString& file, const QVariantMap& properties)
{
    QQmlComponent component(&m_engine, QUrl::fromLocalFile(m_folder.filePath(file)));
    // Qt 6.4 crashes creating a component that did not compile, rather than saying why.
    if (component.isError()) {
        qWarning("%s", qPrintable(component.errorString()));
        return nullptr;
    }
    QObject* made = component.createWithInitialProperties(properties);
    if (!made)
        qWarning("%s", qPrintable(component.errorString()));
    return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem*>(made));
}

std::unique_ptr<QQuickItem> QmlViews::showIn(QQuickWindow& window, const QString& file, QSizeF size,
                                             const QVariantMap& properties)
{
    auto item = create(file, properties);
    if (!item)
        return item;
    item->setParentItem(window.contentItem());
    item->setSize(size);
    window.show();
    return item;
}

QList<QQuickItem*> QmlViews::texts(QQuickItem* root)
{
    QList<QQuickItem*> found;
    collect(
        root, [](QQuickItem* item) { return item->inherits("QQuickText"); }, found);
    return found;
}

QList<QQuickItem*> QmlViews::made(QQuickItem* root, const QString& typeName)
{
    QList<QQuickItem*> found;
    collect(
        root,
        [&typeName](QQuickItem* item) {
            return QString::fromLatin1(item->metaObject()->className())
                .startsWith(typeName + QLatin1Char('_'));
        },
        found);
    return found;
}

} // namespace norva::test
