#include "activities/ActivityKinds.h"

namespace norva {

using namespace ActivityKinds;

ActivityLook downloadLook(const ActivityContent& content)
{
    using State = ActivityContent::DownloadState;
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    if (const auto* state = content.payload<State>()) {
        if (*state == State::paused)
            look = {"downloadPaused", "\u2016", accent};
        else if (*state == State::finished)
            look = {"downloadDone", "\u2713", good};
    }
    return look;
}

ActivityLook agentWorkingLook(const ActivityContent& content)
{
    using Step = ActivityContent::AgentStep;
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    if (const auto* step = content.payload<Step>()) {
        if (*step == Step::edit)
            look = {"agentEdit", "\u270E", accent};
        else if (*step == Step::run)
            look = {"agentRun", "\u25B6", accent};
    }
    return look;
}

ActivityLook levelLook(const ActivityContent& content)
{
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    // A muted or silent output reads as muted.
    if (const auto* level = content.payload<ActivityContent::Level>();
        level && (level->muted || level->level <= 0))
        look.symbol = "volumeMuted";
    return look;
}

ActivityLook chargingLook(const ActivityContent& content)
{
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    if (const auto* charging = content.payload<ActivityContent::Charging>(); charging && !charging->pluggedIn)
        look.symbol = "battery";
    return look;
}

ActivityLook deviceLook(const ActivityContent& content)
{
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    if (const auto* event = content.payload<ActivityContent::DeviceEvent>();
        event && *event == ActivityContent::DeviceEvent::low)
        look = {"battery", "\u26A1", warn};
    return look;
}

ActivityLook timerLook(const ActivityContent& content)
{
    ActivityLook look = ActivityKinds::of(content.kind()).look;
    if (const auto* countdown = content.payload<ActivityContent::Countdown>(); countdown && countdown->paused)
        look = {"timerPaused", "\u2016", accent};
    return look;
}

namespace ActivityKinds {

ActivityLook lookOf(const ActivityContent& content)
{
    const ActivityKind& row = of(content.kind());
    return row.lookFor ? row.lookFor(content) : row.look;
}

} // namespace ActivityKinds
} // namespace norva
