#pragma once

#include "app/Clock.h"
#include "reminders/DueAlertMonitor.h"
#include "reminders/RemindersStore.h"
#include "reminders/TodosPageModel.h"

#include <QObject>

#include <functional>
#include <memory>

namespace norva {

class LiveActivityCoordinator;
class SettingsStore;

// The to-dos in one piece for the app: the store over the calendar folders (or the demo's stated
// to-dos), the due alerts on the closed notch, and the page and tile's model.
class TodosFeature : public QObject {
    Q_OBJECT

public:
    struct Desktop {
        // Shows a desktop notification; used when the notch cannot be seen.
        std::function<void(const QString& title, const QString& body)> notify;
        // True while a full-screen window covers the notch.
        std::function<bool()> notchCovered;
    };

    TodosFeature(SettingsStore& settings, LiveActivityCoordinator& coordinator, Clock& clock, bool demo,
                 Desktop desktop, QObject* parent = nullptr);
    ~TodosFeature() override;

    void start();
    RemindersStore& store() { return *m_store; }
    TodosPageModel* page() { return m_page.get(); }
    DueAlertMonitor& alerts() { return *m_alerts; }

    // The to-dos the demo shows, placed around `now`.
    static std::unique_ptr<RemindersStore> demoStore(Clock& clock);

private:
    QString chosenRoot() const;

    SettingsStore& m_settings;
    Clock& m_clock;
    Desktop m_desktop;
    std::unique_ptr<RemindersStore> m_store;
    std::unique_ptr<TodosPageModel> m_page;
    std::unique_ptr<DueAlertMonitor> m_alerts;
};

} // namespace norva
