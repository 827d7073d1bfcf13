#pragma once

#include <QList>
#include <QRect>
#include <QString>

namespace norva {

// What the window system says about one connected screen, before Norva names it.
struct ScreenFacts {
    QString connector; // "eDP-1", "HDMI-1"; two X screens of one server may both say "screen"
    QString model;
    QString serial;
    QRect geometry;
    bool primary = false;
    bool operator==(const ScreenFacts&) const = default;
};

// One connected display as the notch code sees it.
struct DisplayInfo {
    QString id;   // unique among the connected displays and stable across runs ("eDP-1", "screen@0,0")
    QString name; // what a person reads ("Built-in display", "DELL U2720Q"), unique as well
    bool builtIn = false;
    bool primary = false;
    bool operator==(const DisplayInfo&) const = default;
};

// Names the connected screens, in their order. A screen is known by its connector; screens that
// share a connector (two X screens of one server, or a driver that names every output alike) are
// told apart by their serial number, else their position, else their position and size, else
// their order, whichever separates them. The person's names are made unique the same way.
QList<DisplayInfo> describeDisplays(const QList<ScreenFacts>& screens);

// Whether a connector name belongs to a laptop's own panel.
bool isBuiltInConnector(const QString& connector);

} // namespace norva
