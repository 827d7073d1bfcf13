#include "activities/ActivityDemo.h"

#include "activities/LiveActivityCoordinator.h"

#include <array>

namespace norva {
namespace {

const QString kTimerId = QStringLiteral("timer");
const QString kDownloadId = QStringLiteral("download-demo");
const QString kVolumeId = QStringLiteral("volume");
constexpr int kTimerPriority = 10;
constexpr int kDownloadPriority = 10;
constexpr int kVolumePriority = 50; // a level change shows over whatever else is live
constexpr int kDownloadRest = 6;    // seconds the finished download stays before it starts again
constexpr double kDownloadMegabytes = 431.0;

QString clockText(int seconds)
{
    return QStringLiteral("%1:%2")
        .arg(seconds / 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

} // namespace

ActivityDemo::ActivityDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent)
    : QObject(parent), m_coordinator(coordinator), m_clock(clock)
{}

void ActivityDemo::start()
{
    publishTimer();
    publishDownload();
    m_ticks = m_clock.every(kTick, [this] { tick(); });
    m_volumeChanges = m_clock.every(kVolumeEvery, [this] { publishVolume(); });
}

void ActivityDemo::stop()
{
    m_ticks.cancel();
    m_volumeChanges.cancel();
    for (const QString& id : {kTimerId, kDownloadId, kVolumeId})
        m_coordinator.remove(id);
}

void ActivityDemo::tick()
{
    if (m_timerRunning && m_timerLeft > 0) {
        --m_timerLeft;
        publishTimer();
    }
    m_downloadSecond = (m_downloadSecond + 1) % (kDownloadSeconds + kDownloadRest);
    publishDownload();
}

void ActivityDemo::publishTimer()
{
    LiveActivity timer;
    timer.id = kTimerId;
    timer.priority = kTimerPriority;
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
    download.priority = kDownloadPriority;
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
    LiveActivity volume;
    volume.id = kVolumeId;
    volume.priority = kVolumePriority;
    volume.content = ActivityContent::volume({level, level <= 0.0});
    volume.text.title = QStringLiteral("Volume");
    volume.hold = kVolumeHold;
    m_coordinator.upsert(std::move(volume));
}

} // namespace norva
