#include "timers/TimersFeature.h"

#include "timers/TimerPlatform.h"

#include <QDir>

namespace norva {

TimersFeature::TimersFeature(Clock& clock, LiveActivityCoordinator& activities, SettingsStore& settings,
                             const QString& dataFolder, bool restore)
    : m_sound(Platform::makeTimerSound()),
      m_timer(std::make_unique<TimerManager>(
          clock, activities, *m_sound, QDir(dataFolder).filePath(QStringLiteral("timer.json")), &settings))
{
    if (restore)
        m_timer->restore();
}

} // namespace norva
