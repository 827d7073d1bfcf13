#pragma once

#include "app/Clock.h"
#include "media/MediaRemoteAdapterBackend.h"
#include "media/OutputVolume.h"

#include <QStringList>

#include <memory>

namespace norva::Platform {

// The default output device's volume on the running system (pactl on Linux, AppleScript on macOS).
std::unique_ptr<OutputVolume> makeOutputVolume(Clock& clock);

// The music players offered when nothing plays that are installed here, by name, and starting one.
QStringList launchablePlayers();
bool startPlayer(const QString& name);

// Where the now-playing adapter may sit besides Norva's own folder, and the command that runs the
// one in `folder` (none when it is not there): norva-media on Linux, the Perl adapter on macOS.
QStringList mediaAdapterFolders(const QString& applicationFolder);
std::optional<AdapterCommand> mediaAdapterIn(const QString& folder);

} // namespace norva::Platform
