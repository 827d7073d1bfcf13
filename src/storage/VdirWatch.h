#pragma once

#include "app/Clock.h"
#include "storage/VdirScan.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QSet>

namespace norva {

// Follows a vdir root for one consumer: the first read and every later one run off the main
// thread, and `changed` tells the main thread once the new state is in place. Folder watches
// (inotify) wake it, so nothing runs while nothing changes; a burst of writes (vdirsyncer
// fetching a hundred items) is read in one pass after kSettle.
class VdirWatch : public QObject {
    Q_OBJECT

public:
    // How long a burst of file events is gathered before the folders are read again.
    static constexpr Seconds kSettle{0.03};

    VdirWatch(QString root, QString area, VdirDigest digest, Clock& clock, QObject* parent = nullptr);

    // Starts the first read (off the main thread) and the folder watches.
    void start();
    // Reads again soon, as after a write of Norva's own; `folder` limits it to one collection.
    void rescan(const QString& folder = {});
    // Follows another root from now on (the setting changed).
    void setRoot(const QString& root);

    const VdirState& state() const { return m_state; }
    bool hasLoaded() const { return m_loaded; }
    const QString& root() const { return m_root; }

signals:
    // The state changed; the paths are the item files read again, added or gone.
    void changed(const QStringList& changedPaths);

private:
    void folderChanged(const QString& folder);
    void runScan();
    void scanned(VdirState state, QStringList changedPaths);
    void rewatch();

    QString m_root;
    VdirScan m_scan;
    Clock& m_clock;
    QFileSystemWatcher m_watcher;
    VdirState m_state;
    QSet<QString> m_dirty;
    bool m_everything = true; // the next scan reads every collection
    bool m_scanning = false;
    bool m_again = false;
    bool m_loaded = false;
    bool m_started = false;
    ScheduledWork m_settle;
};

} // namespace norva
