#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace norva {

// Finds web links in free text the way a person reads them: inside sentences, between angle
// brackets, without the full stop or closing bracket that follows them, and Teams' long links with
// their percent-encoded parts intact. Norva's own on every desktop, so every desktop reads a pasted
// invitation the same way. Only http and https links, and bare "www." hosts (read as https).
class LinkFinder {
public:
    // Every link in the text, in the order it appears.
    static QList<QUrl> find(const QString& text);
};

} // namespace norva
