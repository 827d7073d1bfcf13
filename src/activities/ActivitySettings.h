#pragma once

#include "activities/LiveActivity.h"

#include <QObject>
#include <QStringList>

namespace norva {

class SettingsStore;

// The live activities' switches in Settings > Live activities: one per switch word of the kinds'
// table ("downloads", "timers"...), stored under "activities." + word + ".v1" and on when absent.
// Read and written through the settings store by key; tells when any of them changed.
class ActivitySettings : public QObject {
    Q_OBJECT
public:
    explicit ActivitySettings(SettingsStore& store, QObject* parent = nullptr);

    static QString keyFor(const QString& switchWord);
    // Every switch's word, once each, in the order of the kinds' table.
    Q_INVOKABLE static QStringList switchWords();

    // Whether a kind may show on the notch: kinds without a switch always may.
    bool allows(ActivityContent::Kind kind) const;
    Q_INVOKABLE bool isOn(const QString& switchWord) const;
    Q_INVOKABLE void setOn(const QString& switchWord, bool on);

signals:
    void switchesChanged();

private:
    SettingsStore& m_store;
};

} // namespace norva
