#pragma once

#include "app/Clock.h"
#include "reminders/Reminder.h"
#include "reminders/TodoDraft.h"
#include "reminders/TodoKeeping.h"

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>

namespace norva {

class SettingsStore;
class VdirWatch;

// What the page shows: one of the smart lists or one of the person's lists (by id).
using TodoView = std::variant<SmartList, QString>;

// Why a to-do was not filed, as the jot sheet and the add field tell it.
enum class TodoRefusal { notAsked, denied, noDefaultList, notSaved };

// Norva's view of the person's to-dos: the VTODO items of their calendar folders (a collection
// that holds events is the meetings' and is left out). Norva keeps no copy of them, only the
// manual order and the trash. Changes by other programs arrive through the folder watch; every
// write goes to the item's file, and the watch then confirms it.
// A store made with `stated` holds a fixed set of to-dos for the demo and refuses every write.
class RemindersStore : public QObject {
    Q_OBJECT

public:
    enum class Access { loading, granted, noFolder };
    // "todos.list.v1": the list a new to-do goes to when none is named (read when one is added).
    static const QString kListKey;

    // Follows the calendar folders at `root` (see VdirRoot::locate).
    RemindersStore(QString root, SettingsStore& settings, Clock& clock, QObject* parent = nullptr);
    // A read-only store of stated to-dos and lists.
    static std::unique_ptr<RemindersStore> stated(QList<TodoList> lists, QList<Reminder> reminders,
                                                  Clock& clock);
    ~RemindersStore() override;

    // Loads the lists and to-dos off the main thread and follows changes; again does nothing.
    void start();
    bool isStarted() const { return m_started; }
    bool isReadOnly() const { return m_readOnly; }
    Access access() const { return m_access; }
    QString root() const { return m_root; }
    void setRoot(const QString& root);

    QList<TodoList> lists() const { return m_lists; }
    QList<Reminder> reminders() const { return m_reminders; }
    std::optional<Reminder> reminder(const QString& id) const;
    // The to-dos of a view in display order: manually ordered ids first, in their stored order,
    // then the rest by due (those with one first), list and title. Completed ones only when asked.
    QList<Reminder> rows(const TodoView& view, bool showCompleted) const;
    // Today's and overdue to-dos, for the tile on the panel's first page.
    QList<Reminder> widgetList() const { return rows(SmartList::today, false); }
    QList<Reminder> displayOrder(QList<Reminder> reminders) const;
    // The list a to-do without one is filed into: the chosen one ("todos.list.v1"), else the first.
    std::optional<TodoList> defaultCalendar() const;
    std::optional<TodoList> resolveCalendar(const std::optional<QString>& listId) const;
    QList<Trashed> trash() const { return m_keeping.trash(); }

    // --- writes: each logs one line when it fails and answers whether it was done ---
    bool toggle(const QString& id);
    // `madeId`, when given, receives the new to-do's id, so it can be undone.
    std::optional<TodoRefusal> addReminder(const TodoDraft::Filing& filing, QString* madeId = nullptr);
    std::optional<TodoRefusal> addBatch(const QList<TodoDraft::Filing>& filings);
    bool rename(const QString& id, const QString& title);
    bool setDue(const QString& id, const std::optional<QDateTime>& due, bool dueHasTime);
    bool trashTask(const QString& id);
    bool remove(const QString& id);
    bool clearCompleted(const TodoView& view);
    bool deleteAll(const QString& listId);
    bool moveToList(const QString& id, const QString& listId);
    // The manual order: `ids` in this order, ahead of the other ordered ones.
    void move(const QStringList& ids);
    void moveToTop(const QString& id);
    std::optional<TodoList> createList(const QString& name, const QString& color = {});
    bool deleteList(const QString& listId);
    bool restore(int trashIndex);

signals:
    void changed();

private:
    RemindersStore(Clock& clock, SettingsStore* settings, QObject* parent);
    void rebuild();
    void pruneOrder();
    bool refused(const QString& what) const;
    bool edit(const QString& id, const QString& failureLine,
              const std::function<std::optional<QByteArray>(const QByteArray&, const Reminder&)>& change);
    bool deleteItems(const QList<Reminder>& reminders, const QString& failureLine);
    void changedFolder(const QString& path);

    Clock& m_clock;
    SettingsStore* m_settings;
    TodoKeeping m_keeping;
    QString m_root;
    std::unique_ptr<VdirWatch> m_watch;
    QList<TodoList> m_lists;
    QList<Reminder> m_reminders;
    Access m_access = Access::loading;
    bool m_readOnly = false;
    bool m_started = false;
};

} // namespace norva
