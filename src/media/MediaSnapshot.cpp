#include "media/MediaSnapshot.h"

#include <algorithm>

namespace norva {

std::optional<double> MediaSnapshot::displayElapsed(const QDateTime& at) const
{
    if (!elapsed)
        return std::nullopt;
    if (!isPlaying)
        return elapsed;
    const double rate = playbackRate && *playbackRate > 0 ? *playbackRate : 1.0;
    const double since = timestamp.isValid() ? timestamp.msecsTo(at) / 1000.0 : 0.0;
    double shown = *elapsed + since * rate;
    if (duration)
        shown = std::min(shown, *duration);
    return shown;
}

double MediaSnapshot::playbackProgress(const QDateTime& at) const
{
    const auto shown = displayElapsed(at);
    if (!duration || *duration <= 0 || !shown)
        return 0.0;
    return *shown / *duration;
}

QString MediaSnapshot::trackKey() const
{
    if (!hasTrack)
        return {};
    return title + QChar(0x1f) + artist + QChar(0x1f) + album;
}

} // namespace norva
