#include "notes/NotesDesk.h"

#include <QLocale>

#include <algorithm>

namespace norva {
namespace {

constexpr int kPreviewLength = 90;

QVariantMap valueOf(const NotesDesk::Row& row)
{
    return {{QStringLiteral("id"), row.id},
            {QStringLiteral("name"), row.name},
            {QStringLiteral("day"), row.day},
            {QStringLiteral("preview"), row.preview},
            {QStringLiteral("category"), row.category},
            {QStringLiteral("isPending"), row.isPending}};
}

} // namespace

NotesDesk::NotesDesk(QuickNotesStore& store, Clock& clock, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock)
{
    connect(&m_store, &QuickNotesStore::notesChanged, this, &NotesDesk::rebuild);
    connect(&m_store, &QuickNotesStore::failureChanged, this, &NotesDesk::failureChanged);
    rebuild();
}

QString NotesDesk::dayText(const QDateTime& updated, const QDate& today)
{
    const QDate day = updated.toLocalTime().date();
    if (day == today)
        return QStringLiteral("Today");
    if (day == today.addDays(-1))
        return QStringLiteral("Yesterday");
    return QLocale::c().toString(day, day.year() == today.year() ? QStringLiteral("d MMM")
                                                                 : QStringLiteral("d MMM yyyy"));
}

QString NotesDesk::preview(const QString& text)
{
    const QString trimmed = text.trimmed();
    const qsizetype lineEnd = trimmed.indexOf(QLatin1Char('\n'));
    QString rest = lineEnd < 0 ? QString() : trimmed.mid(lineEnd + 1).simplified();
    if (rest.size() > kPreviewLength)
        rest = rest.left(kPreviewLength - 1).trimmed() + QChar(0x2026);
    return rest;
}

void NotesDesk::setFilter(const QString& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    emit filterChanged();
    rebuild();
}

bool NotesDesk::matches(const QuickNote& note) const
{
    const QString words = m_filter.trimmed();
    return words.isEmpty() || note.text.contains(words, Qt::CaseInsensitive) ||
           note.category.contains(words, Qt::CaseInsensitive);
}

NotesDesk::Row NotesDesk::rowFor(const QuickNote& note, const QDate& today)
{
    const auto cached = m_cache.constFind(note.id);
    if (cached != m_cache.cend() && cached->text == note.text && cached->updatedAt == note.updatedAt &&
        cached->category == note.category && cached->day == today)
        return cached->row;
    ++m_rowsBuilt;
    const QString name = note.firstLine();
    Row row{note.id.toString(QUuid::WithoutBraces),
            name.isEmpty() ? QStringLiteral("Untitled") : name,
            dayText(note.updatedAt, today),
            preview(note.text),
            note.category,
            false};
    m_cache.insert(note.id, {note.text, note.updatedAt, note.category, today, row});
    return row;
}

// Newest first; the note being made stands on top until it has words.
void NotesDesk::rebuild()
{
    const QDate today = m_clock.now().toLocalTime().date();
    if (m_dayTurnAfter != today) {
        m_dayTurnAfter = today;
        m_dayTurn = m_clock.at(today.addDays(1).startOfDay(), [this] { rebuild(); });
    }
    QList<const QuickNote*> shown;
    for (const QuickNote& note : m_store.notes()) {
        if (matches(note))
            shown << &note;
    }
    std::stable_sort(shown.begin(), shown.end(),
                     [](const QuickNote* a, const QuickNote* b) { return a->updatedAt > b->updatedAt; });
    QList<Row> rows;
    if (m_pending)
        rows << Row{m_pending->id.toString(QUuid::WithoutBraces),
                    QStringLiteral("New note"),
                    dayText(m_clock.now(), today),
                    {},
                    m_pending->category,
                    true};
    for (const QuickNote* note : std::as_const(shown))
        rows << rowFor(*note, today);
    for (auto it = m_cache.begin(); it != m_cache.end();) {
        if (!m_store.find(it.key()))
            it = m_cache.erase(it);
        else
            ++it;
    }
    if (rows == m_rows)
        return;
    m_rows = rows;
    QVariantList values;
    for (const Row& row : std::as_const(m_rows))
        values << valueOf(row);
    m_rowModel.setRows(values);
    emit rowsChanged();
}

QString NotesDesk::selectedId() const
{
    if (m_pending)
        return m_pending->id.toString(QUuid::WithoutBraces);
    return m_selected.isNull() ? QString() : m_selected.toString(QUuid::WithoutBraces);
}

QString NotesDesk::editorText() const
{
    const QuickNote* note = m_store.find(m_selected);
    return note ? note->text : QString();
}

QString NotesDesk::editorCategory() const
{
    if (m_pending)
        return m_pending->category;
    const QuickNote* note = m_store.find(m_selected);
    return note ? note->category : QString();
}

QString NotesDesk::failureText() const
{
    const auto& failure = m_store.failure();
    return failure ? failure->message : QString();
}

void NotesDesk::newNote(const QString& category)
{
    m_pending = PendingNote{QUuid::createUuid(), category.trimmed()};
    m_selected = {};
    rebuild();
    emit selectionChanged();
}

void NotesDesk::select(const QString& id)
{
    const QUuid wanted = QUuid::fromString(id);
    if (m_pending && wanted == m_pending->id)
        return;
    m_pending.reset();
    m_selected = m_store.find(wanted) ? wanted : QUuid();
    rebuild();
    emit selectionChanged();
}

// The editor's words go to the chosen note; a pending note becomes a note with its first words.
void NotesDesk::edit(const QString& text)
{
    if (m_pending) {
        if (text.trimmed().isEmpty())
            return;
        const QString category = m_pending->category;
        m_pending.reset();
        m_selected = m_store.add(text, category);
        emit selectionChanged();
        return;
    }
    m_store.setText(m_selected, text);
}

void NotesDesk::setCategory(const QString& category)
{
    if (m_pending) {
        m_pending->category = category.trimmed();
        rebuild();
        emit selectionChanged();
        return;
    }
    if (m_store.setCategory(m_selected, category))
        emit selectionChanged();
}

void NotesDesk::removeSelected()
{
    if (m_pending) {
        m_pending.reset();
        rebuild();
        emit selectionChanged();
        return;
    }
    m_removed = m_store.remove(m_selected);
    m_selected = {};
    emit selectionChanged();
}

void NotesDesk::undoRemove()
{
    if (!m_removed)
        return;
    m_store.putBack(m_removed->first, m_removed->second);
    m_selected = m_removed->first.id;
    m_removed.reset();
    emit selectionChanged();
}

} // namespace norva
