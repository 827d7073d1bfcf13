#include "media/VolumeActivityPublisher.h"

#include "activities/LiveActivityCoordinator.h"
#include "activities/VolumeActivity.h"
#include "media/MusicManager.h"
#include "media/MusicSettings.h"

#include <utility>

namespace norva {

VolumeActivityPublisher::VolumeActivityPublisher(MusicManager& music, LiveActivityCoordinator& coordinator,
                                                 MusicSettings& settings, QObject* parent)
    : QObject(parent), m_music(music), m_coordinator(coordinator), m_settings(settings)
{
    connect(&music, &MusicManager::volumeChanged, this, [this] {
        const bool firstReading = !std::exchange(m_levelKnown, true);
        if (!firstReading && m_settings.showVolumeChanges())
            publish(m_music.volume(), m_music.volumeMuted());
    });
    // Scrolling shows where the level is going at once, before the sound server has answered.
    connect(&music, &MusicManager::volumeScrolled, this,
            [this](double level) { publish(level, m_music.volumeMuted()); });
}

void VolumeActivityPublisher::publish(double level, bool muted)
{
    m_coordinator.upsert(VolumeActivity::make(level, muted));
}

} // namespace norva
