#include "activities/ActivitiesModule.h"

#include "app/Log.h"
#include "shell/Shell.h"

namespace norva {

ActivitiesModule::ActivitiesModule(Shell& shell) : m_shell(shell) {}

ActivitiesModule::~ActivitiesModule() = default;

void ActivitiesModule::start()
{
    if (!m_shell.demo().on)
        return;
    const QString& word = m_shell.demo().scene;
    const auto scene = ActivityDemo::sceneFromWord(word);
    if (!scene)
        logLine(QStringLiteral("Norva activities: the demo scene ") + word +
                QStringLiteral(" is unknown (showing all the samples)"));
    m_demo = std::make_unique<ActivityDemo>(m_shell.activities(), m_shell.clock(),
                                            scene.value_or(ActivityDemo::Scene::all));
    m_demo->start();
}

} // namespace norva
