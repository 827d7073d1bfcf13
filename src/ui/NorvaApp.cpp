#include "ui/NorvaApp.h"

#include "agents/CodingAgent.h"
#include "agents/jump/JumpPlatform.h"
#include "agents/prompts/AgentsDemo.h"
#include "agents/usage/UsageBridge.h"
#include "app/Log.h"
#include "app/Paths.h"
#include "app/Platform.h"
#include "app/SettingsKeys.h"
#include "calendar/CalendarPageModel.h"
#include "clipboard/ClipboardPlatform.h"
#include "hotkeys/HotKeyPlatform.h"
#include "media/MediaPlatform.h"
#include "notch/DisplayPicker.h"
#include "shelf/ShelfPlatform.h"
#include "storage/VdirRoot.h"

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
    {"todos", "To-dos", "TodosPage.qml", "Your to-dos will be here."},
    {"notes", "Notes", "NotesPage.qml", "Your quick notes will be here."},
    {"timer", "Timer", "TimerPage.qml", "A timer and focus rounds will be here."},
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
    // A clean quit takes the heartbeat away, so waiting hooks hand back at once rather than in 30 s.
    if (m_agentPrompts)
        m_agentPrompts->shutdown();
    if (m_music)
        m_music->stop();
    if (m_calendar)
        m_calendar->stop(); // a Norva-only meeting saved a moment ago is written now
}

bool NorvaApp::start()
{
    // The settings store exists before anything else: every part reads its preferences through it.
    m_preferences = Platform::makePreferencesDatabase();
    m_settings = std::make_unique<SettingsStore>(*m_preferences);
    const bool firstLaunch = !m_settings->flag(SettingsKeys::hasLaunchedBefore, false);
    // Written before the launch is told, so whoever reads the line finds the flag saved. The demo
    // leaves the person's preferences as they are.
    if (firstLaunch && !m_options.demo)
        m_settings->write(true, SettingsKeys::hasLaunchedBefore);
    logLine(QStringLiteral("Norva: launched (version ") + QCoreApplication::applicationVersion() +
            (firstLaunch ? QStringLiteral(", first launch)") : QStringLiteral(")")));
    m_drawingPath = WindowSystemChoice::pathTaken(QGuiApplication::platformName(), m_options.session,
                                                  m_options.session.notchLayerOffered);
    if (const QString limits = WindowSystemChoice::limitsLogLine(m_drawingPath); !limits.isEmpty())
        logLine(limits);

    // Feature managers are made here, after the settings store and before the notch windows, and
    // handed to QML in exposeToQml().
    m_activities = std::make_unique<LiveActivityCoordinator>(m_clock);
    m_activities->follow(*m_settings);
    m_closedFace = std::make_unique<ClosedFaceModel>(*m_activities);
    m_closedFace->follow(*m_settings);
    connect(m_closedFace.get(), &ClosedFaceModel::openRequested, this, &NorvaApp::openNotch);
    connect(m_closedFace.get(), &ClosedFaceModel::urgentPageWanted, this, &NorvaApp::openNotchQuietly);
    startAgents();
    startClipboardAndShelf();
    startMusic();
    startCalendar();
    startTodos();
    startLiveActivityProducers();
    startAgentsTeam();
    startNotesAndTimer();
    m_weather = std::make_unique<WeatherFeature>(m_clock, *m_settings);
    m_weather->start();
    startSettings(firstLaunch);
    m_hotKeyGrab = Platform::makeHotKeyGrab();
    m_hotKeys = std::make_unique<HotKeys>(*m_settings, *m_hotKeyGrab);

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

    if (m_options.demo) {
        const auto scene = ActivityDemo::sceneFromWord(m_options.demoScene);
        if (!scene)
            logLine(QStringLiteral("Norva activities: the demo scene ") + m_options.demoScene +
                    QStringLiteral(" is unknown (showing all the samples)"));
        m_demo =
            std::make_unique<ActivityDemo>(*m_activities, m_clock, scene.value_or(ActivityDemo::Scene::all));
        m_demo->start();
    }
    if (m_options.exitAfterFirstFrame)
        noteFirstFrame();
    startCommands();
    followGuide();
    if (m_options.introStep)
        m_settingsFeature->guide().startTour(*m_options.introStep);
    if (m_options.settings)
        openSettings();
    if (!m_options.openPage.isEmpty()) {
        openNotch(m_options.openPage);
        m_overlays.front()->notch()->setPinnedOpen(true);
    }
    return true;
}

// What opens the notch and the jot sheet from outside: the hot keys, and the door through which
// a second "norva --jot" or "norva --open [page]" asks. The demo takes neither, so it never stands
// in the way of the person's own Norva.
void NorvaApp::startCommands()
{
    m_door = std::make_unique<CommandDoor>(Paths::stateFolder() + QStringLiteral("/norva.door"));
    connect(m_door.get(), &CommandDoor::jotRequested, this, &NorvaApp::openJot);
    connect(m_door.get(), &CommandDoor::openRequested, this, &NorvaApp::openNotch);
    connect(m_door.get(), &CommandDoor::settingsRequested, this, &NorvaApp::openSettings);
    connect(m_hotKeys.get(), &HotKeys::pressed, this, [this](const QString& name) {
        if (name == HotKeys::jotName)
            openJot();
        else
            toggleNotch();
    });
    if (!m_options.demo) {
        m_door->listen();
        m_hotKeys->start();
    }
    if (m_options.jot)
        openJot();
    else if (m_options.open)
        openNotch(m_options.pageToOpen);
}

void NorvaApp::exposeToQml()
{
    QQmlContext* context = m_engine.rootContext();
    context->setContextProperty(QStringLiteral("app"), this);
    context->setContextProperty(QStringLiteral("settings"), m_settings.get());
    context->setContextProperty(QStringLiteral("agentsPage"), m_agentsPage.get());
    context->setContextProperty(QStringLiteral("agentHooks"), m_hookPresence.get());
    context->setContextProperty(QStringLiteral("clipboardPage"), m_clipboardPage.get());
    context->setContextProperty(QStringLiteral("shelfDesk"), m_shelfDesk.get());
    context->setContextProperty(QStringLiteral("music"), m_music.get());
    context->setContextProperty(QStringLiteral("calendarPage"), &m_calendar->page());
    context->setContextProperty(QStringLiteral("todos"), m_todos->page());
    context->setContextProperty(QStringLiteral("activities"), m_activities.get());
    context->setContextProperty(QStringLiteral("closedFace"), m_closedFace.get());
    context->setContextProperty(QStringLiteral("team"), m_team.get());
    context->setContextProperty(QStringLiteral("usage"), m_usage.get());
    context->setContextProperty(QStringLiteral("terminalJumper"), m_terminalJumper.get());
    context->setContextProperty(QStringLiteral("notesDesk"), &m_notes->desk());
    context->setContextProperty(QStringLiteral("notesMirror"), &m_notes->mirror());
    context->setContextProperty(QStringLiteral("timers"), &m_timers->timer());
    context->setContextProperty(QStringLiteral("jotSheet"), &m_notes->jot());
    for (const auto& [name, object] : m_settingsFeature->qmlObjects())
        context->setContextProperty(name, object);
    context->setContextProperty(QStringLiteral("hotKeys"), m_hotKeys.get());
    for (const auto& [name, object] : m_weather->qmlObjects())
        context->setContextProperty(name, object);
}

// Team rules, Claude Code's usage windows and the terminal jump-back. The team's never rules keep
// the agent hooks installed (AgentPromptSwitch::setTeamNeedsHooks follows hooksNeededChanged), and
// its rules answer notch prompts before they show (AgentPromptsManager::setTeamAnswer with answerFor).
void NorvaApp::startAgentsTeam()
{
    m_team = std::make_unique<TeamPolicy>(*m_settings, m_clock, m_approvalsFolder,
                                          TeamPolicy::defaultUserRulesFile(),
                                          TeamPolicy::defaultManagedRulesFile());
    m_team->start();
    if (!m_options.demo) { // the demo never edits the agents' configuration
        connect(m_team.get(), &TeamPolicy::hooksNeededChanged, m_promptSwitch.get(),
                &AgentPromptSwitch::setTeamNeedsHooks);
        m_promptSwitch->setTeamNeedsHooks(m_team->hasNeverRules());
    }
    m_agentPrompts->setTeamAnswer([team = m_team.get()](const PromptCard& card) {
        return team->answerFor(CodingAgents::word(card.agent), card.tool, card.input, card.isQuestion);
    });
    m_usage = std::make_unique<UsageMonitor>(m_clock, m_approvalsFolder);
    m_usage->start();
    m_windowActivator = Platform::makeWindowActivator();
    m_terminalJumper = std::make_unique<TerminalJumper>(*m_windowActivator);
    m_terminalJumper->setApprovalsFolder(m_approvalsFolder);
    connect(m_agentsPage.get(), &AgentsPageModel::terminalRequested, m_terminalJumper.get(),
            &TerminalJumper::jumpToSession);
    applyUsageBridge();
    connect(m_settings.get(), &SettingsStore::changed, this, &NorvaApp::applyUsageBridge);
}

// The usage bridge sits in Claude Code's status line only while the person wants the usage shown.
void NorvaApp::applyUsageBridge()
{
    if (m_options.demo)
        return; // the demo never edits the agents' configuration
    const bool wanted = m_settings->showClaudeUsage();
    if (m_usageBridgeOn == wanted)
        return;
    m_usageBridgeOn = wanted;
    const UsageBridge bridge;
    if (wanted && !bridge.isInstalled())
        bridge.install();
    else if (!wanted && bridge.isInstalled())
        bridge.uninstall();
}

// Quick notes and the timer. The demo reads none of the person's notes and keeps its timer in
// its own folder.
void NorvaApp::startNotesAndTimer()
{
    const QString data = m_options.demo ? m_demoFolder->path() : Paths::dataFolder();
    m_notes = std::make_unique<NotesFeature>(m_clock, *m_settings, data, !m_options.demo);
    m_notes->jot().setTodos(&m_todos->store());
    m_timers = std::make_unique<TimersFeature>(m_clock, *m_activities, *m_settings, data, !m_options.demo);
}

// The features' live activities on the closed notch: waiting agent prompts, the shelf, the music ears.
void NorvaApp::startLiveActivityProducers()
{
    m_agentActivities = std::make_unique<AgentPromptActivities>(
        *m_agentPrompts, *m_activities, *m_settings, [this] { openNotch(AgentPromptActivities::pageId); });
    m_shelfActivity = std::make_unique<ShelfActivityPublisher>(
        *m_shelf, *m_activities, [this] { openNotch(QStringLiteral("shelf")); });
    m_volumeActivity = std::make_unique<VolumeActivityPublisher>(*m_music, *m_activities, *m_settings);
    const auto followMusic = [this] { m_closedFace->setMusicPlaying(m_music->hasActiveSession()); };
    connect(m_music.get(), &MusicManager::activeSessionChanged, m_closedFace.get(), followMusic);
    followMusic();
}

// The closed face follows its notch: the pointer over the notch pauses the holds, the notch's
// detail timing expands the shown activity's detail, and an activity with a detail arms it.
void NorvaApp::wireClosedFace(NotchOverlay& overlay)
{
    NotchViewModel* notch = overlay.notch();
    ClosedFaceModel* face = m_closedFace.get();
    connect(notch, &NotchViewModel::isMouseInsideChanged, face,
            [face, notch] { face->setPointerInside(notch->isMouseInside()); });
    connect(notch, &NotchViewModel::activityDetailOpenChanged, face,
            [face, notch] { face->setDetailOpen(notch->activityDetailOpen()); });
    const auto overDetail = [face, notch] {
        notch->setPointerOverDetailActivity(face->active() && face->hasDetail());
    };
    connect(face, &ClosedFaceModel::changed, notch, overDetail);
    overDetail();
}

// The coding agents' prompts: the switch follows "answerPromptsOnNotch", the manager runs the exchange.
void NorvaApp::startAgents()
{
    // The demo's sample prompts live in a folder of their own, so no real hook talks to the demo.
    if (m_options.demo)
        m_demoFolder = std::make_unique<QTemporaryDir>();
    m_approvalsFolder = m_options.demo ? m_demoFolder->path() : Paths::approvalsFolder();
    const QString& approvals = m_approvalsFolder;
    m_promptAlerts = std::make_unique<DesktopPromptAlerts>();
    m_agentPrompts = std::make_unique<AgentPromptsManager>(m_clock, *m_settings, *m_promptAlerts, approvals);
    m_agentsPage = std::make_unique<AgentsPageModel>(*m_agentPrompts);
    m_hookPresence = std::make_unique<HookPresence>();
    m_hookPresence->live();
    m_promptSwitch = std::make_unique<AgentPromptSwitch>(*m_settings);
    if (m_options.demo)
        AgentsDemo::placeSamplePrompts(approvals, m_clock.now());
    else
        m_promptSwitch->follow(); // the demo never edits the agents' configuration
    m_agentPrompts->start();
}

// The clipboard history and the shelf. In the demo nothing of the person's own is read: neither
// the stored lists nor the clipboard nor the screenshots folder.
void NorvaApp::startClipboardAndShelf()
{
    const QString data = Paths::dataFolder();
    m_clipboardSource = Platform::makeClipboardSource();
    m_clipboard = std::make_unique<ClipboardManager>(*m_clipboardSource, *m_settings, m_clock, data);
    m_clipboardPage = std::make_unique<ClipboardPageModel>(*m_clipboard);
    m_shelf = std::make_unique<ShelfManager>(*m_settings, m_clock, data);
    m_shelf->setDroppedTextSink([this](const QString& text) { return m_clipboard->recordDropped(text); });
    m_shelfDesk = std::make_unique<ShelfDesk>(*m_shelf, *m_clipboardSource);
    if (m_options.demo)
        return;
    m_screenshots = Platform::makeScreenshotSource(m_clock);
    m_shelf->setScreenshotSource(m_screenshots.get());
    m_clipboard->start();
    m_shelf->start();
}

// Now playing and its lyrics. The demo shows nothing of the person's own.
void NorvaApp::startMusic()
{
    m_lyrics = std::make_unique<LyricsManager>(m_clock);
    m_lyrics->follow(*m_settings);
    m_lyrics->watchReachability();
    m_music = std::make_unique<MusicManager>(m_clock, m_settings.get(), MusicManager::systemBackends(m_clock),
                                             m_lyrics.get(), Platform::makeOutputVolume(m_clock));
    if (m_options.demo)
        return;
    m_music->start();
    m_music->startVolumeMonitoring();
}

// Meetings from the person's calendars folder (the one khal and todoman use) and Norva's own. The
// demo reads none of the person's own, so its page stays empty.
void NorvaApp::startCalendar()
{
    m_calendar = std::make_unique<CalendarFeature>(
        *m_settings, m_clock, *m_activities,
        CalendarFeature::Setup{VdirRoot::locate({}), Paths::dataFolder(),
                               [this] { openNotch(QStringLiteral("calendar")); }});
    if (!m_options.demo)
        m_calendar->start();
}

// The to-dos over the person's calendar folders, with their due alerts. The demo shows stated
// to-dos and never writes the person's own.
void NorvaApp::startTodos()
{
    TodosFeature::Desktop desktop;
    desktop.notify = [alerts = m_promptAlerts.get()](const QString& title, const QString& body) {
        alerts->notify(title, body);
    };
    desktop.notchCovered = [] {
        const QScreen* screen = QGuiApplication::primaryScreen();
        return screen && Platform::frontWindowIsFullscreenOn(screen->geometry());
    };
    m_todos = std::make_unique<TodosFeature>(*m_settings, *m_activities, m_clock, m_options.demo,
                                             std::move(desktop));
    m_todos->start();
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
        auto overlay =
            std::make_unique<NotchOverlay>(m_engine, screen, display, m_clock, *m_settings, m_drawingPath);
        if (!overlay->isValid())
            continue;
        overlay->notch()->setPages(pageIds);
        wireClosedFace(*overlay);
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
    openNotchQuietly(page);
    if (QQuickWindow* window = m_overlays.empty() ? nullptr : m_overlays.front()->window())
        window->requestActivate();
}

void NorvaApp::openNotchQuietly(const QString& page)
{
    if (m_overlays.empty())
        return;
    NotchViewModel* notch = m_overlays.front()->notch();
    if (page.isEmpty())
        notch->open(false);
    else
        notch->openPage(page);
}

// The notch's hot key opens it, and closes it again when it is open, as Escape would.
void NorvaApp::toggleNotch()
{
    if (m_overlays.empty())
        return;
    NotchViewModel* notch = m_overlays.front()->notch();
    if (notch->state() == NotchViewModel::State::open)
        notch->escape();
    else
        openNotch();
}

void NorvaApp::openJot()
{
    m_notes->jot().open();
    openNotch(QStringLiteral("notes"));
}

void NorvaApp::openSettings()
{
    if (!m_settingsWindow)
        m_settingsWindow = std::make_unique<SettingsWindowHost>(m_engine);
    if (!m_settingsWindow->open())
        openNotch(QStringLiteral("settings"));
}

// The settings window's model and the first-run guide; the guide's introduction shows the first
// time the notch opens, and the tour (asked for in Settings) opens the notch and holds it.
void NorvaApp::startSettings(bool firstLaunch)
{
    m_settingsFeature = std::make_unique<SettingsFeature>(*m_settings, firstLaunch, m_options.demo);
}

void NorvaApp::followGuide()
{
    connect(&m_settingsFeature->guide(), &FirstRunGuide::wantsNotchChanged, this, [this](bool wanted) {
        if (m_overlays.empty())
            return;
        NotchViewModel* notch = m_overlays.front()->notch();
        if (wanted)
            openNotch();
        notch->setPinnedOpen(wanted);
    });
}

void NorvaApp::quit()
{
    QCoreApplication::quit();
}

// For the start-up benchmark: report the first drawn frame of the first notch and leave.
void NorvaApp::noteFirstFrame()
{
    QQuickWindow* window = m_overlays.front()->window();
    connect(
        window, &QQuickWindow::frameSwapped, this,
        [] {
            std::printf("first frame after %lld ms\n", static_cast<long long>(sinceStart().elapsed()));
            std::fflush(stdout);
            QCoreApplication::exit(0);
        },
        Qt::SingleShotConnection);
}

} // namespace norva
