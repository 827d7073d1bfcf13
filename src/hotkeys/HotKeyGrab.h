#pragma once

#include <QKeyCombination>
#include <QObject>
#include <QString>

namespace norva {

// Takes a key combination for the whole desktop, so it reaches Norva whichever program is in
// front. Each grab has a name of Norva's own ("jot", "open") that comes back when the key is pressed.
class HotKeyGrab : public QObject {
    Q_OBJECT
public:
    enum class Result {
        grabbed,
        taken,      // another program holds the same combination
        notOffered, // this desktop lets no program take keys (Wayland, no display)
        notAKey,    // the combination has no key on this keyboard
    };

    using QObject::QObject;

    // Replaces an earlier grab of the same name.
    virtual Result grab(const QString& name, QKeyCombination key) = 0;
    virtual void release(const QString& name) = 0;

signals:
    void pressed(const QString& name);
};

} // namespace norva
