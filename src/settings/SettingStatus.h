#pragma once

#include <QString>

namespace norva {

// Whether what a setting needs outside Norva works right now, and what to do when it does not.
struct SettingStatus {
    bool works = true;
    QString text;
    QString fix; // empty when it works
    bool operator==(const SettingStatus&) const = default;
};

} // namespace norva
