#pragma once

#include "app/Clock.h"
#include "shelf/ScreenshotSource.h"

#include <QFileSystemWatcher>
#include <QSet>

namespace norva {

// New screenshots on Linux: the desktop's screenshot tools (GNOME, Spectacle, Flameshot) save into
// the Pictures folder's "Screenshots"; a new picture there is a new screenshot. The folder is
// watched for changes, and looked at a moment later so that a file still being written is whole.
class ScreenshotFolderWatcher final : public ScreenshotSource {
    Q_OBJECT
public:
    // The wait after the folder changes before it is read, so a picture being saved is finished.
    static constexpr Seconds kSettle{0.4};

    ScreenshotFolderWatcher(Clock& clock, QString folder = defaultFolder(), QObject* parent = nullptr);

    void start() override;
    void stop() override;
    QString folder() const { return m_folder; }
    // The XDG Pictures folder (user-dirs.dirs, else ~/Pictures) with "Screenshots".
    static QString defaultFolder();

private:
    void scan(bool announce);
    void watch();

    Clock& m_clock;
    QString m_folder;
    QFileSystemWatcher m_watcher;
    QSet<QString> m_known;
    ScheduledWork m_settle;
    bool m_running = false;
};

} // namespace norva
