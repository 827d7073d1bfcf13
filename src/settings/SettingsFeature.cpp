#include "settings/SettingsFeature.h"

#include "app/SettingsStore.h"
#include "storage/VdirRoot.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace norva {
namespace {

QList<SettingsWindowModel::Display> connectedDisplays()
{
    QList<SettingsWindowModel::Display> displays;
    for (const QScreen* screen : QGuiApplication::screens())
        displays.append({screen->name(), screen->model().isEmpty() ? screen->name() : screen->model()});
    return displays;
}

} // namespace

SettingsFeature::SettingsFeature(SettingsStore& settings, bool firstLaunch, bool demo)
    : m_hooks(std::make_unique<HookPresence>()), m_scheme(std::make_unique<DesktopColorScheme>())
{
    m_hooks->live();
    HookPresence* hooks = m_hooks.get();
    SettingsChecks checks(
        SettingsChecks::desktopProbes([hooks] { return hooks->isOn(CodingAgent::claude); },
                                      [hooks] { return hooks->statusText(CodingAgent::claude); }));
    m_window = std::make_unique<SettingsWindowModel>(settings, std::move(checks), connectedDisplays);
    connect(m_hooks.get(), &HookPresence::changed, m_window.get(), &SettingsWindowModel::refresh);

    const QString calendars =
        VdirRoot::locate(settings.storedText(QStringLiteral("calendars.folder.v1")).value_or(QString()));
    m_guide = std::make_unique<FirstRunGuide>(
        settings, FirstRunGuide::Setup{firstLaunch, QCoreApplication::applicationVersion(),
                                       SettingsChecks::homeShort(calendars), !demo});
}

SettingsFeature::~SettingsFeature() = default;

QList<std::pair<QString, QObject*>> SettingsFeature::qmlObjects() const
{
    return {{QStringLiteral("settingsWindow"), m_window.get()},
            {QStringLiteral("firstRun"), m_guide.get()},
            {QStringLiteral("desktopScheme"), m_scheme.get()}};
}

} // namespace norva
