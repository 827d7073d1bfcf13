#include "reminders/TodosPageModel.h"

#include "app/SettingsStore.h"
#include "reminders/TodoWords.h"

#include <QLocale>

namespace norva {

namespace {

const QString kToday = QStringLiteral("today");
const QString kScheduled = QStringLiteral("scheduled");
const QString kAll = QStringLiteral("all");
// Whether the list shows done to-dos too (off when absent).
const QString kShowCompletedKey = QStringLiteral("todos.showCompleted.v1");

QString dueStateWord(DueState state)
{
    switch (state) {
    case DueState::none:
        return QStringLiteral("none");
    case DueState::later:
        return QStringLiteral("later");
    case DueState::today:
        return QStringLiteral("today");
    case DueState::overdue:
        return QStringLiteral("overdue");
    }
    return {};
}

using TodoWords::localCalendar;

// The view a page id names: one of the smart lists, else the person's list of that id.
TodoView viewNamed(const QString& id)
{
    if (id == kToday)
        return SmartList::today;
    if (id == kScheduled)
        return SmartList::scheduled;
    if (id == kAll)
        return SmartList::all;
    return id;
}

} // namespace

TodosPageModel::TodosPageModel(RemindersStore& store, Clock& clock, SettingsStore* settings, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock), m_settings(settings), m_draft(clock)
{
    if (m_settings)
        m_showCompleted = m_settings->flag(kShowCompletedKey, false);
    connect(&m_store, &RemindersStore::changed, this, &TodosPageModel::refresh);
    refresh();
}

void TodosPageModel::refresh()
{
    const QDateTime now = m_clock.now();
    const QList<Reminder> shown = m_store.rows(view(), m_showCompleted);
    QList<Reminder> due = m_store.widgetList();
    due.removeIf([](const Reminder& reminder) { return reminder.completed; });
    m_views.setRows(viewRows());
    m_rows.setRows(rowsOf(shown, now));
    m_tileRows.setRows(rowsOf(due.mid(0, kTileRows), now));
    m_dueTitles.clear();
    for (const Reminder& reminder : due)
        m_dueTitles.append(reminder.title);
    m_trash.setRows(trashRows(now));
    QVariantList lists;
    for (const TodoList& list : m_store.lists())
        lists.append(QVariantMap{{QStringLiteral("id"), list.id}, {QStringLiteral("color"), list.color}});
    if (lists != m_lists) {
        m_lists = lists;
        emit listsChanged();
    }
    QDateTime turn = now.toLocalTime().date().addDays(1).startOfDay();
    for (const Reminder& reminder : shown + due) {
        if (reminder.due && reminder.dueHasTime && *reminder.due > now)
            turn = std::min(turn, *reminder.due);
    }
    m_nextTurn = m_clock.at(turn, [this] { refresh(); });
    emit changed();
}

QString TodosPageModel::access() const
{
    switch (m_store.access()) {
    case RemindersStore::Access::loading:
        return QStringLiteral("loading");
    case RemindersStore::Access::granted:
        return QStringLiteral("granted");
    case RemindersStore::Access::noFolder:
        return QStringLiteral("noFolder");
    }
    return {};
}

TodoView TodosPageModel::view() const
{
    return viewNamed(m_view);
}

QVariantList TodosPageModel::viewRows() const
{
    QVariantList views;
    auto add = [&](const QString& id, const QString& title, const QString& color, bool smart) {
        views.append(QVariantMap{{QStringLiteral("id"), id},
                                 {QStringLiteral("title"), title},
                                 {QStringLiteral("color"), color},
                                 {QStringLiteral("smart"), smart},
                                 {QStringLiteral("count"), m_store.rows(viewNamed(id), false).size()}});
    };
    add(kToday, tr("Today"), {}, true);
    add(kScheduled, tr("Scheduled"), {}, true);
    add(kAll, tr("All"), {}, true);
    for (const TodoList& list : m_store.lists())
        add(list.id, list.name, list.color, false);
    return views;
}

void TodosPageModel::setCurrentView(const QString& view)
{
    if (view == m_view)
        return;
    m_view = view;
    refresh();
}

QString TodosPageModel::currentTitle() const
{
    for (const QVariant& v : m_views.rows()) {
        const QVariantMap map = v.toMap();
        if (map.value(QStringLiteral("id")).toString() == m_view)
            return map.value(QStringLiteral("title")).toString();
    }
    return tr("Today");
}

bool TodosPageModel::currentIsList() const
{
    return std::holds_alternative<QString>(view());
}

QString TodosPageModel::dueText(const Reminder& reminder, const QDateTime& now)
{
    if (!reminder.due)
        return {};
    const QLocale locale;
    const QDate day = reminder.due->toLocalTime().date();
    const QDate today = now.toLocalTime().date();
    QString text = day == today              ? tr("Today")
                   : day == today.addDays(1) ? tr("Tomorrow")
                   : day == today.addDays(-1)
                       ? tr("Yesterday")
                       : locale.toString(day, day.year() == today.year() ? QStringLiteral("MMM d")
                                                                         : QStringLiteral("MMM d, yyyy"));
    if (reminder.dueHasTime)
        text += QLatin1Char(' ') + due::DueParser::clockText(*reminder.due, localCalendar(), locale);
    return text;
}

QVariantMap TodosPageModel::rowOf(const Reminder& reminder, const QDateTime& now) const
{
    return {{QStringLiteral("id"), reminder.id},
            {QStringLiteral("title"), reminder.title},
            {QStringLiteral("dueText"), dueText(reminder, now)},
            {QStringLiteral("dueState"), dueStateWord(dueState(reminder, now))},
            {QStringLiteral("completed"), reminder.completed},
            {QStringLiteral("listId"), reminder.listId},
            {QStringLiteral("listName"), reminder.listName},
            {QStringLiteral("listColor"), reminder.listColor},
            {QStringLiteral("recurring"), reminder.recurring}};
}

QVariantList TodosPageModel::rowsOf(const QList<Reminder>& reminders, const QDateTime& now) const
{
    QVariantList rows;
    for (const Reminder& reminder : reminders)
        rows.append(rowOf(reminder, now));
    return rows;
}

void TodosPageModel::setShowCompleted(bool on)
{
    if (on == m_showCompleted)
        return;
    m_showCompleted = on;
    if (m_settings && !m_store.isReadOnly())
        m_settings->write(QVariant(on), kShowCompletedKey);
    refresh();
}

QVariantList TodosPageModel::trashRows(const QDateTime& now) const
{
    QVariantList items;
    for (const Trashed& trashed : m_store.trash()) {
        Reminder shown;
        shown.due = trashed.due;
        shown.dueHasTime = trashed.dueHasTime.value_or(false);
        items.append(QVariantMap{{QStringLiteral("id"), trashed.id},
                                 {QStringLiteral("title"), trashed.title},
                                 {QStringLiteral("listName"), trashed.listName},
                                 {QStringLiteral("dueText"), dueText(shown, now)}});
    }
    return items;
}

void TodosPageModel::say(const QString& message)
{
    if (message == m_message)
        return;
    m_message = message;
    emit messageChanged();
}

void TodosPageModel::clearMessage()
{
    say({});
}

std::optional<due::Reading> TodosPageModel::readingOf(const QString& text) const
{
    return m_draft.read(text);
}

void TodosPageModel::setDraft(const QString& text)
{
    if (m_draft.setText(text))
        emit draftChanged();
}

void TodosPageModel::dropReading()
{
    m_draft.dropReading();
    emit draftChanged();
}

bool TodosPageModel::add()
{
    QList<TodoDraft::Filing> filings;
    const std::optional<QString> list = currentIsList() ? std::optional(m_view) : std::nullopt;
    const QStringList lines = m_draft.text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty())
            filings.append(m_draft.filing(line, list));
    }
    if (filings.isEmpty())
        return false;
    if (const auto refusal = m_store.addBatch(filings)) {
        say(TodoWords::refusalText(*refusal));
        return false;
    }
    say({});
    m_draft.clear();
    emit draftChanged();
    return true;
}

void TodosPageModel::toggle(const QString& id)
{
    m_store.toggle(id);
}
void TodosPageModel::rename(const QString& id, const QString& title)
{
    m_store.rename(id, title);
}
void TodosPageModel::trashTask(const QString& id)
{
    m_store.trashTask(id);
}
void TodosPageModel::moveToList(const QString& id, const QString& listId)
{
    m_store.moveToList(id, listId);
}

void TodosPageModel::reorder(int from, int to)
{
    const QList<Reminder> shown = m_store.rows(view(), m_showCompleted);
    if (from < 0 || to < 0 || from >= shown.size() || to >= shown.size() || from == to)
        return;
    QStringList ids;
    for (const Reminder& reminder : shown)
        ids.append(reminder.id);
    ids.move(from, to);
    m_store.move(ids);
}

void TodosPageModel::clearCompleted()
{
    m_store.clearCompleted(view());
}

void TodosPageModel::restore(int index)
{
    if (!m_store.restore(index))
        say(tr("Reminders didn't restore that to-do."));
}

bool TodosPageModel::createList(const QString& name)
{
    const auto list = m_store.createList(name);
    if (!list) {
        say(tr("That list wasn't made."));
        return false;
    }
    setCurrentView(list->id);
    return true;
}

void TodosPageModel::deleteList(const QString& listId)
{
    if (m_store.deleteList(listId) && m_view == listId)
        setCurrentView(kToday);
}

} // namespace norva
