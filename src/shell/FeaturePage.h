#pragma once

#include <QObject>
#include <QString>

namespace norva {

// One page of the open panel as a feature offers it. `order` places it in the pager (lower first);
// the pages in use are listed in docs/ARCHITECTURE.md. A page whose QML is not built yet shows
// `emptyText` instead.
struct FeaturePage {
    QString id;
    QString title;
    QString qml;
    QString emptyText;
    int order = 0;

    bool operator==(const FeaturePage&) const = default;
};

} // namespace norva
