#include "storage/VdirWatch.h"

#include "app/Background.h"

#include <QFileInfo>

namespace norva {

namespace {

struct ScanResult {
    VdirState state;
    QStringList changedPaths;
};

} // namespace

VdirWatch::VdirWatch(QString root, QString area, VdirDigest digest, Clock& clock, QObject* parent)
    : QObject(parent), m_root(std::move(root)), m_scan(std::move(area), std::move(digest)), m_clock(clock)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &VdirWatch::folderChanged);
}

void VdirWatch::start()
{
    if (m_started)
        return;
    m_started = true;
    runScan();
}

void VdirWatch::setRoot(const QString& root)
{
    if (root == m_root)
        return;
    m_root = root;
    m_everything = true;
    if (m_started)
        rescan();
}

void VdirWatch::rescan(const QString& folder)
{
    if (folder.isEmpty())
        m_everything = true;
    else
        m_dirty.insert(QFileInfo(folder).absoluteFilePath());
    if (!m_started)
        return;
    if (!m_settle.isArmed())
        m_settle = m_clock.after(kSettle, [this] { runScan(); });
}

void VdirWatch::folderChanged(const QString& folder)
{
    // A collection's folder names itself; the root (or the folder above a missing root) changing
    // means a collection came or went, and every scan lists the collections again anyway.
    rescan(QFileInfo(folder).absoluteFilePath());
}

void VdirWatch::runScan()
{
    m_settle.cancel();
    if (m_scanning) {
        m_again = true;
        return;
    }
    m_scanning = true;
    // A changed root alone reads the list of collections again (and any new one whole).
    const std::optional<QSet<QString>> dirty = m_everything ? std::nullopt : std::optional(m_dirty);
    m_dirty.clear();
    m_everything = false;
    const VdirState previous = m_state;
    const QString root = m_root;
    const VdirScan scan = m_scan;
    runOffMain<ScanResult>(
        this,
        [scan, root, previous, dirty] {
            ScanResult result;
            result.state = scan.scan(root, previous, dirty, &result.changedPaths);
            return result;
        },
        [this](ScanResult result) { scanned(std::move(result.state), std::move(result.changedPaths)); });
}

void VdirWatch::scanned(VdirState state, QStringList changedPaths)
{
    m_scanning = false;
    const bool collectionsMoved =
        state.collections != m_state.collections || state.rootReadable != m_state.rootReadable;
    m_state = std::move(state);
    const bool first = !m_loaded;
    m_loaded = true;
    rewatch();
    if (first || collectionsMoved || !changedPaths.isEmpty())
        emit changed(changedPaths);
    if (m_again) {
        m_again = false;
        runScan();
    }
}

void VdirWatch::rewatch()
{
    QStringList wanted;
    if (m_state.rootReadable) {
        wanted.append(QFileInfo(m_root).absoluteFilePath());
        for (const VdirCollection& collection : std::as_const(m_state.collections))
            wanted.append(collection.path);
    } else {
        // No root yet: watch the nearest folder above it, so its creation is seen.
        QFileInfo above(m_root);
        while (!above.isDir() && above.absolutePath() != above.absoluteFilePath())
            above = QFileInfo(above.absolutePath());
        wanted.append(above.absoluteFilePath());
    }
    const QStringList watched = m_watcher.directories();
    QStringList stale;
    for (const QString& path : watched)
        if (!wanted.contains(path))
            stale.append(path);
    if (!stale.isEmpty())
        m_watcher.removePaths(stale);
    QStringList fresh;
    for (const QString& path : std::as_const(wanted))
        if (!watched.contains(path))
            fresh.append(path);
    if (!fresh.isEmpty())
        m_watcher.addPaths(fresh);
}

} // namespace norva
