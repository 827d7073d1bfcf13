#include "activities/ActivityDemo.h"

#include "activities/ActivityKinds.h"
#include "activities/LiveActivityCoordinator.h"
#include "activities/VolumeActivity.h"

#include <array>

namespace norva {
namespace {

const QString kTimerId = QStringLiteral("timer");
const QString kDownloadId = QStringLiteral("download-demo");
const QString kPromptId = QStringLiteral("agent-demo");
constexpr int kDownloadRest = 6; // seconds the finished download stays before it starts again
constexpr double kDownloadMegabytes = 431.0;

QString clockText(int seconds)
{
    return QStringLiteral("%1:%2")
        .arg(seconds / 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

std::optional<ActivityDemo::Scene> ActivityDemo::sceneFromWord(const QString& word)
{
    if (word.isEmpty() || word == QLatin1String("all"))
        return Scene::all;
    if (word == QLatin1String("one"))
        return Scene::one;
    if (word == QLatin1String("two"))
        return Scene::two;
    if (word == QLatin1String("pinned"))
        return Scene::pinned;
    if (word == QLatin1String("three"))
        return Scene::three;
    return std::nullopt;
}

ActivityDemo::ActivityDemo(LiveActivityCoordinator& coordinator, Clock& clock, Scene scene, QObject* parent)
    : QObject(parent), m_coordinator(coordinator), m_clock(clock), m_scene(scene)
{}

void ActivityDemo::start()
{
    publishTimer();
    if (showsDownload())
        publishDownload();
    if (m_scene == Scene::pinned || m_scene == Scene::three)
        publishPrompt();
    m_ticks = m_clock.every(kTick, [this] { tick(); });
    if (m_scene == Scene::all) {
        m_firstVolumeChange = m_clock.after(kVolumeFirst, [this] {
            publishVolume();
            m_volumeChanges = m_clock.every(kVolumeEvery, [this] { publishVolume(); });
        });
    }
}

void ActivityDemo::stop()
{
    m_ticks.cancel();
    m_firstVolumeChange.cancel();
    m_volumeChanges.cancel();
    for (const QString& id : {kTimerId, kDownloadId, VolumeActivity::id, kPromptId})
        m_coordinator.remove(id);
}

bool ActivityDemo::showsDownload() const
{
    return m_scene == Scene::all || m_scene == Scene::two || m_scene == Scene::three;
}

void ActivityDemo::tick()
{
    if (m_timerRunning && m_timerLeft > 0) {
        --m_timerLeft;
        publishTimer();
    }
    if (showsDownload()) {
        m_downloadSecond = (m_downloadSecond + 1) % (kDownloadSeconds + kDownloadRest);
        publishDownload();
    }
}

void ActivityDemo::publishTimer()
{
    LiveActivity timer;
    timer.id = kTimerId;
    timer.priority = ActivityKinds::of(ActivityContent::Kind::timer).priority;
    timer.content = ActivityContent::timer();
    timer.text.title = QStringLiteral("Focus");
    timer.text.value = clockText(m_timerLeft);
    timer.text.progress = 1.0 - double(m_timerLeft) / kTimerSeconds;
    timer.text.detail = m_timerRunning ? QStringLiteral("Round 2 of 4 · click to pause")
                                       : QStringLiteral("Paused · click to go on");
    timer.urgentTab = std::nullopt;
    timer.onTap = [this] {
        m_timerRunning = !m_timerRunning;
        publishTimer();
    };
    m_coordinator.upsert(std::move(timer));
}

void ActivityDemo::publishDownload()
{
    using State = ActivityContent::DownloadState;
    const bool finished = m_downloadSecond >= kDownloadSeconds;
    const double fraction = finished ? 1.0 : double(m_downloadSecond) / kDownloadSeconds;
    LiveActivity download;
    download.id = kDownloadId;
    download.priority = ActivityKinds::of(ActivityContent::Kind::download).priority;
    download.content = ActivityContent::download(finished ? State::finished : State::running);
    download.text.title = QStringLiteral("sample-photos.zip");
    download.text.progress = fraction;
    download.text.value = finished ? QStringLiteral("Done") : QString::number(qRound(fraction * 100)) + '%';
    download.text.detail = finished ? QStringLiteral("sample-photos.zip · 431 MB")
                                    : QStringLiteral("%1 MB of %2 MB · %3 s left")
                                          .arg(qRound(fraction * kDownloadMegabytes))
                                          .arg(kDownloadMegabytes)
                                          .arg(kDownloadSeconds - m_downloadSecond);
    m_coordinator.upsert(std::move(download));
}

void ActivityDemo::publishVolume()
{
    static constexpr std::array<double, 4> levels = {0.35, 0.6, 0.8, 0.0};
    const double level = levels[size_t(m_volumeStep++) % levels.size()];
    m_coordinator.upsert(VolumeActivity::make(level, false));
}

void ActivityDemo::publishPrompt()
{
    LiveActivity prompt;
    prompt.id = kPromptId;
    prompt.priority = ActivityKinds::of(ActivityContent::Kind::agentPrompt).priority;
    prompt.content = ActivityContent::agentPrompt();
    // A question waiting for the person owns the notch; in the idle measurement it takes turns.
    prompt.pinned = m_scene != Scene::three;
    if (!prompt.pinned)
        prompt.priority = ActivityKinds::of(ActivityContent::Kind::timer).priority;
    prompt.text.title = QStringLiteral("Claude asks");
    prompt.text.value = QStringLiteral("Allow?");
    prompt.text.detail = QStringLiteral("Run npm test in ~/code/sample-app");
    prompt.onTap = [this] { m_coordinator.remove(kPromptId); };
    m_coordinator.upsert(std::move(prompt));
}

} // namespace norva
