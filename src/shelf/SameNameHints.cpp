#include "shelf/SameNameHints.h"

#include <QFileInfo>
#include <QHash>

namespace norva {
namespace {

// The last `depth` parts of a folder's path, or the whole path when it has no more.
QString folderEnd(const QStringList& parts, qsizetype depth, const QString& folder)
{
    if (depth >= parts.size())
        return folder;
    return parts.mid(parts.size() - depth).join(QLatin1Char('/'));
}

} // namespace

QStringList SameNameHints::of(const QStringList& paths)
{
    QHash<QString, QList<qsizetype>> byName;
    for (qsizetype i = 0; i < paths.size(); ++i)
        byName[QFileInfo(paths.at(i)).fileName()].append(i);

    QStringList hints(paths.size());
    for (const QList<qsizetype>& group : std::as_const(byName)) {
        if (group.size() < 2)
            continue;
        QStringList folders;
        QList<QStringList> parts;
        for (const qsizetype i : group) {
            folders << QFileInfo(paths.at(i)).absolutePath();
            parts << folders.last().split(QLatin1Char('/'), Qt::SkipEmptyParts);
        }
        for (qsizetype member = 0; member < group.size(); ++member) {
            const QStringList& own = parts.at(member);
            qsizetype depth = 1;
            for (; depth < own.size(); ++depth) {
                bool shared = false;
                for (qsizetype other = 0; other < group.size() && !shared; ++other)
                    shared = other != member && folderEnd(parts.at(other), depth, folders.at(other)) ==
                                                    folderEnd(own, depth, folders.at(member));
                if (!shared)
                    break;
            }
            hints[group.at(member)] = folderEnd(own, depth, folders.at(member));
        }
    }
    return hints;
}

} // namespace norva
