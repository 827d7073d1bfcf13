#pragma once

#include "app/Clock.h"

#include <QObject>

#include <optional>

namespace norva {

class LiveActivityCoordinator;

// Sample activities for `norva --demo`: a focus timer counting down, a download that fills up and
// a volume change that comes and goes, so a newcomer sees the closed notch alive. It invents all
// of it and reads or writes nothing of the person's own.
class ActivityDemo : public QObject {
    Q_OBJECT
public:
    static constexpr Seconds kTick{1.0};
    static constexpr Seconds kVolumeFirst{4.0};
    static constexpr Seconds kVolumeEvery{9.0};
    static constexpr int kTimerSeconds = 25 * 60;
    static constexpr int kDownloadSeconds = 40;

    // Which samples show: all of them (the default), only the timer, the timer and the download
    // taking turns, an agent's prompt pinned over the timer, or timer, download and prompt all
    // three taking turns (for measuring Norva's idle cost).
    enum class Scene { all, one, two, pinned, three };
    static std::optional<Scene> sceneFromWord(const QString& word);

    ActivityDemo(LiveActivityCoordinator& coordinator, Clock& clock, Scene scene = Scene::all,
                 QObject* parent = nullptr);

    // Publishes the samples and keeps them moving until stop() or destruction.
    void start();
    void stop();

private:
    void tick();
    void publishTimer();
    void publishDownload();
    void publishVolume();
    void publishPrompt();
    bool showsDownload() const;

    LiveActivityCoordinator& m_coordinator;
    Clock& m_clock;
    Scene m_scene;
    ScheduledWork m_ticks;
    ScheduledWork m_firstVolumeChange;
    ScheduledWork m_volumeChanges;
    int m_timerLeft = kTimerSeconds;
    bool m_timerRunning = true;
    int m_downloadSecond = 0;
    int m_volumeStep = 0;
};

} // namespace norva
