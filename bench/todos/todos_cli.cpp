// norva-todos: the reminders store from the command line, for the sync script and for looking at
// a calendar folder as Norva reads it.
//   norva-todos ROOT list             every to-do: list, done or not, title
//   norva-todos ROOT add LIST TITLE   files a to-do into the list (its folder name)
//   norva-todos ROOT done TITLE       ticks the first to-do with that title
#include "app/Clock.h"
#include "app/SettingsStore.h"
#include "reminders/RemindersStore.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>

using namespace norva;

namespace {

class NoPreferences final : public PreferencesDatabase {
public:
    std::optional<QVariant> value(const QString&) const override { return std::nullopt; }
    void setValue(const QString&, const std::optional<QVariant>&) override {}
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3) {
        std::fprintf(stderr, "usage: norva-todos ROOT list | add LIST TITLE | done TITLE\n");
        return 2;
    }
    NoPreferences preferences;
    SettingsStore settings(preferences);
    RemindersStore store(args[1], settings, systemClock());
    QEventLoop loaded;
    QObject::connect(&store, &RemindersStore::changed, &loaded, &QEventLoop::quit);
    QTimer::singleShot(10000, &loaded, &QEventLoop::quit);
    store.start();
    loaded.exec();

    const QString command = args[2];
    if (command == QStringLiteral("list")) {
        for (const Reminder& r : store.rows(SmartList::all, true))
            std::printf("%s\t%s\t%s\n", qPrintable(r.listId), r.completed ? "done" : "open",
                        qPrintable(r.title));
        return 0;
    }
    if (command == QStringLiteral("add") && args.size() == 5)
        return store.addReminder({args[4], args[3], std::nullopt, false}) ? 1 : 0;
    if (command == QStringLiteral("done") && args.size() == 4) {
        for (const Reminder& r : store.reminders())
            if (r.title == args[3])
                return store.toggle(r.id) ? 0 : 1;
        return 1;
    }
    std::fprintf(stderr, "norva-todos: unknown command\n");
    return 2;
}
