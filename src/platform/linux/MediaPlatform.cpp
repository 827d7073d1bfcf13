#include "media/MediaPlatform.h"

#include "platform/linux/PactlOutputVolume.h"

namespace norva::Platform {

std::unique_ptr<OutputVolume> makeOutputVolume(Clock& clock)
{
    return std::make_unique<PactlOutputVolume>(clock);
}

} // namespace norva::Platform
