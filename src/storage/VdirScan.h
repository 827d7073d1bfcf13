#pragma once

#include "storage/ICalendarFile.h"
#include "storage/VdirCollection.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <any>
#include <functional>
#include <optional>

namespace norva {

// What a consumer keeps of one item file, made off the main thread from the parsed file (the
// reminders keep their to-do records, the meetings their events). The parsed file itself is not
// kept: 5,000 libical trees would cost far more memory than the records made of them.
using VdirDigest = std::function<std::any(const ICalendarFile&)>;

struct VdirItem {
    QString collectionId;
    FileStamp stamp;
    bool readable = false;
    std::any digest; // what the digest made of it; empty when unreadable
};

// Everything read from a root at one moment.
struct VdirState {
    QString root;
    bool rootReadable = false;
    QList<VdirCollection> collections;
    QHash<QString, VdirItem> items; // by absolute path
};

// Reads a root again, reusing the previous state: only item files whose stamp changed are read
// and parsed, and only in the collections named dirty (every one when `dirty` is absent; a new
// collection is always read whole). A file that cannot be read is logged once per version of it, as
// "<area>: did not read <collection>/<file> (<reason>)", and never touched.
class VdirScan {
public:
    VdirScan(QString area, VdirDigest digest);

    VdirState scan(const QString& root, const VdirState& previous, const std::optional<QSet<QString>>& dirty,
                   QStringList* changedPaths = nullptr) const;

private:
    QString m_area;
    VdirDigest m_digest;
};

} // namespace norva
