#pragma once

#include <QString>

// "forever" is a case of the shelf's retention here, not Qt's loop keyword.
#undef forever

#include <optional>

// The value types of Norva's preferences.
namespace norva {

enum class KeepPaused { tenSeconds = 10, thirtySeconds = 30, sixtySeconds = 60, never = 0 };
enum class ShelfKeep { forever, day, week };
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
