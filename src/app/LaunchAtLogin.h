#pragma once

#include <QString>

#include <optional>

namespace norva {

// Whether Norva starts when the person logs in: the desktop's own login items (an XDG autostart
// entry on Linux, a login item on macOS). Platform::makeLaunchAtLogin() picks it.
class LaunchAtLogin {
public:
    virtual ~LaunchAtLogin() = default;

    virtual bool isOn() const = 0;
    // Registers or removes Norva as a login item; returns the error when the platform refused.
    virtual std::optional<QString> set(bool on) = 0;
};

} // namespace norva
