#pragma once

#include <QString>

namespace norva {

// Why the music page cannot show or control what plays: a player refused Norva control of it, or
// a player script failed. Noted once per kind; an equal trouble is not published again.
struct MusicTrouble {
    enum class Kind { none, permission, scriptFailed };
    Kind kind = Kind::none;
    QString player;      // the player that refused, for a permission trouble
    QString errorOutput; // the script's standard error, for a failing script
    int exitStatus = 0;

    static MusicTrouble permission(const QString& player) { return {Kind::permission, player, {}, 0}; }
    static MusicTrouble scriptFailed(const QString& errorOutput, int exitStatus)
    {
        return {Kind::scriptFailed, {}, errorOutput, exitStatus};
    }
    bool isNone() const { return kind == Kind::none; }
    // What the music page shows.
    QString text() const
    {
        switch (kind) {
        case Kind::none:
            return {};
        case Kind::permission:
            return QStringLiteral("Norva isn't allowed to control %1. Allow it in System Settings > "
                                  "Privacy & Security > Automation.")
                .arg(player);
        case Kind::scriptFailed:
            return QStringLiteral("osascript exited with %1").arg(exitStatus) +
                   (errorOutput.isEmpty() ? QString() : QStringLiteral(": ") + errorOutput);
        }
        return {};
    }

    bool operator==(const MusicTrouble&) const = default;
};

} // namespace norva
