#include "media/MediaPlatform.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace norva::Platform {
namespace {

const QString kAdapterScript = QStringLiteral("mediaremote-adapter.pl");
const QString kAdapterFramework = QStringLiteral("MediaRemoteAdapter.framework");

// The players offered when nothing plays, by their application names.
const QStringList kPlayers = {QStringLiteral("Spotify"), QStringLiteral("Music")};

bool installed(const QString& player)
{
    return QFileInfo::exists(QStringLiteral("/Applications/%1.app").arg(player)) ||
           QFileInfo::exists(QStringLiteral("/System/Applications/%1.app").arg(player));
}

} // namespace

QStringList launchablePlayers()
{
    QStringList names;
    for (const QString& player : kPlayers) {
        if (installed(player))
            names << player;
    }
    return names;
}

bool startPlayer(const QString& name)
{
    return QProcess::startDetached(QStringLiteral("/usr/bin/open"), {QStringLiteral("-a"), name});
}

QStringList mediaAdapterFolders(const QString& applicationFolder)
{
    const QDir dir(applicationFolder);
    QStringList folders{dir.absoluteFilePath(QStringLiteral("../Resources"))};
    // The development layout keeps the adapter in the source tree.
    for (const QString& up : {QStringLiteral(".."), QStringLiteral("../.."), QStringLiteral("../../..")})
        folders << dir.absoluteFilePath(up + QStringLiteral("/Vendor/dist"));
    return folders;
}

std::optional<AdapterCommand> mediaAdapterIn(const QString& folder)
{
    const QDir dir(folder);
    const QString script = dir.absoluteFilePath(kAdapterScript);
    const QString framework = dir.absoluteFilePath(kAdapterFramework);
    if (QFileInfo::exists(script) && QFileInfo::exists(framework))
        return AdapterCommand{QStringLiteral("/usr/bin/perl"), {script, framework}};
    return std::nullopt;
}

} // namespace norva::Platform
