#include "platform/linux/FreedesktopTimerSound.h"

#include "app/Log.h"

#include <QProcess>
#include <QStandardPaths>

namespace norva {

const QString FreedesktopTimerSound::eventName = QStringLiteral("complete");
const QString FreedesktopTimerSound::themeFile = QStringLiteral("sounds/freedesktop/stereo/complete.oga");

FreedesktopTimerSound::FreedesktopTimerSound()
    : FreedesktopTimerSound([](const QString& name) { return QStandardPaths::findExecutable(name); },
                            [](const QString& relative) {
                                return QStandardPaths::locate(QStandardPaths::GenericDataLocation, relative);
                            })
{}

FreedesktopTimerSound::FreedesktopTimerSound(Finder findProgram, Finder findDataFile)
    : m_findProgram(std::move(findProgram)), m_findDataFile(std::move(findDataFile))
{}

// canberra-gtk-play follows the person's chosen sound theme; the plain players need the file.
std::optional<FreedesktopTimerSound::Command> FreedesktopTimerSound::command() const
{
    const QString canberra = m_findProgram(QStringLiteral("canberra-gtk-play"));
    if (!canberra.isEmpty())
        return Command{canberra,
                       {QStringLiteral("-i"), eventName, QStringLiteral("-d"), QStringLiteral("Norva")}};
    const QString file = m_findDataFile(themeFile);
    if (file.isEmpty())
        return std::nullopt;
    for (const QString& name : {QStringLiteral("paplay"), QStringLiteral("pw-play")}) {
        const QString player = m_findProgram(name);
        if (!player.isEmpty())
            return Command{player, {file}};
    }
    return std::nullopt;
}

void FreedesktopTimerSound::playCompletion()
{
    const std::optional<Command> play = command();
    if (play && QProcess::startDetached(play->program, play->arguments))
        return;
    if (m_toldQuiet)
        return;
    m_toldQuiet = true;
    logLine(
        QStringLiteral("Norva timers: the timer finished quietly (") +
        (play ? play->program + QStringLiteral(" could not be started")
              : QStringLiteral("no sound player was found: canberra-gtk-play, or paplay or pw-play with the "
                               "freedesktop sound theme")) +
        QStringLiteral(")"));
}
} // namespace norva
