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

// The screenshots folder may not exist yet, nor even the Pictures folder on a fresh account: the
// nearest folder above it that exists is watched until the first screenshot makes it, and the
// watch moves down as each folder appears.
void ScreenshotFolderWatcher::watch()
{
    QString nearest = m_folder;
    while (!QFileInfo(nearest).isDir()) {
        const QString above = QFileInfo(nearest).absolutePath();
        if (above == nearest)
            return;
        nearest = above;
    }
    if (m_watcher.directories() == QStringList{nearest})
        return;
    if (!m_watcher.directories().isEmpty())
        m_watcher.removePaths(m_watcher.directories());
    m_watcher.addPath(nearest);
}

void ScreenshotFolderWatcher::scan(bool announce)
{
    if (!m_running)
        return;
    const QDir folder(m_folder);
    const auto entries = folder.entryInfoList(kPictureNames, QDir::Files, QDir::Time | QDir::Reversed);
    bool stillEmpty = false;
    for (const QFileInfo& entry : entries) {
        const QString path = entry.absoluteFilePath();
        if (m_known.contains(path))
            continue;
        // An empty picture is still being written (writing into a file does not change the folder):
        // it is looked at again shortly.
        if (entry.size() == 0) {
            stillEmpty = announce;
            continue;
        }
        m_known.insert(path);
        if (announce)
            emit screenshotSaved(path);
    }
    if (!m_watcher.directories().contains(m_folder))
        watch();
    m_emptyRetries = stillEmpty ? m_emptyRetries + 1 : 0;
    if (stillEmpty && m_emptyRetries <= kEmptyRetries)
        m_settle = m_clock.after(kSettle, [this] { scan(true); });
}

} // namespace norva
