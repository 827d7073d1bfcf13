#pragma once

#include "media/MediaCommand.h"
#include "media/MediaSnapshot.h"
#include "media/MusicTrouble.h"

#include <QByteArray>

#include <functional>

namespace norva {

// One delivery of a backend: the snapshot, and the artwork when it changed with it. The bytes are
// handed on as they came: the music manager decodes them off the main thread.
struct MediaUpdate {
    MediaSnapshot snapshot;
    bool artworkChanged = false;
    QByteArray artworkData; // the artwork's encoded bytes as the source gave them; empty: none
};

// Where a backend delivers, always on the main thread. onFailure is called once, when the backend
// cannot work at all; onTrouble notes a problem the person can act on while it keeps trying.
struct MediaSink {
    std::function<void(const MediaUpdate&)> onUpdate;
    std::function<void()> onFailure;
    std::function<void(const MusicTrouble&)> onTrouble;
};

// A source of now-playing snapshots that also carries playback commands back to the player.
// Two implementations: a streaming adapter process, and polling scriptable players.
class MediaBackend {
public:
    virtual ~MediaBackend() = default;
    virtual void start(MediaSink sink) = 0;
    // Ends delivery, any child process and every timer.
    virtual void stop() = 0;
    virtual void send(MediaCommand command) = 0;
    virtual void seek(double seconds) = 0;
};

} // namespace norva
