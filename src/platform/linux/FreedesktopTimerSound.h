#pragma once

#include "timers/TimerSound.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace norva {

// The timer's completion on a freedesktop desktop: the sound theme's "complete" event played by
// libcanberra's canberra-gtk-play, or the theme's file by paplay or pw-play. Norva bundles no media
// stack; a machine with none of these players stays quiet and says so once in the log.
class FreedesktopTimerSound final : public TimerSound {
public:
    struct Command {
        QString program;
        QStringList arguments;
        bool operator==(const Command&) const = default;
    };
    // Finds a program on PATH (empty when absent) and a file under the XDG data folders.
    using Finder = std::function<QString(const QString&)>;

    FreedesktopTimerSound();
    FreedesktopTimerSound(Finder findProgram, Finder findDataFile);

    void playCompletion() override;

    // Which player plays the sound here, if any.
    std::optional<Command> command() const;

    static const QString eventName; // "complete"
    static const QString themeFile; // "sounds/freedesktop/stereo/complete.oga"

private:
    Finder m_findProgram;
    Finder m_findDataFile;
    bool m_toldQuiet = false;
};

} // namespace norva
