#pragma once

#include "media/MediaBackend.h"
#include "media/MusicManager.h"

#include <QDateTime>

#include <memory>

namespace norva::test {

// A player that plays the song the test names, for a real music manager under the views.
class SongSource final : public MediaBackend {
public:
    // The music manager's backends with this player as its adapter; `made` is set once it starts.
    static MusicManager::Backends backends(SongSource*& made)
    {
        return {[&made] {
                    auto player = std::make_unique<SongSource>();
                    made = player.get();
                    return std::unique_ptr<MediaBackend>(std::move(player));
                },
                {}};
    }

    void start(MediaSink sink) override { m_sink = std::move(sink); }
    void stop() override {}
    void send(MediaCommand) override {}
    void seek(double) override {}
    void play(const QString& title, const QString& artist, const QDateTime& at)
    {
        MediaUpdate update;
        update.snapshot.hasTrack = true;
        update.snapshot.isPlaying = true;
        update.snapshot.title = title;
        update.snapshot.artist = artist;
        update.snapshot.timestamp = at;
        m_sink.onUpdate(update);
    }

private:
    MediaSink m_sink;
};

} // namespace norva::test
