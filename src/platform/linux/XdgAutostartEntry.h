#pragma once

#include "app/LaunchAtLogin.h"

namespace norva {

// Launch at login on a Linux desktop: "norva.desktop" in the XDG autostart folder, which every
// freedesktop session starts at login.
class XdgAutostartEntry final : public LaunchAtLogin {
public:
    bool isOn() const override;
    std::optional<QString> set(bool on) override;
};

} // namespace norva
