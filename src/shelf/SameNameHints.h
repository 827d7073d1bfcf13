#pragma once

#include <QString>
#include <QStringList>

namespace norva {

// Tells apart files of the same name on the shelf: two "report.pdf" tiles say which folder each
// came from. Only as much of the folder is given as it takes to differ from the others.
class SameNameHints {
public:
    // For each path, in order: "" when no other path has its file name; otherwise the shortest end
    // of its folder that no other path of that name shares ("Downloads", "work/Downloads"), or the
    // whole folder when one folder's path is the end of the other's.
    static QStringList of(const QStringList& paths);
};

} // namespace norva
