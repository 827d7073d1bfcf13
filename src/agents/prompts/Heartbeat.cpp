#include "agents/prompts/Heartbeat.h"

#include "agents/AgentConstants.h"
#include "app/Log.h"

namespace norva {

Heartbeat::Heartbeat(ApprovalsFolder folder, Clock& clock) : m_folder(std::move(folder)), m_clock(clock)
{
    m_thread.setObjectName(QStringLiteral("norva.agents.heartbeat"));
}

Heartbeat::~Heartbeat()
{
    stop();
}

void Heartbeat::start()
{
    if (m_thread.isRunning())
        return;
    m_thread.start();
    m_worker = new QObject;
    m_worker->moveToThread(&m_thread);
    // The repeating work is armed on the heartbeat's own thread, so its timer fires there.
    QMetaObject::invokeMethod(
        m_worker,
        [this] {
            beat();
            m_work = m_clock.every(agents::heartbeatInterval, [this] { beat(); });
        },
        Qt::BlockingQueuedConnection);
}

void Heartbeat::stop()
{
    if (!m_thread.isRunning())
        return;
    QMetaObject::invokeMethod(
        m_worker, [this] { m_work.cancel(); }, Qt::BlockingQueuedConnection);
    QObject* worker = m_worker;
    m_worker = nullptr;
    QMetaObject::invokeMethod(
        worker, [worker] { delete worker; }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

void Heartbeat::beat()
{
    const FileResult touched = m_folder.touch(agents::heartbeatFile, m_clock.now());
    if (touched) {
        m_failing = false;
        return;
    }
    if (!m_failing.exchange(true)) {
        logLine(QStringLiteral("Norva agents: the heartbeat at ") + m_folder.filePath(agents::heartbeatFile) +
                QStringLiteral(" could not be written (") + touched.error +
                QStringLiteral("); hooks will ask in the terminal"));
    }
}

} // namespace norva
