#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace norva {

// Tells when anything in the approvals folder changed (a hook wrote a pending or deny-check file,
// removed one, touched its alive file), so that readers scan at once instead of waiting for a timer.
// Shared by the prompt exchange and the team's never-allow responder.
class ApprovalsFolderWatch : public QObject {
    Q_OBJECT
public:
    explicit ApprovalsFolderWatch(QString folder, QObject* parent = nullptr);

    // Starts watching; the folder must exist. Calling it again re-arms a watch lost when the folder
    // was removed and made anew. False when the folder cannot be watched.
    bool start();
    void stop();
    bool isWatching() const;
    QString folder() const { return m_folder; }

signals:
    // The folder's content changed. Bursts come as several signals; readers coalesce them.
    void changed();

private:
    QString m_folder;
    QFileSystemWatcher m_watcher;
};

} // namespace norva
