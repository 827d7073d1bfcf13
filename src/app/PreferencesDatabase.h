#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <optional>

namespace norva {

// The per-user key-value preferences that SettingsStore stands in front of. Values are plain
// property-list values: bool, qint64, double or QString, each keeping its type.
// On Linux this is a typed file under the XDG config folder; on macOS it is UserDefaults.
class PreferencesDatabase : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual std::optional<QVariant> value(const QString& key) const = 0;
    // Stores the value, or removes the key when given none. Emits changed() before returning.
    virtual void setValue(const QString& key, const std::optional<QVariant>& value) = 0;

signals:
    // Something in the database changed: synchronously for this process's own writes (on the
    // writing thread), on the main thread for changes made by another process or by hand.
    void changed();
};

} // namespace norva
