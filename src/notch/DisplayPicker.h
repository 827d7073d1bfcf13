#pragma once

#include "app/SettingsTypes.h"

#include <QList>
#include <QString>

namespace norva {

// One connected display as the notch code sees it.
struct DisplayInfo {
    QString id;   // the connector name, stable across runs ("eDP-1", "HDMI-1")
    QString name; // what a person reads ("Dell U2720Q")
    bool builtIn = false;
    bool primary = false;
    bool operator==(const DisplayInfo&) const = default;
};

// Which connected displays get a notch for the person's display choice. The built-in display is
// the laptop panel when one is connected, else the primary display; a chosen display that is not
// connected falls back to the same, so Norva never vanishes.
QList<DisplayInfo> pickDisplays(const DisplayChoice& choice, const QList<DisplayInfo>& connected);

// Whether a connector name belongs to a laptop's own panel.
bool isBuiltInConnector(const QString& connector);

} // namespace norva
