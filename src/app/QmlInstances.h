#pragma once

#include <QObject>

class QJSEngine;
class QQmlEngine;

namespace norva {

// The objects Norva made that QML reaches as singletons of their own type. The shell offers every
// feature's objects here in one loop; a type's singleton takes its object back when QML first uses
// it (`static T* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<T>(); }`), so no list of
// feature types is kept anywhere. The objects stay C++'s: no engine ever deletes them.
class QmlInstances {
public:
    // Offers an object for its type (and the types it derives from); a later offer of the same type
    // wins, and a destroyed object is forgotten.
    static void offer(QObject* object);
    template <typename Type> static Type* of() { return static_cast<Type*>(find(Type::staticMetaObject)); }
    // Registers Norva's C++ types with QML (the Norva.Core module); once, before any engine loads QML.
    static void registerTypes();

private:
    static QObject* find(const QMetaObject& type);
};

} // namespace norva
