#pragma once

#include <QString>

#include <optional>

// The value types of Norva's preferences.
namespace norva {

enum class NotchMotion { full, reduced };

// Which displays get a notch: every display, the built-in one, or one display the person chose
// ("display:" + identifier + "|" + a name kept for showing the choice while it is unplugged).
struct DisplayChoice {
    enum class Kind { all, builtIn, display };
    Kind kind = Kind::builtIn;
    QString displayId;
    QString displayName;

    static std::optional<DisplayChoice> parse(const QString& raw);
    QString raw() const;
    bool operator==(const DisplayChoice&) const = default;
};

} // namespace norva
