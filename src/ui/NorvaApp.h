#pragma once

#include "agents/TeamPolicy.h"
#include "agents/TerminalJumper.h"
#include "agents/UsageMonitor.h"
#include "agents/WindowActivator.h"
#include "app/Clock.h"
#include "app/PreferencesDatabase.h"
#include "app/SettingsStore.h"
#include "ui/NotchOverlay.h"
#include "ui/TrayIcon.h"

#include <QObject>
#include <QQmlApplicationEngine>
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

public:
    struct Options {
        bool demo = false;              // sample activities, nothing of the person's own data
        bool exitAfterFirstFrame = false; // for the start-up benchmark
        QString openPage;                 // start with the notch open on this page
    };

    explicit NorvaApp(Options options, QObject* parent = nullptr);
    ~NorvaApp() override;

    bool start();
    QVariantList pages() const;
    bool demo() const { return m_options.demo; }
    // Whether a QML file ships inside Norva (a page that is not built yet shows its empty text).
    Q_INVOKABLE bool hasQml(const QString& fileName) const;
    // One page's id, title, QML file and empty text; the first page for an unknown id.
    Q_INVOKABLE QVariantMap pageInfo(const QString& id) const;
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void openNotch(const QString& page = {});
    Q_INVOKABLE void quit();

private:
    void exposeToQml();
    void rebuildOverlays();
    void noteFirstFrame();
    void startAgentsTeam();
    void applyUsageBridge();

    Options m_options;
    Clock& m_clock;
    std::unique_ptr<PreferencesDatabase> m_preferences;
    std::unique_ptr<SettingsStore> m_settings;
    QQmlApplicationEngine m_engine;
    std::vector<std::unique_ptr<NotchOverlay>> m_overlays;
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<TeamPolicy> m_team;
    std::unique_ptr<UsageMonitor> m_usage;
    std::unique_ptr<WindowActivator> m_windowActivator;
    std::unique_ptr<TerminalJumper> m_terminalJumper;
    std::optional<bool> m_usageBridgeOn;
    QString m_displaySignature;
};

} // namespace norva
