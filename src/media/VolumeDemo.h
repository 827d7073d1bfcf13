#pragma once

#include "app/Clock.h"

#include <QObject>

namespace norva {

class LiveActivityCoordinator;

// The demo's volume changes: a level shown over the closed notch's other samples now and then, as
// a key press on the volume would, without touching the real sound.
class VolumeDemo : public QObject {
    Q_OBJECT
public:
    static constexpr Seconds kFirstChange{4.0};
    static constexpr Seconds kEvery{9.0};

    VolumeDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent = nullptr);

private:
    void change();

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    ScheduledWork m_first;
    ScheduledWork m_changes;
    int m_step = 0;
};

} // namespace norva
