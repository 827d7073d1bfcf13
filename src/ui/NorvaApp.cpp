#include "ui/NorvaApp.h"

#include "agents/UsageBridge.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "app/Platform.h"
#include "app/SettingsKeys.h"
#include "notch/DisplayPicker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQuickWindow>
#include <QScreen>

#include <cstdio>

namespace norva {
namespace {

struct Page {
    const char* id;
    const char* title;
    const char* qml;
    const char* emptyText;
};

// The pages of the open panel, in pager order. A page whose QML is not built yet says what will be there.
const Page kPages[] = {
    {"music", "Music", "MusicPage.qml", "Now playing, with synced lyrics, will be here."},
    {"agents", "Agents", "AgentsPage.qml", "Your coding agents' sessions and prompts will be here."},
    {"clipboard", "Clipboard", "ClipboardPage.qml", "Your clipboard history will be here."},
    {"shelf", "Shelf", "ShelfPage.qml", "Files you drop on the notch will wait here."},
    {"todos", "To-dos", "TodosPage.qml", "Your to-dos and quick notes will be here."},
    {"calendar", "Calendar", "CalendarPage.qml", "Your next meetings will be here."},
    {"weather", "Weather", "WeatherPage.qml", "The forecast for your places will be here."},
    {"team", "Team", "TeamRulesSection.qml", "Your team's rules for coding agents will be here."},
    {"settings", "Settings", "SettingsPage.qml", "Settings will be here."},
};

QList<DisplayInfo> connectedDisplays()
{
    QList<DisplayInfo> displays;
    const QScreen* primary = QGuiApplication::primaryScreen();
    for (QScreen* screen : QGuiApplication::screens()) {
        const QString model = screen->model().isEmpty() ? screen->name() : screen->model();
        displays.append({screen->name(), model, isBuiltInConnector(screen->name()), screen == primary});
    }
    return displays;
}

QVariantMap describe(const Page& page)
{
    return {{QStringLiteral("id"), QString::fromLatin1(page.id)},
            {QStringLiteral("title"), QString::fromUtf8(page.title)},
            {QStringLiteral("qml"), QString::fromLatin1(page.qml)},
            {QStringLiteral("emptyText"), QString::fromUtf8(page.emptyText)}};
}

QElapsedTimer& sinceStart()
{
    static QElapsedTimer timer;
    return timer;
}

} // namespace

NorvaApp::NorvaApp(Options options, QObject* parent)
    : QObject(parent), m_options(options), m_clock(systemClock())
{
    sinceStart().start();
}

NorvaApp::~NorvaApp()
{
    m_overlays.clear();
}

bool NorvaApp::start()
{
    // The settings store exists before anything else: every part reads its preferences through it.
    m_preferences = Platform::makePreferencesDatabase();
    m_settings = std::make_unique<SettingsStore>(*m_preferences);
    const bool firstLaunch = !m_settings->flag(SettingsKeys::hasLaunchedBefore, false);
    logLine(QStringLiteral("Norva: launched (version ") + QCoreApplication::applicationVersion() +
            (firstLaunch ? QStringLiteral(", first launch)") : QStringLiteral(")")));
    if (firstLaunch)
        m_settings->write(true, SettingsKeys::hasLaunchedBefore);

    // Feature managers are made here, after the settings store and before the notch windows, and
    // handed to QML in exposeToQml().
    startAgentsTeam();

    exposeToQml();
    rebuildOverlays();
    if (m_overlays.empty()) {
        logLine(QStringLiteral("Norva: no notch window could be shown (no display is connected)"));
        return false;
    }
    connect(m_settings.get(), &SettingsStore::changed, this, &NorvaApp::rebuildOverlays);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &NorvaApp::rebuildOverlays);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &NorvaApp::rebuildOverlays);

    m_tray = std::make_unique<TrayIcon>(*m_settings);
    connect(m_tray.get(), &TrayIcon::openRequested, this, [this] { openNotch(); });
    connect(m_tray.get(), &TrayIcon::settingsRequested, this, &NorvaApp::openSettings);
    connect(m_tray.get(), &TrayIcon::quitRequested, this, &NorvaApp::quit);

    if (m_options.exitAfterFirstFrame)
        noteFirstFrame();
    if (!m_options.openPage.isEmpty()) {
        openNotch(m_options.openPage);
        m_overlays.front()->notch()->setPinnedOpen(true);
    }
    return true;
}

void NorvaApp::exposeToQml()
{
    QQmlContext* context = m_engine.rootContext();
    context->setContextProperty(QStringLiteral("app"), this);
    context->setContextProperty(QStringLiteral("settings"), m_settings.get());
    context->setContextProperty(QStringLiteral("team"), m_team.get());
    context->setContextProperty(QStringLiteral("usage"), m_usage.get());
    context->setContextProperty(QStringLiteral("terminalJumper"), m_terminalJumper.get());
}

// Team rules, Claude Code's usage windows and the terminal jump-back. The team's never rules keep
// the agent hooks installed (AgentPromptSwitch::setTeamNeedsHooks follows hooksNeededChanged), and
// its always rules answer notch prompts (AgentPromptsManager::setAutoAllow with allowReasonFor).
void NorvaApp::startAgentsTeam()
{
    m_team = std::make_unique<TeamPolicy>(*m_settings, m_clock, Paths::approvalsFolder(),
                                          TeamPolicy::defaultUserRulesFile(), TeamPolicy::defaultManagedRulesFile());
    m_team->start();
    m_usage = std::make_unique<UsageMonitor>(m_clock, Paths::approvalsFolder());
    m_usage->start();
    m_windowActivator = makeWindowActivator();
    m_terminalJumper = std::make_unique<TerminalJumper>(*m_windowActivator);
    applyUsageBridge();
    connect(m_settings.get(), &SettingsStore::changed, this, &NorvaApp::applyUsageBridge);
}

// The usage bridge sits in Claude Code's status line only while the person wants the usage shown.
void NorvaApp::applyUsageBridge()
{
    if (m_options.demo)
        return; // the demo never edits the agents' configuration
    const bool wanted = m_settings->flag(UsageMonitor::showUsageKey, false);
    if (m_usageBridgeOn == wanted)
        return;
    m_usageBridgeOn = wanted;
    const UsageBridge bridge;
    if (wanted && !bridge.isInstalled())
        bridge.install();
    else if (!wanted && bridge.isInstalled())
        bridge.uninstall();
}

void NorvaApp::rebuildOverlays()
{
    const QList<DisplayInfo> chosen = pickDisplays(m_settings->displayChoice(), connectedDisplays());
    QString signature;
    for (const DisplayInfo& display : chosen)
        signature += display.id + QLatin1Char(';');
    if (signature == m_displaySignature && !m_overlays.empty())
        return;
    m_displaySignature = signature;
    m_overlays.clear();
    QStringList pageIds;
    for (const Page& page : kPages)
        pageIds << QString::fromLatin1(page.id);
    for (const DisplayInfo& display : chosen) {
        QScreen* screen = nullptr;
        for (QScreen* candidate : QGuiApplication::screens()) {
            if (candidate->name() == display.id)
                screen = candidate;
        }
        auto overlay = std::make_unique<NotchOverlay>(m_engine, screen, display, m_clock, *m_settings);
        if (!overlay->isValid())
            continue;
        overlay->notch()->setPages(pageIds);
        m_overlays.push_back(std::move(overlay));
    }
}

QVariantList NorvaApp::pages() const
{
    QVariantList list;
    for (const Page& page : kPages)
        list.append(describe(page));
    return list;
}

QVariantMap NorvaApp::pageInfo(const QString& id) const
{
    for (const Page& page : kPages) {
        if (id == QLatin1String(page.id))
            return describe(page);
    }
    return describe(kPages[0]);
}

bool NorvaApp::hasQml(const QString& fileName) const
{
    return QFile::exists(QStringLiteral(":/Norva/") + fileName);
}

void NorvaApp::openNotch(const QString& page)
{
    if (m_overlays.empty())
        return;
    NotchViewModel* notch = m_overlays.front()->notch();
    if (page.isEmpty())
        notch->open(false);
    else
        notch->openPage(page);
    if (QQuickWindow* window = m_overlays.front()->window())
        window->requestActivate();
}

void NorvaApp::openSettings()
{
    openNotch(QStringLiteral("settings"));
}

void NorvaApp::quit()
{
    QCoreApplication::quit();
}

// For the start-up benchmark: report the first drawn frame of the first notch and leave.
void NorvaApp::noteFirstFrame()
{
    QQuickWindow* window = m_overlays.front()->window();
    connect(window, &QQuickWindow::frameSwapped, this, [] {
        std::printf("first frame after %lld ms\n", static_cast<long long>(sinceStart().elapsed()));
        std::fflush(stdout);
        QCoreApplication::exit(0);
    }, Qt::SingleShotConnection);
}

} // namespace norva
