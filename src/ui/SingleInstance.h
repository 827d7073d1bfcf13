#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace norva {

// Keeps Norva to one instance per user: the first start holds a lock file in the state folder,
// a second start finds it held and steps aside.
class SingleInstance {
public:
    explicit SingleInstance(const QString& lockPath);
    bool isFirst() const { return m_first; }
    QString lockPath() const { return m_path; }

private:
    QString m_path;
    std::unique_ptr<QLockFile> m_lock;
    bool m_first = false;
};

} // namespace norva
