#include "media/MediaPlatform.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace norva::Platform {
namespace {

// The players offered when nothing plays: their names and the program that opens each.
struct LaunchablePlayer {
    const char* name;
    const char* program;
};
constexpr LaunchablePlayer kPlayers[] = {{"Spotify", "spotify"},     {"Rhythmbox", "rhythmbox"},
                                         {"Elisa", "elisa"},         {"Strawberry", "strawberry"},
                                         {"Audacious", "audacious"}, {"VLC", "vlc"}};

const QString kProducerName = QStringLiteral("norva-media");

} // namespace

QStringList launchablePlayers()
{
    QStringList names;
    for (const LaunchablePlayer& player : kPlayers) {
        if (!QStandardPaths::findExecutable(QLatin1String(player.program)).isEmpty())
            names << QLatin1String(player.name);
    }
    return names;
}

bool startPlayer(const QString& name)
{
    for (const LaunchablePlayer& player : kPlayers) {
        if (name == QLatin1String(player.name))
            return QProcess::startDetached(QLatin1String(player.program), {});
    }
    return false;
}

QStringList mediaAdapterFolders(const QString& applicationFolder)
{
    // Test and bench executables sit one or two folders below the build tree's top, where the
    // producer is built next to norva.
    const QDir dir(applicationFolder);
    return {dir.absoluteFilePath(QStringLiteral("..")), dir.absoluteFilePath(QStringLiteral("../.."))};
}

std::optional<AdapterCommand> mediaAdapterIn(const QString& folder)
{
    const QFileInfo producer(QDir(folder).absoluteFilePath(kProducerName));
    if (producer.isFile() && producer.isExecutable())
        return AdapterCommand{producer.absoluteFilePath(), {}};
    return std::nullopt;
}

} // namespace norva::Platform
