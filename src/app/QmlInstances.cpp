#include "app/QmlInstances.h"

#include "app/Log.h"

#include <QJSEngine>
#include <QList>
#include <QPointer>

// Written by the QML type registration of norva_core (the Norva.Core module). A static library's
// registration is dropped by the linker unless something calls it, so it is called by name.
void qml_register_types_Norva_Core();

namespace norva {
namespace {

QList<QPointer<QObject>>& offered()
{
    static QList<QPointer<QObject>> objects;
    return objects;
}

} // namespace

void QmlInstances::offer(QObject* object)
{
    offered().removeAll(nullptr);
    offered().removeAll(object);
    offered().append(object);
}

QObject* QmlInstances::find(const QMetaObject& type)
{
    const QList<QPointer<QObject>>& objects = offered();
    for (auto each = objects.crbegin(); each != objects.crend(); ++each) {
        QObject* object = each->data();
        if (object && object->metaObject()->inherits(&type)) {
            QJSEngine::setObjectOwnership(object, QJSEngine::CppOwnership);
            return object;
        }
    }
    logLine(QStringLiteral("Norva: QML asked for ") + QString::fromLatin1(type.className()) +
            QStringLiteral(", which nothing made (its page stays empty)"));
    return nullptr;
}

void QmlInstances::registerTypes()
{
    static const bool registered = [] {
        qml_register_types_Norva_Core();
        return true;
    }();
    Q_UNUSED(registered);
}

} // namespace norva
