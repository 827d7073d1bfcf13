#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace norva::WhatsNew {

// What one version brought, in a few short lines for the "What's new" card.
struct Release {
    QString version;
    QStringList lines;
};

// Every release that has something to tell, newest first. Add a release here with the version.
const QList<Release>& releases();

// The lines of the releases after `lastSeen` up to and including `current`, newest first. With
// nothing seen before (a Norva from before the card), only the current release's lines.
QStringList linesSince(const QString& lastSeen, const QString& current,
                       const QList<Release>& list = releases());

} // namespace norva::WhatsNew
