#include "timers/TimersModule.h"

#include "shell/Shell.h"
#include "timers/TimerPlatform.h"

#include <QDir>

namespace norva {

TimersModule::TimersModule(Shell& shell)
    : m_shell(shell), m_sound(Platform::makeTimerSound()),
      m_timer(std::make_unique<TimerManager>(shell.clock(), shell.activities(), *m_sound,
                                             QDir(shell.dataFolder()).filePath(QStringLiteral("timer.json")),
                                             &shell.settings()))
{}

TimersModule::~TimersModule() = default;

void TimersModule::start()
{
    // The demo's timer is a real focus round on the throw-away data folder, so pausing and
    // stopping it from the notch or the page work as they do for the person's own.
    if (m_shell.demoShows(DemoScene::Sample::timer))
        m_timer->startFocus();
    else if (!m_shell.demo().on)
        m_timer->restore();
}

QList<FeaturePage> TimersModule::pages() const
{
    return {{QStringLiteral("timer"), QStringLiteral("Timer"), QStringLiteral("TimerPage.qml"),
             QStringLiteral("A timer and focus rounds will be here."), 54}};
}

QList<QObject*> TimersModule::qmlObjects() const
{
    return {m_timer.get()};
}

} // namespace norva
