#pragma once

#include "app/Clock.h"
#include "notch/WindowSystemChoice.h"
#include "shell/AppFront.h"
#include "shell/Shell.h"
#include "ui/CommandDoor.h"
#include "ui/NotchOverlay.h"
#include "ui/SettingsWindowHost.h"
#include "ui/TrayIcon.h"

#include <QObject>
#include <QQmlApplicationEngine>

#include <memory>
#include <optional>
#include <vector>

namespace norva {

// The running application: starts the shell (the settings store, the activity coordinator and
// every registered feature), then the notch windows on the chosen displays and the tray icon, and
// hands the features' objects to QML as singletons of their types.
class NorvaApp : public QObject {
    Q_OBJECT

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
    // The settings window (the notch's Settings page where no window can be made).
    void openSettings();
    void openNotch(const QString& page = {});
    // Opens the notch on a page that an activity wants, without taking the keyboard from the
    // program the person is typing in.
    void openNotchQuietly(const QString& page);
    void quit();
    // Opens the notch on the notes with the jot sheet over it (the notch's button, norva --jot).
    void openJot();

private:
    void exposeToQml();
    void rebuildOverlays();
    void noteFirstFrame();
    void wireClosedFace(NotchOverlay& overlay);
    void startCommands();
    void followGuide();
    void toggleNotch();

    Options m_options;
    DrawingPath m_drawingPath = DrawingPath::x11;
    Clock& m_clock;
    // Outlives the QML engine and the overlays that show the features.
    std::unique_ptr<Shell> m_shell;
    std::unique_ptr<AppFront> m_front; // what the QML asks of the application as a whole
    QQmlApplicationEngine m_engine;
    std::unique_ptr<SettingsWindowHost> m_settingsWindow; // made on first use, gone before the engine
    std::vector<std::unique_ptr<NotchOverlay>> m_overlays;
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<CommandDoor> m_door;
    QString m_displaySignature;
};

} // namespace norva
