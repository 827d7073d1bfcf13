#pragma once

#include <QString>

#include <optional>

namespace norva::LaunchAtLogin {

// Whether Norva is registered to start when the person logs in.
bool isOn();
// Registers or removes Norva as a login item; returns the error when the platform refused.
std::optional<QString> set(bool on);

} // namespace norva::LaunchAtLogin
