#pragma once

#include <QString>

namespace norva {

// A playback command, in the order the players' controls list them.
enum class MediaCommand { togglePlayPause, play, pause, nextTrack, previousTrack };

// The system media-remote command number the adapter expects (3, stop, is never sent).
constexpr int adapterCode(MediaCommand command)
{
    switch (command) {
    case MediaCommand::togglePlayPause:
        return 2;
    case MediaCommand::play:
        return 0;
    case MediaCommand::pause:
        return 1;
    case MediaCommand::nextTrack:
        return 4;
    case MediaCommand::previousTrack:
        return 5;
    }
    return 2;
}

// The verb a scriptable player understands for the command.
inline QString scriptVerb(MediaCommand command)
{
    switch (command) {
    case MediaCommand::togglePlayPause:
        return QStringLiteral("playpause");
    case MediaCommand::play:
        return QStringLiteral("play");
    case MediaCommand::pause:
        return QStringLiteral("pause");
    case MediaCommand::nextTrack:
        return QStringLiteral("next track");
    case MediaCommand::previousTrack:
        return QStringLiteral("previous track");
    }
    return QStringLiteral("playpause");
}

} // namespace norva
