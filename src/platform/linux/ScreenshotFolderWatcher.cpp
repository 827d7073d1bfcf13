#include "platform/linux/ScreenshotFolderWatcher.h"

#include "app/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace norva {
namespace {

const QStringList kPictureNames{QStringLiteral("*.png"), QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"),
                                QStringLiteral("*.webp")};

// XDG_PICTURES_DIR from user-dirs.dirs ("$HOME/Pictures" style), as xdg-user-dir PICTURES answers.
QString picturesFolder()
{
    const QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
    const QString config = (!configHome.isEmpty() && QDir::isAbsolutePath(configHome))
                               ? configHome
                               : Paths::home() + QStringLiteral("/.config");
    QFile dirs(config + QStringLiteral("/user-dirs.dirs"));
    if (dirs.open(QIODevice::ReadOnly)) {
        static const QRegularExpression line(QStringLiteral("^\\s*XDG_PICTURES_DIR\\s*=\\s*\"([^\"]*)\""));
        for (const QByteArray& raw : dirs.readAll().split('\n')) {
            const auto match = line.match(QString::fromUtf8(raw));
            if (!match.hasMatch())
                continue;
            QString value = match.captured(1);
            value.replace(QStringLiteral("$HOME"), Paths::home());
            if (QDir::isAbsolutePath(value) && QDir::cleanPath(value) != Paths::home())
                return QDir::cleanPath(value);
        }
    }
    return Paths::home() + QStringLiteral("/Pictures");
}

} // namespace

ScreenshotFolderWatcher::ScreenshotFolderWatcher(Clock& clock, QString folder, QObject* parent)
    : ScreenshotSource(parent), m_clock(clock), m_folder(std::move(folder))
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_settle.isArmed())
            m_settle = m_clock.after(kSettle, [this] { scan(true); });
    });
}

QString ScreenshotFolderWatcher::defaultFolder()
{
    return picturesFolder() + QStringLiteral("/Screenshots");
}

void ScreenshotFolderWatcher::start()
{
    m_running = true;
    scan(false); // what is there already is not new
    watch();
}

void ScreenshotFolderWatcher::stop()
{
    m_running = false;
    m_settle.cancel();
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
}

// The screenshots folder may not exist yet: its parent is watched until a first screenshot makes it.
void ScreenshotFolderWatcher::watch()
{
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    if (QFileInfo(m_folder).isDir())
        m_watcher.addPath(m_folder);
    else if (QFileInfo(QFileInfo(m_folder).absolutePath()).isDir())
        m_watcher.addPath(QFileInfo(m_folder).absolutePath());
}

void ScreenshotFolderWatcher::scan(bool announce)
{
    if (!m_running)
        return;
    const QDir folder(m_folder);
    const auto entries = folder.entryInfoList(kPictureNames, QDir::Files, QDir::Time | QDir::Reversed);
    for (const QFileInfo& entry : entries) {
        const QString path = entry.absoluteFilePath();
        // An empty file is still being written: it is looked at again at the next change.
        if (m_known.contains(path) || entry.size() == 0)
            continue;
        m_known.insert(path);
        if (announce)
            emit screenshotSaved(path);
    }
    if (!m_watcher.directories().contains(m_folder))
        watch();
}

} // namespace norva
