#pragma once

#include "app/Clock.h"

#include <QObject>

namespace norva {

class LiveActivityCoordinator;

// Sample activities for `norva --demo`: a focus timer counting down, a download that fills up and
// a volume change that comes and goes, so a newcomer sees the closed notch alive. It invents all
// of it and reads or writes nothing of the person's own.
class ActivityDemo : public QObject {
    Q_OBJECT
public:
    static constexpr Seconds kTick{1.0};
    static constexpr Seconds kVolumeEvery{9.0};
    static constexpr double kVolumeHold = 1.6;
    static constexpr int kTimerSeconds = 25 * 60;
    static constexpr int kDownloadSeconds = 40;

    ActivityDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent = nullptr);

    // Publishes the samples and keeps them moving until stop() or destruction.
    void start();
    void stop();

private:
    void tick();
    void publishTimer();
    void publishDownload();
    void publishVolume();

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    ScheduledWork m_ticks;
    ScheduledWork m_volumeChanges;
    int m_timerLeft = kTimerSeconds;
    bool m_timerRunning = true;
    int m_downloadSecond = 0;
    int m_volumeStep = 0;
};

} // namespace norva
