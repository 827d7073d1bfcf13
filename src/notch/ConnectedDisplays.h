#pragma once

#include "app/SettingsTypes.h"
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
// The connected displays that get a notch for the person's display choice.
QList<ConnectedDisplay> notchDisplays(const DisplayChoice& choice);
// True while the front window fills this screen, hiding the notch on it.
bool fullscreenWindowOn(const QScreen& screen);

} // namespace norva
