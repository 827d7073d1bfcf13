#pragma once

#include "app/Clock.h"
#include "reminders/DueAlertMonitor.h"
#include "reminders/DueDesktopNotice.h"
#include "reminders/RemindersStore.h"
#include "reminders/TodosPageModel.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class PromptAlerts;
class Shell;

// The to-dos in one piece: the store over the calendar folders (or the demo's stated to-dos), the
// due alerts on the closed notch, and the page and tile's model. The demo shows stated to-dos and
// never writes the person's own.
class RemindersModule : public FeatureModule {
    Q_OBJECT
public:
    explicit RemindersModule(Shell& shell);
    ~RemindersModule() override;

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;
    // The to-dos themselves, for the features that file or offer them (the jot sheet, the timer).
    RemindersStore& store() const { return *m_store; }

    // The to-dos the demo shows, placed around `now`.
    static std::unique_ptr<RemindersStore> demoStore(Clock& clock);

private:
    QString chosenRoot() const;
    DueAlertMonitor::Operations alertOperations();

    Shell& m_shell;
    std::unique_ptr<PromptAlerts> m_notifications; // for a due to-do the notch cannot show
    std::unique_ptr<DueDesktopNotice> m_desktopNotice;
    std::unique_ptr<RemindersStore> m_store;
    std::unique_ptr<TodosPageModel> m_page;
    std::unique_ptr<DueAlertMonitor> m_alerts;
};

} // namespace norva
