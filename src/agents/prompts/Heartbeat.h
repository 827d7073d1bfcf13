#pragma once

#include "agents/ApprovalsFolder.h"
#include "app/Clock.h"

#include <QObject>
#include <QThread>

#include <atomic>

namespace norva {

// Norva's proof of life for the hooks: the modification time of "heartbeat" in the approvals folder,
// set to now at once and then every 10 s. It beats on a thread of its own ("norva.agents.heartbeat"),
// so a busy main thread never makes waiting hooks hand their prompts back to the terminal.
class Heartbeat {
public:
    Heartbeat(ApprovalsFolder folder, Clock& clock);
    ~Heartbeat();
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    void start();
    // Stops beating; the file keeps its last time, so hooks hand back within 30 s.
    void stop();
    bool isBeating() const { return m_thread.isRunning(); }

    // One beat: sets the file's time to the clock's now, writing the file when it is missing.
    // Logs once when beating fails, and again only after it has worked in between.
    void beat();

private:
    ApprovalsFolder m_folder;
    Clock& m_clock;
    QThread m_thread;
    QObject* m_worker = nullptr; // lives on m_thread
    ScheduledWork m_work;        // armed and cancelled on m_thread
    std::atomic_bool m_failing = false;
};

} // namespace norva
