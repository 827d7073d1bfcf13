#include "settings/SettingsModule.h"

#include "app/SettingsStore.h"
#include "notch/ConnectedDisplays.h"
#include "shell/Shell.h"
#include "storage/VdirRoot.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace norva {

SettingsModule::SettingsModule(Shell& shell)
    : m_hooks(std::make_unique<HookPresence>()), m_scheme(std::make_unique<DesktopColorScheme>())
{
    SettingsStore& settings = shell.settings();
    m_hooks->live();
    HookPresence* hooks = m_hooks.get();
    SettingsChecks checks(
        SettingsChecks::desktopProbes([hooks] { return hooks->isOn(CodingAgent::claude); },
                                      [hooks] { return hooks->statusText(CodingAgent::claude); }));
    m_window = std::make_unique<SettingsWindowModel>(settings, std::move(checks), connectedDisplayInfos);
    connect(m_hooks.get(), &HookPresence::changed, m_window.get(), &SettingsWindowModel::refresh);
    // The display choice offers the displays connected now.
    for (auto changed : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved,
                         &QGuiApplication::primaryScreenChanged})
        connect(qGuiApp, changed, m_window.get(), &SettingsWindowModel::refresh);

    const QString calendars =
        VdirRoot::locate(settings.storedText(QStringLiteral("calendars.folder.v1")).value_or(QString()));
    m_guide = std::make_unique<FirstRunGuide>(
        settings, FirstRunGuide::Setup{shell.firstLaunch(), QCoreApplication::applicationVersion(),
                                       SettingsChecks::homeShort(calendars), !shell.demo().on});
}

SettingsModule::~SettingsModule() = default;

// The notch's own settings page, last in the pager; the settings window holds the rest.
QList<FeaturePage> SettingsModule::pages() const
{
    return {{QStringLiteral("settings"), QStringLiteral("Settings"), QStringLiteral("SettingsPage.qml"),
             QStringLiteral("Settings will be here."), 90}};
}

QList<QObject*> SettingsModule::qmlObjects() const
{
    return {m_window.get(), m_guide.get(), m_scheme.get()};
}

} // namespace norva
