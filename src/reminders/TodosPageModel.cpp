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

} // namespace

TodosPageModel::TodosPageModel(RemindersStore& store, Clock& clock, SettingsStore* settings, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock), m_settings(settings), m_draft(clock)
{
    if (m_settings)
        m_showCompleted = m_settings->flag(kShowCompletedKey, false);
    connect(&m_store, &RemindersStore::changed, this, &TodosPageModel::changed);
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
    if (m_view == kToday)
        return SmartList::today;
    if (m_view == kScheduled)
        return SmartList::scheduled;
    if (m_view == kAll)
        return SmartList::all;
    return m_view;
}

QVariantList TodosPageModel::views() const
{
    QVariantList views;
    auto add = [&](const QString& id, const QString& title, const QString& color, bool smart) {
        views.append(QVariantMap{
            {QStringLiteral("id"), id},
            {QStringLiteral("title"), title},
            {QStringLiteral("color"), color},
            {QStringLiteral("smart"), smart},
            {QStringLiteral("count"), m_store
                                          .rows(id == kToday       ? TodoView(SmartList::today)
                                                : id == kScheduled ? TodoView(SmartList::scheduled)
                                                : id == kAll       ? TodoView(SmartList::all)
                                                                   : TodoView(id),
                                                false)
                                          .size()}});
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
    emit changed();
}

QString TodosPageModel::currentTitle() const
{
    for (const QVariant& v : views()) {
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

QVariantList TodosPageModel::rows() const
{
    const QDateTime now = m_clock.now();
    QVariantList rows;
    for (const Reminder& reminder : m_store.rows(view(), m_showCompleted))
        rows.append(rowOf(reminder, now));
    return rows;
}

QVariantList TodosPageModel::tileRows() const
{
    const QDateTime now = m_clock.now();
    QVariantList rows;
    for (const Reminder& reminder : m_store.widgetList())
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
    emit changed();
}

QVariantList TodosPageModel::trash() const
{
    QVariantList items;
    const QDateTime now = m_clock.now();
    for (const Trashed& trashed : m_store.trash()) {
        Reminder shown;
        shown.due = trashed.due;
        shown.dueHasTime = trashed.dueHasTime.value_or(false);
        items.append(QVariantMap{{QStringLiteral("title"), trashed.title},
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
