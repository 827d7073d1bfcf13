#pragma once

#include "activities/ClosedFaceModel.h"
#include "activities/LiveActivityCoordinator.h"
#include "app/Clock.h"
#include "app/PreferencesDatabase.h"
#include "app/SettingsStore.h"
#include "shell/DemoScene.h"
#include "shell/FeatureModule.h"

#include <QObject>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace norva {

// What every feature stands on, made in the order the features need it: the settings store first
// (every part reads its preferences through it), then the live-activity coordinator and the closed
// face, then the registered features, which start in the order they were added.
class Shell : public QObject {
    Q_OBJECT
public:
    struct Demo {
        bool on = false; // sample data only, nothing of the person's own is read or changed
        QString scene;   // which samples: "all" (empty), "one", "two", "three" or "prompts"
    };

    Shell(std::unique_ptr<PreferencesDatabase> preferences, Clock& clock, Demo demo,
          QObject* parent = nullptr);
    ~Shell() override;

    // Makes one feature; its constructor gets this shell and then `arguments`.
    template <typename Module, typename... Arguments> Module& add(Arguments&&... arguments)
    {
        auto module = std::make_unique<Module>(*this, std::forward<Arguments>(arguments)...);
        Module& made = *module;
        m_modules.push_back(std::move(module));
        return made;
    }
    // A feature added earlier, for a feature that builds on it; null when it is not registered.
    template <typename Module> Module* find() const
    {
        for (const auto& module : m_modules) {
            if (auto* found = qobject_cast<Module*>(module.get()))
                return found;
        }
        return nullptr;
    }

    // Starts the features in the order they were added; stop() ends them in reverse.
    void start();
    void stop();

    Clock& clock() const { return m_clock; }
    SettingsStore& settings() const { return *m_settings; }
    LiveActivityCoordinator& activities() const { return *m_activities; }
    ClosedFaceModel& closedFace() const { return *m_closedFace; }
    const Demo& demo() const { return m_demo; }
    // Whether the demo runs and its scene puts this sample on the closed notch.
    bool demoShows(DemoScene::Sample sample) const { return m_demo.on && m_demoScene.shows(sample); }
    // Whether no Norva ran for this person before this one (the demo counts as none).
    bool firstLaunch() const { return m_firstLaunch; }
    // Norva's data folder; in the demo a throw-away folder of its own, so nothing of the person's
    // is read or changed.
    QString dataFolder() const;

    // The open panel's pages in pager order.
    QList<FeaturePage> pages() const;
    // The objects QML reaches as singletons of their types (QmlInstances): the shell's own and every
    // feature's.
    QList<QObject*> qmlObjects() const;

    // Asks for the notch to open on a page, taking the keyboard or leaving it where it is.
    void openPage(const QString& page) { emit pageWanted(page, false); }
    void openPageQuietly(const QString& page) { emit pageWanted(page, true); }

signals:
    void pageWanted(const QString& page, bool quietly);

private:
    Clock& m_clock;
    Demo m_demo;
    DemoScene m_demoScene = DemoScene::all();
    mutable std::unique_ptr<QTemporaryDir> m_demoData;
    std::unique_ptr<PreferencesDatabase> m_preferences;
    std::unique_ptr<SettingsStore> m_settings;
    // The coordinator exists before any producer publishes to it.
    std::unique_ptr<LiveActivityCoordinator> m_activities;
    std::unique_ptr<ClosedFaceModel> m_closedFace;
    std::vector<std::unique_ptr<FeatureModule>> m_modules;
    bool m_started = false;
    bool m_firstLaunch = false;
};

} // namespace norva
