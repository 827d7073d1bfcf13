#include "media/VolumeDemo.h"

#include "activities/LiveActivityCoordinator.h"
#include "activities/VolumeActivity.h"

#include <array>

namespace norva {

VolumeDemo::VolumeDemo(LiveActivityCoordinator& coordinator, Clock& clock, QObject* parent)
    : QObject(parent), m_coordinator(coordinator), m_clock(clock)
{
    m_first = m_clock.after(kFirstChange, [this] {
        change();
        m_changes = m_clock.every(kEvery, [this] { change(); });
    });
}

void VolumeDemo::change()
{
    // Up, up, up, then muted: the bars and the muted look both show.
    static constexpr std::array<double, 4> levels = {0.35, 0.6, 0.8, 0.0};
    const double level = levels[size_t(m_step++) % levels.size()];
    m_coordinator.upsert(VolumeActivity::make(level, false));
}

} // namespace norva
