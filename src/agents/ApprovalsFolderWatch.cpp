#include "agents/ApprovalsFolderWatch.h"

namespace norva {

ApprovalsFolderWatch::ApprovalsFolderWatch(QString folder, QObject* parent)
    : QObject(parent), m_folder(std::move(folder))
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] { emit changed(); });
}

bool ApprovalsFolderWatch::start()
{
    if (isWatching())
        return true;
    return m_watcher.addPath(m_folder);
}

void ApprovalsFolderWatch::stop()
{
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
}

bool ApprovalsFolderWatch::isWatching() const
{
    return m_watcher.directories().contains(m_folder);
}

} // namespace norva
