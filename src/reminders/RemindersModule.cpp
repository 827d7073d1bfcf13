#include "reminders/RemindersModule.h"

#include "agents/prompts/DesktopPromptAlerts.h"
#include "app/SettingsKeys.h"
#include "app/SettingsStore.h"
#include "notch/ConnectedDisplays.h"
#include "shell/Shell.h"
#include "storage/VdirRoot.h"

#include <QScreen>

#include <algorithm>

namespace norva {
namespace {

// True while full-screen windows cover every notch, which then cannot show a due to-do.
bool notchCovered(const SettingsStore& settings)
{
    const QList<ConnectedDisplay> displays = notchDisplays(settings.displayChoice());
    return !displays.isEmpty() &&
           std::all_of(displays.begin(), displays.end(),
                       [](const ConnectedDisplay& each) { return fullscreenWindowOn(*each.screen); });
}

} // namespace

RemindersModule::RemindersModule(Shell& shell)
    : m_shell(shell), m_notifications(std::make_unique<DesktopPromptAlerts>()),
      m_desktopNotice(std::make_unique<DueDesktopNotice>(
          *m_notifications, [&settings = shell.settings()] { return notchCovered(settings); }))
{
    const bool demo = shell.demo().on;
    SettingsStore& settings = shell.settings();
    if (demo) {
        m_store = demoStore(shell.clock());
    } else {
        m_store = std::make_unique<RemindersStore>(chosenRoot(), settings, shell.clock());
        connect(&settings, &SettingsStore::changed, this, [this] { m_store->setRoot(chosenRoot()); });
    }
    m_page = std::make_unique<TodosPageModel>(*m_store, shell.clock(), demo ? nullptr : &settings);
    m_alerts = std::make_unique<DueAlertMonitor>(shell.activities(), shell.clock(), alertOperations());
}

RemindersModule::~RemindersModule() = default;

DueAlertMonitor::Operations RemindersModule::alertOperations()
{
    DueAlertMonitor::Operations ops;
    ops.ensureStarted = [this] { m_store->start(); };
    ops.reminders = [this] { return m_store->reminders(); };
    ops.reminder = [this](const QString& id) { return m_store->reminder(id); };
    ops.complete = [this](const QString& id) {
        const auto found = m_store->reminder(id);
        if (!found)
            return DueAlertMonitor::Completion::gone;
        if (found->completed)
            return DueAlertMonitor::Completion::ticked;
        return m_store->toggle(id) ? DueAlertMonitor::Completion::ticked
                                   : DueAlertMonitor::Completion::refused;
    };
    ops.notifyDesktop = [this](const DueAlertMonitor::TaskDue& task) { m_desktopNotice->tell(task); };
    return ops;
}

void RemindersModule::start()
{
    m_store->start();
    // The demo's to-dos fall due at fixed hours of the day: their alerts would take the closed
    // notch from the scene's samples whenever the demo runs after them.
    if (!m_shell.demo().on)
        m_alerts->start();
}

QList<FeaturePage> RemindersModule::pages() const
{
    return {{QStringLiteral("todos"), QStringLiteral("To-dos"), QStringLiteral("TodosPage.qml"),
             QStringLiteral("Your to-dos will be here."), 50}};
}

QList<QObject*> RemindersModule::qmlObjects() const
{
    return {m_page.get()};
}

QString RemindersModule::chosenRoot() const
{
    return VdirRoot::locate(m_shell.settings().storedText(SettingsKeys::calendarsFolder).value_or(QString()));
}

std::unique_ptr<RemindersStore> RemindersModule::demoStore(Clock& clock)
{
    const QDateTime now = clock.now().toLocalTime();
    const QDate today = now.date();
    const QList<TodoList> lists = {
        {QStringLiteral("personal"), QStringLiteral("Personal"), QStringLiteral("#ff9f0a"), {}},
        {QStringLiteral("work"), QStringLiteral("Work"), QStringLiteral("#0a84ff"), {}}};
    QList<Reminder> reminders;
    auto add = [&](const char* id, const char* title, int list, std::optional<QDateTime> due, bool hasTime,
                   bool completed = false) {
        Reminder r;
        r.id = QString::fromLatin1(id);
        r.title = QString::fromUtf8(title);
        r.due = due;
        r.dueHasTime = hasTime && due;
        r.completed = completed;
        r.listId = lists[list].id;
        r.listName = lists[list].name;
        r.listColor = lists[list].color;
        reminders.append(r);
    };
    add("demo-1", "Call mum", 0, QDateTime(today, QTime(17, 0)), true);
    add("demo-2", "Water the plants", 0, QDateTime(today.addDays(-1), QTime(0, 0)), false);
    add("demo-3", "Pay rent", 0, QDateTime(today.addDays(1), QTime(9, 0)), true);
    add("demo-4", "Book the dentist", 0, std::nullopt, false);
    add("demo-5", "Send the slides to Ana", 1, QDateTime(today, QTime(11, 30)), true);
    add("demo-6", "Review the release notes", 1, QDateTime(today.addDays(3), QTime(0, 0)), false);
    add("demo-7", "Answer Tom's questions", 1, std::nullopt, false, true);
    return RemindersStore::stated(lists, reminders, clock);
}

} // namespace norva
