#include "reminders/RemindersStore.h"

#include "app/Log.h"
#include "app/SettingsStore.h"
#include "reminders/TodoFile.h"
#include "storage/ICalendarFile.h"
#include "storage/VdirRoot.h"
#include "storage/VdirWatch.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QUuid>

namespace norva {

namespace {

const QString kArea = QStringLiteral("Norva reminders");

QString failure(const QString& what, const QString& why)
{
    return QStringLiteral("Norva reminders: %1 (%2)").arg(what, why);
}

// The UID in the item's file: the id without the list a duplicate was told apart by; an item
// without a UID (its id is its list and file name) is the file's first to-do.
QString uidOf(const Reminder& reminder)
{
    return reminder.id.contains(QLatin1Char('/')) ? QString() : reminder.id.section(QLatin1Char('@'), 0, 0);
}

bool inView(const Reminder& reminder, const TodoView& view, const QDateTime& now)
{
    if (const auto* listId = std::get_if<QString>(&view))
        return reminder.listId == *listId;
    switch (std::get<SmartList>(view)) {
    case SmartList::today: {
        const DueState state = dueState(reminder, now);
        return state == DueState::today || state == DueState::overdue;
    }
    case SmartList::scheduled:
        return reminder.due.has_value();
    case SmartList::all:
        return true;
    }
    return true;
}

} // namespace

const QString RemindersStore::kListKey = QStringLiteral("todos.list.v1");

RemindersStore::RemindersStore(Clock& clock, SettingsStore* settings, QObject* parent)
    : QObject(parent), m_clock(clock), m_settings(settings), m_keeping(settings)
{}

RemindersStore::RemindersStore(QString root, SettingsStore& settings, Clock& clock, QObject* parent)
    : RemindersStore(clock, &settings, parent)
{
    m_root = std::move(root);
    m_watch = std::make_unique<VdirWatch>(
        m_root, kArea, [](const ICalendarFile& file) { return std::any(TodoFile::read(file)); }, clock);
    connect(m_watch.get(), &VdirWatch::changed, this, [this] { rebuild(); });
}

std::unique_ptr<RemindersStore> RemindersStore::stated(QList<TodoList> lists, QList<Reminder> reminders,
                                                       Clock& clock)
{
    std::unique_ptr<RemindersStore> store(new RemindersStore(clock, nullptr, nullptr));
    store->m_readOnly = true;
    store->m_access = Access::granted;
    store->m_lists = std::move(lists);
    store->m_reminders = std::move(reminders);
    store->m_started = true;
    return store;
}

RemindersStore::~RemindersStore() = default;

void RemindersStore::start()
{
    if (m_started)
        return;
    m_started = true;
    if (m_watch)
        m_watch->start();
}

void RemindersStore::setRoot(const QString& root)
{
    if (!m_watch || root == m_root)
        return;
    m_root = root;
    m_watch->setRoot(root);
}

void RemindersStore::rebuild()
{
    const VdirState& state = m_watch->state();
    m_access = state.rootReadable ? Access::granted : Access::noFolder;
    // A collection with events belongs to the meetings, with every item in it.
    QSet<QString> eventCollections;
    for (auto it = state.items.cbegin(); it != state.items.cend(); ++it) {
        if (it->readable && std::any_cast<const TodoFile::Contents&>(it->digest).holdsEvents)
            eventCollections.insert(it->collectionId);
    }
    m_lists.clear();
    QHash<QString, TodoList> byId;
    for (const VdirCollection& collection : state.collections) {
        if (eventCollections.contains(collection.id))
            continue;
        const TodoList list{collection.id, collection.displayName, collection.color, collection.path};
        m_lists.append(list);
        byId.insert(list.id, list);
    }
    m_reminders.clear();
    QSet<QString> seen;
    for (auto it = state.items.cbegin(); it != state.items.cend(); ++it) {
        const auto list = byId.constFind(it->collectionId);
        if (!it->readable || list == byId.cend())
            continue;
        for (Reminder reminder : std::any_cast<const TodoFile::Contents&>(it->digest).todos) {
            if (reminder.id.isEmpty())
                reminder.id = list->id + QLatin1Char('/') + QFileInfo(it.key()).fileName();
            if (seen.contains(reminder.id)) // the same item synced into two lists
                reminder.id += QLatin1Char('@') + list->id;
            seen.insert(reminder.id);
            reminder.listId = list->id;
            reminder.listName = list->name;
            reminder.listColor = list->color;
            reminder.path = it.key();
            m_reminders.append(reminder);
        }
    }
    pruneOrder();
    emit changed();
}

void RemindersStore::pruneOrder()
{
    if (m_access != Access::granted)
        return; // folders that cannot be read say nothing about which to-dos are gone
    QSet<QString> present;
    for (const Reminder& reminder : std::as_const(m_reminders))
        present.insert(reminder.id);
    QStringList order = m_keeping.order();
    const qsizetype before = order.size();
    order.removeIf([&](const QString& id) { return !present.contains(id); });
    if (order.size() != before)
        m_keeping.setOrder(order);
}

std::optional<Reminder> RemindersStore::reminder(const QString& id) const
{
    for (const Reminder& reminder : m_reminders)
        if (reminder.id == id)
            return reminder;
    return std::nullopt;
}

QList<Reminder> RemindersStore::displayOrder(QList<Reminder> reminders) const
{
    const QStringList order = m_keeping.order();
    QHash<QString, qsizetype> rank;
    for (qsizetype i = 0; i < order.size(); ++i)
        rank.insert(order[i], i);
    std::stable_sort(reminders.begin(), reminders.end(), [&](const Reminder& a, const Reminder& b) {
        if (a.completed != b.completed)
            return !a.completed;
        const auto ra = rank.constFind(a.id);
        const auto rb = rank.constFind(b.id);
        if ((ra != rank.cend()) != (rb != rank.cend()))
            return ra != rank.cend();
        if (ra != rank.cend())
            return *ra < *rb;
        if (a.due.has_value() != b.due.has_value())
            return a.due.has_value();
        if (a.due && *a.due != *b.due)
            return *a.due < *b.due;
        if (a.listName != b.listName)
            return a.listName.compare(b.listName, Qt::CaseInsensitive) < 0;
        return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
    });
    return reminders;
}

QList<Reminder> RemindersStore::rows(const TodoView& view, bool showCompleted) const
{
    const QDateTime now = m_clock.now();
    QList<Reminder> shown;
    for (const Reminder& reminder : m_reminders) {
        if ((showCompleted || !reminder.completed) && inView(reminder, view, now))
            shown.append(reminder);
    }
    return displayOrder(shown);
}

std::optional<TodoList> RemindersStore::defaultCalendar() const
{
    if (m_settings) {
        if (const auto chosen = m_settings->storedText(kListKey, QStringLiteral("a Reminders list"))) {
            for (const TodoList& list : m_lists)
                if (list.id == *chosen)
                    return list;
        }
    }
    return m_lists.isEmpty() ? std::nullopt : std::optional(m_lists.first());
}

std::optional<TodoList> RemindersStore::resolveCalendar(const std::optional<QString>& listId) const
{
    if (listId) {
        for (const TodoList& list : m_lists)
            if (list.id == *listId || list.name == *listId)
                return list;
    }
    return defaultCalendar();
}

bool RemindersStore::refused(const QString& what) const
{
    if (!m_readOnly)
        return false;
    logLine(QStringLiteral(
                "Norva reminders: %1 refused (this store holds stated reminders, and never writes this "
                "computer's own)")
                .arg(what));
    return true;
}

void RemindersStore::changedFolder(const QString& path)
{
    if (m_watch)
        m_watch->rescan(QFileInfo(path).absolutePath());
}

bool RemindersStore::edit(
    const QString& id, const QString& failureLine,
    const std::function<std::optional<QByteArray>(const QByteArray&, const Reminder&)>& change)
{
    const auto found = reminder(id);
    if (!found) {
        logLine(failure(failureLine, QStringLiteral("it is no longer in Reminders")));
        return false;
    }
    // Always the bytes on disk now: another program may have changed the item since it was read.
    const auto read = ICalendarFile::read(found->path);
    if (!read.file) {
        logLine(failure(failureLine, read.reason));
        return false;
    }
    const auto changed = change(read.file->bytes(), *found);
    if (!changed) {
        logLine(failure(failureLine, QStringLiteral("the to-do was not found in its file")));
        return false;
    }
    if (const auto why = writeCalendarItem(found->path, *changed)) {
        logLine(failure(failureLine, *why));
        return false;
    }
    changedFolder(found->path);
    return true;
}

bool RemindersStore::toggle(const QString& id)
{
    if (refused(QStringLiteral("ticking a to-do")))
        return false;
    const QDateTime now = m_clock.now();
    const bool done =
        edit(id, QStringLiteral("a to-do was not ticked"), [&](const QByteArray& bytes, const Reminder& r) {
            return TodoFile::setCompleted(bytes, uidOf(r), !r.completed, now);
        });
    if (done) {
        // Show the tick at once; the folder watch brings the file's own word a moment later.
        for (Reminder& reminder : m_reminders)
            if (reminder.id == id && !reminder.recurring)
                reminder.completed = !reminder.completed;
        emit changed();
    }
    return done;
}

bool RemindersStore::rename(const QString& id, const QString& title)
{
    if (refused(QStringLiteral("renaming a to-do")))
        return false;
    const QString clean = title.simplified();
    if (clean.isEmpty())
        return false;
    const QDateTime now = m_clock.now();
    return edit(id, QStringLiteral("a to-do was not renamed"),
                [&](const QByteArray& bytes, const Reminder& r) {
                    return TodoFile::setTitle(bytes, uidOf(r), clean, now);
                });
}

bool RemindersStore::setDue(const QString& id, const std::optional<QDateTime>& due, bool dueHasTime)
{
    if (refused(QStringLiteral("changing a to-do's due")))
        return false;
    const QDateTime now = m_clock.now();
    return edit(id, QStringLiteral("a to-do's due was not changed"),
                [&](const QByteArray& bytes, const Reminder& r) {
                    return TodoFile::setDue(bytes, uidOf(r), due, dueHasTime, now);
                });
}

std::optional<TodoRefusal> RemindersStore::addReminder(const TodoDraft::Filing& filing, QString* madeId)
{
    if (refused(QStringLiteral("filing a to-do")))
        return TodoRefusal::notSaved;
    const auto list = resolveCalendar(filing.list);
    if (!list) {
        logLine(QStringLiteral(
            "Norva reminders: a to-do was not saved (no list to file it into: no Reminders access, "
            "or no default list)"));
        return m_access == Access::granted ? TodoRefusal::noDefaultList : TodoRefusal::denied;
    }
    const QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const auto collection = VdirCollection::at(list->path);
    const QString path = collection ? collection->itemPathFor(uid) : QString();
    const auto why =
        collection ? writeCalendarItem(path, TodoFile::create(uid, filing.title.simplified(), filing.due,
                                                              filing.dueHasTime, m_clock.now()))
                   : std::optional(QStringLiteral("its list's folder is gone"));
    if (why) {
        logLine(failure(QStringLiteral("a to-do was not saved"), *why));
        return TodoRefusal::notSaved;
    }
    Reminder added;
    added.id = uid;
    added.title = filing.title.simplified();
    added.due = filing.due;
    added.dueHasTime = filing.due && filing.dueHasTime;
    added.listId = list->id;
    added.listName = list->name;
    added.listColor = list->color;
    added.path = path;
    m_reminders.append(added);
    emit changed();
    changedFolder(path);
    if (madeId)
        *madeId = uid;
    return std::nullopt;
}

std::optional<TodoRefusal> RemindersStore::addBatch(const QList<TodoDraft::Filing>& filings)
{
    if (refused(QStringLiteral("filing several to-dos")))
        return TodoRefusal::notSaved;
    for (const TodoDraft::Filing& filing : filings) {
        if (const auto refusal = addReminder(filing))
            return refusal;
    }
    return std::nullopt;
}

bool RemindersStore::deleteItems(const QList<Reminder>& reminders, const QString& failureLine)
{
    bool all = true;
    QSet<QString> gone;
    for (const Reminder& reminder : reminders) {
        QFile file(reminder.path);
        if (!file.remove()) {
            logLine(failure(failureLine, file.errorString()));
            all = false;
            continue;
        }
        gone.insert(reminder.id);
        changedFolder(reminder.path);
    }
    m_reminders.removeIf([&](const Reminder& r) { return gone.contains(r.id); });
    if (!gone.isEmpty())
        emit changed();
    return all;
}

bool RemindersStore::trashTask(const QString& id)
{
    if (refused(QStringLiteral("trashing a to-do")))
        return false;
    const auto found = reminder(id);
    if (!found) {
        logLine(failure(QStringLiteral("a to-do was not trashed"),
                        QStringLiteral("it is no longer in Reminders")));
        return false;
    }
    m_keeping.setTrash(archiving(m_keeping.trash(), {Trashed::of(*found)}));
    return deleteItems({*found}, QStringLiteral("a to-do was not trashed"));
}

bool RemindersStore::remove(const QString& id)
{
    if (refused(QStringLiteral("deleting a to-do")))
        return false;
    const auto found = reminder(id);
    return found && deleteItems({*found}, QStringLiteral("a to-do was not deleted"));
}

bool RemindersStore::clearCompleted(const TodoView& view)
{
    if (refused(QStringLiteral("clearing the completed to-dos")))
        return false;
    QList<Reminder> completed = rows(view, true);
    completed.removeIf([](const Reminder& r) { return !r.completed; });
    QList<Trashed> fresh;
    for (const Reminder& reminder : std::as_const(completed))
        fresh.append(Trashed::of(reminder));
    m_keeping.setTrash(archiving(m_keeping.trash(), fresh));
    return deleteItems(completed, QStringLiteral("a completed to-do was not cleared"));
}

bool RemindersStore::deleteAll(const QString& listId)
{
    if (refused(QStringLiteral("deleting a list's to-dos")))
        return false;
    const QList<Reminder> all = rows(listId, true);
    QList<Trashed> fresh;
    for (const Reminder& reminder : all)
        fresh.append(Trashed::of(reminder));
    m_keeping.setTrash(archiving(m_keeping.trash(), fresh));
    return deleteItems(all, QStringLiteral("a to-do of a list was not deleted"));
}

bool RemindersStore::moveToList(const QString& id, const QString& listId)
{
    if (refused(QStringLiteral("moving a to-do to another list")))
        return false;
    const QString what = QStringLiteral("a to-do was not moved");
    const auto found = reminder(id);
    const auto target =
        VdirCollection::at(resolveCalendar(listId) ? resolveCalendar(listId)->path : QString());
    if (!found || !target) {
        logLine(failure(what, !found ? QStringLiteral("it is no longer in Reminders")
                                     : QStringLiteral("no such list")));
        return false;
    }
    if (found->listId == target->id)
        return true;
    const auto read = ICalendarFile::read(found->path);
    if (!read.file) {
        logLine(failure(what, read.reason));
        return false;
    }
    // The item is written whole into its new list before it leaves the old one, so a failure
    // midway leaves it in both rather than in neither.
    const QString path = target->itemPathFor(QFileInfo(found->path).completeBaseName());
    if (const auto why = writeCalendarItem(path, read.file->bytes())) {
        logLine(failure(what, *why));
        return false;
    }
    if (!QFile::remove(found->path))
        logLine(failure(QStringLiteral("a moved to-do was not taken out of its old list"), found->path));
    changedFolder(path);
    changedFolder(found->path);
    return true;
}

void RemindersStore::move(const QStringList& ids)
{
    QStringList order = ids;
    for (const QString& id : m_keeping.order())
        if (!order.contains(id))
            order.append(id);
    m_keeping.setOrder(order);
    emit changed();
}

void RemindersStore::moveToTop(const QString& id)
{
    move({id});
}

std::optional<TodoList> RemindersStore::createList(const QString& name, const QString& color)
{
    if (refused(QStringLiteral("making a list")))
        return std::nullopt;
    const QString clean = name.simplified();
    QString why;
    const auto made = clean.isEmpty() ? std::nullopt : VdirRoot(m_root).createCollection(clean, color, &why);
    if (!made) {
        logLine(failure(QStringLiteral("a list was not made"),
                        clean.isEmpty() ? QStringLiteral("it has no name") : why));
        return std::nullopt;
    }
    const TodoList list{made->id, made->displayName, made->color, made->path};
    m_lists.append(list);
    m_access = Access::granted;
    emit changed();
    if (m_watch)
        m_watch->rescan();
    return list;
}

bool RemindersStore::deleteList(const QString& listId)
{
    if (refused(QStringLiteral("deleting a list")))
        return false;
    const auto list = resolveCalendar(listId);
    const auto collection = list && list->id == listId ? VdirCollection::at(list->path) : std::nullopt;
    if (!collection) {
        logLine(failure(QStringLiteral("a list was not deleted"), QStringLiteral("it is no longer there")));
        return false;
    }
    QList<Trashed> fresh;
    for (const Reminder& reminder : rows(listId, true))
        fresh.append(Trashed::of(reminder));
    m_keeping.setTrash(archiving(m_keeping.trash(), fresh));
    if (const auto why = VdirRoot(m_root).removeCollection(*collection)) {
        logLine(failure(QStringLiteral("a list was not deleted"), *why));
        if (m_watch)
            m_watch->rescan();
        return false;
    }
    m_lists.removeIf([&](const TodoList& l) { return l.id == listId; });
    m_reminders.removeIf([&](const Reminder& r) { return r.listId == listId; });
    emit changed();
    if (m_watch)
        m_watch->rescan();
    return true;
}

bool RemindersStore::restore(int trashIndex)
{
    if (refused(QStringLiteral("restoring a to-do")))
        return false;
    QList<Trashed> trash = m_keeping.trash();
    if (trashIndex < 0 || trashIndex >= trash.size())
        return false;
    const Trashed trashed = trash[trashIndex];
    std::optional<QString> listId;
    for (const TodoList& list : std::as_const(m_lists))
        if (list.name == trashed.listName)
            listId = list.id;
    const TodoDraft::Filing filing{trashed.title, listId, trashed.due, trashed.dueHasTime.value_or(false)};
    if (addReminder(filing))
        return false;
    trash.removeAt(trashIndex);
    m_keeping.setTrash(trash);
    emit changed();
    return true;
}

} // namespace norva
