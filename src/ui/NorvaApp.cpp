#include "ui/NorvaApp.h"

#include "app/Log.h"
#include "app/Paths.h"
#include "app/Platform.h"
#include "app/QmlInstances.h"
#include "hotkeys/HotKeysModule.h"
#include "notch/ConnectedDisplays.h"
#include "notes/NotesModule.h"
#include "settings/SettingsModule.h"
#include "shell/Features.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QScreen>

#include <cstdio>

namespace norva {
namespace {

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
    if (m_shell)
        m_shell->stop();
}

bool NorvaApp::start()
{
    m_shell = std::make_unique<Shell>(Platform::makePreferencesDatabase(), m_clock,
                                      Shell::Demo{m_options.demo, m_options.demoScene});
    connect(m_shell.get(), &Shell::pageWanted, this, [this](const QString& page, bool quietly) {
        if (quietly)
            openNotchQuietly(page);
        else
            openNotch(page);
    });
    m_drawingPath = WindowSystemChoice::pathTaken(QGuiApplication::platformName(), m_options.session,
                                                  m_options.session.notchLayerOffered);
    if (const QString limits = WindowSystemChoice::limitsLogLine(m_drawingPath); !limits.isEmpty())
        logLine(limits);
    addFeatures(*m_shell);
    m_shell->start();

    exposeToQml();
    rebuildOverlays();
    if (m_overlays.empty()) {
        logLine(QStringLiteral("Norva: no notch window could be shown (no display is connected)"));
        return false;
    }
    SettingsStore& settings = m_shell->settings();
    connect(&settings, &SettingsStore::changed, this, &NorvaApp::rebuildOverlays);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &NorvaApp::rebuildOverlays);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &NorvaApp::rebuildOverlays);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &NorvaApp::rebuildOverlays);

    m_tray = std::make_unique<TrayIcon>(settings);
    connect(m_tray.get(), &TrayIcon::openRequested, this, [this] { openNotch(); });
    connect(m_tray.get(), &TrayIcon::settingsRequested, this, &NorvaApp::openSettings);
    connect(m_tray.get(), &TrayIcon::quitRequested, this, &NorvaApp::quit);

    if (m_options.exitAfterFirstFrame)
        noteFirstFrame();
    startCommands();
    followGuide();
    if (SettingsModule* settingsModule = m_shell->find<SettingsModule>();
        settingsModule && m_options.introStep)
        settingsModule->guide().startTour(*m_options.introStep);
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
    if (HotKeysModule* hotKeys = m_shell->find<HotKeysModule>()) {
        connect(&hotKeys->hotKeys(), &HotKeys::pressed, this, [this](const QString& name) {
            if (name == HotKeys::jotName)
                openJot();
            else
                toggleNotch();
        });
    }
    if (!m_options.demo)
        m_door->listen();
    if (m_options.jot)
        openJot();
    else if (m_options.open)
        openNotch(m_options.pageToOpen);
}

// The first-run guide's tour (asked for in Settings) opens the notch and holds it open.
void NorvaApp::followGuide()
{
    SettingsModule* settingsModule = m_shell->find<SettingsModule>();
    if (!settingsModule)
        return;
    connect(&settingsModule->guide(), &FirstRunGuide::wantsNotchChanged, this, [this](bool wanted) {
        if (m_overlays.empty())
            return;
        NotchViewModel* notch = m_overlays.front()->notch();
        if (wanted)
            openNotch();
        notch->setPinnedOpen(wanted);
    });
}

void NorvaApp::exposeToQml()
{
    m_front = std::make_unique<AppFront>(m_shell->pages(), m_options.demo,
                                         WindowSystemChoice::limitsText(m_drawingPath));
    connect(m_front.get(), &AppFront::settingsWanted, this, &NorvaApp::openSettings);
    connect(m_front.get(), &AppFront::notchWanted, this, [this](const QString& page) { openNotch(page); });
    connect(m_front.get(), &AppFront::jotWanted, this, &NorvaApp::openJot);
    connect(m_front.get(), &AppFront::quitWanted, this, &NorvaApp::quit);
    QmlInstances::registerTypes();
    QmlInstances::offer(m_front.get());
    for (QObject* object : m_shell->qmlObjects())
        QmlInstances::offer(object);
}

// The closed face follows its notch: the pointer over the notch pauses the holds, the notch's
// detail timing expands the shown activity's detail, and an activity with a detail arms it.
void NorvaApp::wireClosedFace(NotchOverlay& overlay)
{
    NotchViewModel* notch = overlay.notch();
    ClosedFaceModel* face = &m_shell->closedFace();
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

void NorvaApp::rebuildOverlays()
{
    SettingsStore& settings = m_shell->settings();
    const QList<ConnectedDisplay> chosen = notchDisplays(settings.displayChoice());
    QString signature;
    for (const ConnectedDisplay& each : chosen)
        signature += each.display.id + QLatin1Char(';');
    if (signature == m_displaySignature && !m_overlays.empty())
        return;
    m_displaySignature = signature;
    m_overlays.clear();
    QStringList names;
    for (const ConnectedDisplay& each : chosen)
        names << each.display.name;
    logLine(names.isEmpty()
                ? QStringLiteral("Norva: no display is connected; the notch waits for one")
                : QStringLiteral("Norva: the notch shows on ") + names.join(QStringLiteral(", ")));
    QStringList pageIds;
    for (const FeaturePage& page : m_shell->pages())
        pageIds << page.id;
    for (const ConnectedDisplay& each : chosen) {
        auto overlay = std::make_unique<NotchOverlay>(m_engine, each.screen, each.display, m_clock, settings,
                                                      m_drawingPath);
        if (!overlay->isValid())
            continue;
        overlay->notch()->setPages(pageIds);
        wireClosedFace(*overlay);
        m_overlays.push_back(std::move(overlay));
    }
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
    if (NotesModule* notes = m_shell->find<NotesModule>())
        notes->openJot();
    openNotch(QStringLiteral("notes"));
}

void NorvaApp::openSettings()
{
    if (!m_settingsWindow)
        m_settingsWindow = std::make_unique<SettingsWindowHost>(m_engine);
    if (!m_settingsWindow->open())
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
