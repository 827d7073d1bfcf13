#pragma once

#include "app/QmlInstances.h"
#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class SettingsStore;

// The clipboard's own preferences, read and written through the settings store: whether copies
// are kept, and how many. Tells its own changes, so a change elsewhere in the preferences wakes
// nobody here.
class ClipboardSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool history READ history WRITE setHistory NOTIFY historyChanged)
    Q_PROPERTY(int limit READ limit WRITE setLimit NOTIFY limitChanged)

public:
    static ClipboardSettings* create(QQmlEngine*, QJSEngine*)
    {
        return QmlInstances::of<ClipboardSettings>();
    }
    static const QString kHistoryKey; // "clipboard.history.v1", on when absent
    static const QString kLimitKey;   // "clipboardLimit": how many copies are kept, 50 when absent
    static constexpr int kDefaultLimit = 50;
    // -1 keeps every copy; a larger number than this is read as this.
    static constexpr int kMostLimit = 1000000;

    explicit ClipboardSettings(SettingsStore& store, QObject* parent = nullptr);

    bool history() const;
    void setHistory(bool on);
    int limit() const;
    void setLimit(int limit);

signals:
    void historyChanged();
    void limitChanged();

private:
    SettingsStore& m_store;
};

} // namespace norva
