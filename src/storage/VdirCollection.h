#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace norva {

// One collection of a vdir: a folder holding one iCalendar file per item, with the optional
// "displayname" and "color" files that vdirsyncer copies from the server and todoman and khal show.
struct VdirCollection {
    QString id;          // the folder's name, stable while the folder lives
    QString path;        // absolute
    QString displayName; // the "displayname" file, else the folder's name
    QString color;       // "#rrggbb" from the "color" file, else empty

    friend bool operator==(const VdirCollection&, const VdirCollection&) = default;

    // Reads a collection folder's metadata; absent when it is not a folder.
    static std::optional<VdirCollection> at(const QString& path);

    // The item files in the folder ("*.ics", never hidden ones such as a write in progress).
    QStringList itemFiles() const;
    // A new item's path: a fresh name for the item's UID, as todoman names its files.
    QString itemPathFor(const QString& uid) const;

    // Writes the metadata files atomically; returns why not, or nothing.
    std::optional<QString> setDisplayName(const QString& name) const;
    std::optional<QString> setColor(const QString& color) const;
};

} // namespace norva
