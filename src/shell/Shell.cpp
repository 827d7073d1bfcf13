#include "shell/Shell.h"

#include "app/Log.h"
#include "app/Paths.h"
#include "app/SettingsKeys.h"

#include <QCoreApplication>

#include <algorithm>

namespace norva {

Shell::Shell(std::unique_ptr<PreferencesDatabase> preferences, Clock& clock, Demo demo, QObject* parent)
    : QObject(parent), m_clock(clock), m_demo(std::move(demo)), m_preferences(std::move(preferences))
{
    m_settings = std::make_unique<SettingsStore>(*m_preferences);
    m_firstLaunch = !m_settings->flag(SettingsKeys::hasLaunchedBefore, false);
    const bool firstLaunch = m_firstLaunch;
    // Written before the launch is told, so whoever reads the line finds the flag saved. The demo
    // leaves the person's preferences as they are.
    if (firstLaunch && !m_demo.on)
        m_settings->write(true, SettingsKeys::hasLaunchedBefore);
    logLine(QStringLiteral("Norva: launched (version ") + QCoreApplication::applicationVersion() +
            (firstLaunch ? QStringLiteral(", first launch)") : QStringLiteral(")")));

    if (m_demo.on) {
        if (const auto scene = DemoScene::fromWord(m_demo.scene))
            m_demoScene = *scene;
        else
            logLine(QStringLiteral("Norva: the demo scene ") + m_demo.scene +
                    QStringLiteral(" is unknown (showing all the samples)"));
    }

    m_activities = std::make_unique<LiveActivityCoordinator>(m_clock);
    m_activities->follow(*m_settings);
    m_closedFace = std::make_unique<ClosedFaceModel>(*m_activities);
    m_closedFace->follow(*m_settings);
    connect(m_closedFace.get(), &ClosedFaceModel::openRequested, this, &Shell::openPage);
    connect(m_closedFace.get(), &ClosedFaceModel::urgentPageWanted, this, &Shell::openPageQuietly);
}

Shell::~Shell()
{
    stop();
    // Features go before the coordinator and the store they publish to and read from.
    while (!m_modules.empty())
        m_modules.pop_back();
}

void Shell::start()
{
    m_started = true;
    for (const auto& module : m_modules)
        module->start();
}

void Shell::stop()
{
    if (!m_started)
        return;
    m_started = false;
    for (auto module = m_modules.rbegin(); module != m_modules.rend(); ++module)
        (*module)->stop();
}

QString Shell::dataFolder() const
{
    if (!m_demo.on)
        return Paths::dataFolder();
    if (!m_demoData)
        m_demoData = std::make_unique<QTemporaryDir>();
    return m_demoData->path();
}

QList<FeaturePage> Shell::pages() const
{
    QList<FeaturePage> pages;
    for (const auto& module : m_modules)
        pages += module->pages();
    std::stable_sort(pages.begin(), pages.end(),
                     [](const FeaturePage& a, const FeaturePage& b) { return a.order < b.order; });
    return pages;
}

QList<QObject*> Shell::qmlObjects() const
{
    QList<QObject*> objects{m_settings.get(), m_activities.get(), m_closedFace.get()};
    for (const auto& module : m_modules)
        objects += module->qmlObjects();
    return objects;
}

} // namespace norva
