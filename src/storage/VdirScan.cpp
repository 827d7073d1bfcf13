#include "storage/VdirScan.h"

#include "app/Log.h"
#include "storage/VdirRoot.h"

#include <QFileInfo>

namespace norva {

VdirScan::VdirScan(QString area, VdirDigest digest) : m_area(std::move(area)), m_digest(std::move(digest))
{
    if (!m_digest)
        m_digest = [](const ICalendarFile& file) {
            return std::any(std::make_shared<const ICalendarFile>(file));
        };
}

VdirState VdirScan::scan(const QString& root, const VdirState& previous,
                         const std::optional<QSet<QString>>& dirty, QStringList* changedPaths) const
{
    VdirState next;
    next.root = root;
    const VdirRoot vdir(root);
    next.rootReadable = vdir.isReadable();
    if (!next.rootReadable) {
        if (changedPaths)
            *changedPaths = previous.items.keys();
        return next;
    }
    next.collections = vdir.collections();

    QSet<QString> known;
    for (const VdirCollection& collection : std::as_const(previous.collections))
        known.insert(collection.path);

    for (const VdirCollection& collection : std::as_const(next.collections)) {
        const bool rescan = !dirty || dirty->contains(collection.path) || !known.contains(collection.path) ||
                            previous.root != root;
        if (!rescan) {
            // Carry the collection's items over untouched.
            for (auto it = previous.items.cbegin(); it != previous.items.cend(); ++it)
                if (it->collectionId == collection.id)
                    next.items.insert(it.key(), it.value());
            continue;
        }
        const QStringList files = collection.itemFiles();
        for (const QString& path : files) {
            const auto old = previous.items.constFind(path);
            const auto stamp = ICalendarFile::stampOf(path);
            if (old != previous.items.cend() && stamp && *stamp == old->stamp) {
                next.items.insert(path, old.value());
                continue;
            }
            VdirItem item;
            item.collectionId = collection.id;
            const ICalendarFile::Read read = ICalendarFile::read(path);
            item.stamp = read.stamp;
            if (read.file) {
                item.readable = true;
                item.digest = m_digest(*read.file);
            } else if (old == previous.items.cend() || old->stamp != read.stamp || old->readable) {
                logLine(QStringLiteral("%1: did not read %2/%3 (%4)")
                            .arg(m_area, collection.id, QFileInfo(path).fileName(), read.reason));
            }
            next.items.insert(path, item);
            if (changedPaths)
                changedPaths->append(path);
        }
    }
    if (changedPaths) {
        for (auto it = previous.items.cbegin(); it != previous.items.cend(); ++it)
            if (!next.items.contains(it.key()))
                changedPaths->append(it.key());
    }
    return next;
}

} // namespace norva
