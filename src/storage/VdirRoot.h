#pragma once

#include "storage/VdirCollection.h"

#include <QList>
#include <QString>

#include <optional>

namespace norva {

// The root folder of the person's calendars in the vdir layout that todoman, khal and vdirsyncer
// share: one subfolder per collection (a list of to-dos, a calendar). Norva keeps no copy of
// what is in it; the meetings and the reminders both read it through here.
class VdirRoot {
public:
    // Where the calendars are when nothing is set: where vdirsyncer's examples and todoman's
    // default configuration put them.
    static QString defaultPath();
    // The root that todoman's configuration ("path" in ~/.config/todoman/config.py) or khal's
    // (the first "path" in ~/.config/khal/config) points at, or empty when neither names one.
    // A glob or a single collection's folder stands for the folder that holds the collections.
    static QString configuredPath();
    // The root in use: the setting when the person chose one, else the tools', else the default.
    static QString locate(const QString& setting);

    explicit VdirRoot(QString path) : m_path(std::move(path)) {}

    const QString& path() const { return m_path; }
    // A root that is not there or cannot be read stands for "no access" to calendars.
    bool isReadable() const;
    // The collections, sorted by display name; hidden folders are left out.
    QList<VdirCollection> collections() const;

    // Makes a collection for the name (the root too when missing); returns it, or why not.
    std::optional<VdirCollection> createCollection(const QString& displayName, const QString& color,
                                                   QString* why) const;
    // Deletes a collection's items and metadata and then its folder. Files Norva does not know
    // keep the folder in place, and the answer says so.
    std::optional<QString> removeCollection(const VdirCollection& collection) const;

private:
    QString m_path;
};

} // namespace norva
