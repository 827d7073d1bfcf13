#pragma once

#include "shell/FeaturePage.h"

#include <QList>
#include <QObject>

namespace norva {

// A feature folder's one front to the shell. The constructor makes the folder's managers and
// publishers (the settings store and the activity coordinator already exist then); start() sets
// them going as their switches say, or, in the demo, shows the folder's own samples and reads
// nothing of the person's; stop() ends the work that must not outlive a quit.
class FeatureModule : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void start() = 0;
    virtual void stop() {}
    // The pages this feature adds to the open panel.
    virtual QList<FeaturePage> pages() const { return {}; }
    // The objects this feature's QML binds to, each a singleton of its own type there (QML_ELEMENT,
    // QML_SINGLETON and a create() that asks QmlInstances for it).
    virtual QList<QObject*> qmlObjects() const { return {}; }
};

} // namespace norva
