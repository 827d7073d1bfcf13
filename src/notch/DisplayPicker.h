#pragma once

#include "app/SettingsTypes.h"
#include "notch/DisplayInfo.h"

#include <QList>

namespace norva {

// Which connected displays get a notch for the person's display choice. The built-in display is
// the laptop panel when one is connected, else the primary display; a chosen display that is not
// connected falls back to the same, so Norva never vanishes.
QList<DisplayInfo> pickDisplays(const DisplayChoice& choice, const QList<DisplayInfo>& connected);

} // namespace norva
