#pragma once

#include "activities/ActivityDemo.h"
#include "activities/ClosedFaceModel.h"
#include "activities/LiveActivityCoordinator.h"
#include "agents/hooks/AgentPromptSwitch.h"
#include "agents/hooks/HookPresence.h"
#include "agents/jump/TerminalJumper.h"
#include "agents/jump/WindowActivator.h"
#include "agents/prompts/AgentPromptActivities.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/DesktopPromptAlerts.h"
#include "agents/team/TeamPolicy.h"
#include "agents/usage/UsageMonitor.h"
#include "app/Clock.h"
#include "app/PreferencesDatabase.h"
#include "app/SettingsStore.h"
#include "calendar/CalendarFeature.h"
#include "clipboard/ClipboardManager.h"
#include "clipboard/ClipboardPageModel.h"
#include "clipboard/ClipboardSource.h"
#include "hotkeys/HotKeyGrab.h"
#include "hotkeys/HotKeys.h"
#include "media/LyricsManager.h"
#include "media/MusicManager.h"
#include "media/VolumeActivityPublisher.h"
#include "notch/WindowSystemChoice.h"
#include "notes/NotesFeature.h"
#include "reminders/TodosFeature.h"
#include "settings/SettingsFeature.h"
#include "shelf/ScreenshotSource.h"
#include "shelf/ShelfActivityPublisher.h"
#include "shelf/ShelfDesk.h"
#include "shelf/ShelfManager.h"
#include "timers/TimersFeature.h"
#include "ui/CommandDoor.h"
#include "ui/NotchOverlay.h"
#include "ui/SettingsWindowHost.h"
#include "ui/TrayIcon.h"
#include "weather/WeatherFeature.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QTemporaryDir>
#include <QVariantList>

#include <memory>
#include <optional>
#include <vector>

namespace norva {

// The running application: creates the settings store first, then every manager, then the notch
// windows on the chosen displays and the tray icon, and hands the managers to QML.
class NorvaApp : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList pages READ pages CONSTANT)
    Q_PROPERTY(bool demo READ demo CONSTANT)
    Q_PROPERTY(QString desktopLimits READ desktopLimits CONSTANT)

public:
    struct Options {
        bool demo = false;                // sample activities, nothing of the person's own data
        bool exitAfterFirstFrame = false; // for the start-up benchmark
        QString openPage;                 // start with the notch open on this page
        QString demoScene;                // which samples: "all" (empty), "one", "two" or "pinned"
        SessionEnvironment session;       // as read before Qt started
        bool jot = false;                 // start with the jot sheet open
        bool settings = false;            // start with the settings window open
        std::optional<int> introStep;     // start with the notch open on this step of the tour
        bool open = false;                // start with the notch open (norva --open [page])
        QString pageToOpen;               // the page --open named, if any
    };

    explicit NorvaApp(Options options, QObject* parent = nullptr);
    ~NorvaApp() override;

    bool start();
    QVariantList pages() const;
    bool demo() const { return m_options.demo; }
    // What does not work on the way this desktop lets Norva draw (empty where everything works).
    QString desktopLimits() const { return WindowSystemChoice::limitsText(m_drawingPath); }
    // Whether a QML file ships inside Norva (a page that is not built yet shows its empty text).
    Q_INVOKABLE bool hasQml(const QString& fileName) const;
    // One page's id, title, QML file and empty text; the first page for an unknown id.
    Q_INVOKABLE QVariantMap pageInfo(const QString& id) const;
    // The settings window (the notch's Settings page where no window can be made).
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void openNotch(const QString& page = {});
    // Opens the notch on a page that an activity wants, without taking the keyboard from the
    // program the person is typing in.
    void openNotchQuietly(const QString& page);
    Q_INVOKABLE void quit();
    // Opens the notch on the notes with the jot sheet over it (the notch's button, norva --jot).
    Q_INVOKABLE void openJot();

private:
    void exposeToQml();
    void rebuildOverlays();
    void noteFirstFrame();
    void startAgents();
    void startClipboardAndShelf();
    void startMusic();
    void startCalendar();
    void startTodos();
    void startLiveActivityProducers();
    void wireClosedFace(NotchOverlay& overlay);
    void startAgentsTeam();
    void startNotesAndTimer();
    void applyUsageBridge();
    void startSettings(bool firstLaunch);
    void followGuide();
    void startCommands();
    void toggleNotch();

    Options m_options;
    DrawingPath m_drawingPath = DrawingPath::x11;
    std::unique_ptr<QTemporaryDir> m_demoFolder; // the demo's own approvals folder
    QString m_approvalsFolder; // the one the agents' parts share: the demo's, or the real one
    Clock& m_clock;
    std::unique_ptr<PreferencesDatabase> m_preferences;
    std::unique_ptr<SettingsStore> m_settings;
    // The coordinator exists before any producer publishes to it, and outlives the overlays.
    std::unique_ptr<LiveActivityCoordinator> m_activities;
    std::unique_ptr<ClosedFaceModel> m_closedFace;
    std::unique_ptr<ActivityDemo> m_demo;
    // Coding agents: the prompt switch follows "answerPromptsOnNotch"; the manager runs the exchange.
    std::unique_ptr<AgentPromptSwitch> m_promptSwitch;
    std::unique_ptr<DesktopPromptAlerts> m_promptAlerts;
    std::unique_ptr<AgentPromptsManager> m_agentPrompts;
    std::unique_ptr<AgentsPageModel> m_agentsPage;
    std::unique_ptr<HookPresence> m_hookPresence;
    // Feature managers live longer than the QML engine that shows them.
    std::unique_ptr<ClipboardSource> m_clipboardSource;
    std::unique_ptr<ClipboardManager> m_clipboard;
    std::unique_ptr<ClipboardPageModel> m_clipboardPage;
    std::unique_ptr<ScreenshotSource> m_screenshots;
    std::unique_ptr<ShelfManager> m_shelf;
    std::unique_ptr<ShelfDesk> m_shelfDesk;
    std::unique_ptr<LyricsManager> m_lyrics;
    std::unique_ptr<MusicManager> m_music;
    // Meetings: the calendars folder, Norva-only meetings, the calendar page and the notch's meeting.
    std::unique_ptr<CalendarFeature> m_calendar;
    std::unique_ptr<TodosFeature> m_todos;
    // Team rules, Claude Code's usage windows and the terminal jump-back.
    std::unique_ptr<TeamPolicy> m_team;
    std::unique_ptr<UsageMonitor> m_usage;
    std::unique_ptr<WindowActivator> m_windowActivator;
    std::unique_ptr<TerminalJumper> m_terminalJumper;
    std::optional<bool> m_usageBridgeOn;
    // Quick notes with their mirror, and the timer with focus rounds.
    std::unique_ptr<NotesFeature> m_notes;
    std::unique_ptr<TimersFeature> m_timers;
    std::unique_ptr<CommandDoor> m_door;
    // The hot keys for the notch and the jot sheet, grabbed for the whole desktop.
    std::unique_ptr<HotKeyGrab> m_hotKeyGrab;
    std::unique_ptr<HotKeys> m_hotKeys;
    // Producers that publish the features' live activities to the closed notch.
    std::unique_ptr<AgentPromptActivities> m_agentActivities;
    std::unique_ptr<ShelfActivityPublisher> m_shelfActivity;
    std::unique_ptr<VolumeActivityPublisher> m_volumeActivity;
    std::unique_ptr<WeatherFeature> m_weather;
    std::unique_ptr<SettingsFeature> m_settingsFeature; // outlives the QML that binds to it
    QQmlApplicationEngine m_engine;
    std::unique_ptr<SettingsWindowHost> m_settingsWindow; // made on first use, gone before the engine
    std::vector<std::unique_ptr<NotchOverlay>> m_overlays;
    std::unique_ptr<TrayIcon> m_tray;
    QString m_displaySignature;
};

} // namespace norva
