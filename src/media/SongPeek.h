#pragma once

#include "app/Clock.h"

#include <QObject>

namespace norva {

// The closed notch's short look at a new song: its title and artist show under the notch for a
// moment, then the notch folds back to its ears. The music manager starts it once per new track
// while music has the notch, and ends it early when the music leaves.
class SongPeek : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool showing READ showing NOTIFY showingChanged)
public:
    // Long enough to read a title and an artist at a glance, short enough not to stand in the way.
    static constexpr Seconds duration{3.0};

    explicit SongPeek(Clock& clock, QObject* parent = nullptr);

    // Shows the peek from now for `duration`; a peek already showing starts over.
    void show();
    void end();
    bool showing() const { return m_showing; }

signals:
    void showingChanged();

private:
    void setShowing(bool showing);

    Clock& m_clock;
    bool m_showing = false;
    ScheduledWork m_end;
};

} // namespace norva
