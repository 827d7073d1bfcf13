#include "ui/SingleInstance.h"

#include <QDir>
#include <QFileInfo>

namespace norva {

SingleInstance::SingleInstance(const QString& lockPath) : m_path(lockPath)
{
    QDir().mkpath(QFileInfo(lockPath).absolutePath());
    m_lock = std::make_unique<QLockFile>(lockPath);
    m_lock->setStaleLockTime(0); // a lock left by a crashed Norva is taken over (its process is gone)
    m_first = m_lock->tryLock(0);
}

} // namespace norva
