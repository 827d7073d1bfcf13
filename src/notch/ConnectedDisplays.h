#pragma once

#include "notch/DisplayInfo.h"

#include <QList>

class QScreen;

namespace norva {

// A display connected now, with the screen Qt keeps for it.
struct ConnectedDisplay {
    DisplayInfo display;
    QScreen* screen = nullptr;
};

// The displays connected now, named by describeDisplays, in Qt's order of its screens.
QList<ConnectedDisplay> connectedDisplays();
QList<DisplayInfo> connectedDisplayInfos();

} // namespace norva
