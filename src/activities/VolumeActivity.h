#pragma once

#include "activities/ActivityKinds.h"
#include "activities/LiveActivity.h"

namespace norva {

// A change of the output volume on the closed notch: the level as bars, gone on its own after a
// moment, over whatever else is live.
struct VolumeActivity {
    static inline const QString id = QStringLiteral("volume");
    static constexpr int priority = ActivityKinds::of(ActivityContent::Kind::volume).priority;
    static constexpr double hold = 1.6;

    static LiveActivity make(double level, bool muted)
    {
        LiveActivity volume;
        volume.id = id;
        volume.priority = priority;
        volume.content = ActivityContent::volume({level, muted || level <= 0.0});
        volume.text.title = QStringLiteral("Volume");
        volume.hold = hold;
        return volume;
    }
};

} // namespace norva
