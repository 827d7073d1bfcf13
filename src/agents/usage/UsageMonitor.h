#pragma once

#include "agents/usage/UsageBridge.h"
#include "app/Clock.h"
#include "app/QmlInstances.h"
#include "app/RowsModel.h"

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration/qqmlintegration.h>

namespace norva {

class ApprovalsFolderWatch;

// Reads "rate-limits.json" as the usage bridge rewrites it and publishes Claude Code's two usage
// windows (5 hours and 7 days) for the sessions page. When there is nothing to show it hides the
// windows and logs why, once per reason.
class UsageMonitor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(norva::RowsModel* windows READ windows CONSTANT)
    Q_PROPERTY(bool available READ available NOTIFY windowsChanged)

public:
    static UsageMonitor* create(QQmlEngine*, QJSEngine*) { return QmlInstances::of<UsageMonitor>(); }
    UsageMonitor(Clock& clock, QString approvalsFolder, QObject* parent = nullptr);
    ~UsageMonitor() override;

    void start();
    void stop();
    // Reads the file again now; the folder watch and a slow timer call this.
    void refresh();

    UsageBridge::Limits limits() const { return m_limits; }
    bool available() const { return m_limits.fiveHour || m_limits.sevenDay; }
    RowsModel* windows() { return &m_windows; }
    // "resets in 2 h 5 min": the time left until `at`, in the notch's short words.
    static QString resetText(const QDateTime& at, const QDateTime& now);

signals:
    void windowsChanged();

private:
    void hide(const QString& line);
    // Lays the windows of the latest reading over the shown ones, then says they changed.
    void publish();
    QVariantList windowRows() const;

    Clock& m_clock;
    QString m_folder;
    ApprovalsFolderWatch* m_watch = nullptr;
    ScheduledWork m_tick;
    UsageBridge::Limits m_limits;
    QString m_lastReason;
    RowsModel m_windows;
};

} // namespace norva
