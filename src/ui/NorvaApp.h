#pragma once

#include "app/Clock.h"
#include "notch/WindowSystemChoice.h"
#include "shell/Shell.h"
#include "ui/CommandDoor.h"
#include "ui/NotchOverlay.h"
#include "ui/SettingsWindowHost.h"
#include "ui/TrayIcon.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QVariantList>

#include <memory>
#include <optional>
#include <vector>

namespace norva {

// The running application: starts the shell (the settings store, the activity coordinator and
// every registered feature), then the notch windows on the chosen displays and the tray icon, and
// hands the features' objects to QML.
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
    void wireClosedFace(NotchOverlay& overlay);
    void startCommands();
    void followGuide();
    void toggleNotch();

    Options m_options;
    DrawingPath m_drawingPath = DrawingPath::x11;
    Clock& m_clock;
    // Outlives the QML engine and the overlays that show the features.
    std::unique_ptr<Shell> m_shell;
    QQmlApplicationEngine m_engine;
    std::unique_ptr<SettingsWindowHost> m_settingsWindow; // made on first use, gone before the engine
    std::vector<std::unique_ptr<NotchOverlay>> m_overlays;
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<CommandDoor> m_door;
    QString m_displaySignature;
};

} // namespace norva
