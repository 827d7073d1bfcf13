#include "notes/JotPresenter.h"

#include "app/Log.h"
#include "app/SettingsStore.h"
#include "notes/NoteTargetResolver.h"
#include "reminders/RemindersStore.h"
#include "reminders/TodoWords.h"

#include <algorithm>

namespace norva {
namespace {

const QString kSaved = QStringLiteral("\u2713");
const QString kTrouble = QStringLiteral("!");

QString quoted(const QString& name)
{
    return QStringLiteral("\u201C") + name + QStringLiteral("\u201D");
}

} // namespace

const QString JotPresenter::modeKey = QStringLiteral("jot.mode.v1");

JotPresenter::JotPresenter(QuickNotesStore& store, Clock& clock, SettingsStore* settings, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock), m_settings(settings), m_due(clock)
{}

QString JotPresenter::stageWord() const
{
    switch (m_stage) {
    case Stage::writing:
        return QStringLiteral("writing");
    case Stage::saved:
        return QStringLiteral("saved");
    case Stage::closing:
        return QStringLiteral("closing");
    case Stage::idle:
        break;
    }
    return QStringLiteral("idle");
}

JotPresenter::Mode JotPresenter::mode() const
{
    if (!m_settings)
        return m_mode;
    const QString word = m_settings->storedText(modeKey).value_or(QString());
    if (word == QLatin1String("append"))
        return Mode::append;
    // A to-do needs the store; without it the sheet keeps notes.
    return word == QLatin1String("todo") && m_todos ? Mode::todo : Mode::newNote;
}

void JotPresenter::setMode(Mode mode)
{
    if (mode == this->mode())
        return;
    m_mode = mode;
    if (m_settings)
        m_settings->write(wordOf(mode), modeKey);
    emit modeChanged();
    emit draftChanged(); // the reading shows in the to-do mode only
}

QString JotPresenter::modeWord() const
{
    return wordOf(mode());
}

QString JotPresenter::wordOf(Mode mode)
{
    switch (mode) {
    case Mode::append:
        return QStringLiteral("append");
    case Mode::todo:
        return QStringLiteral("todo");
    case Mode::newNote:
        break;
    }
    return QStringLiteral("new");
}

void JotPresenter::setModeWord(const QString& word)
{
    if (word == QLatin1String("append"))
        setMode(Mode::append);
    else if (word == QLatin1String("todo") && m_todos)
        setMode(Mode::todo);
    else
        setMode(Mode::newNote);
}

void JotPresenter::setTodos(RemindersStore* todos)
{
    m_todos = todos;
    emit modeChanged();
}

void JotPresenter::setDraft(const QString& text)
{
    if (m_due.setText(text))
        emit draftChanged();
}

void JotPresenter::dropReading()
{
    m_due.dropReading();
    emit draftChanged();
}

// The due is read only while the words would become a to-do.
QString JotPresenter::reading() const
{
    return mode() == Mode::todo ? m_due.readingText() : QString();
}

QVariantList JotPresenter::readSpans() const
{
    return mode() == Mode::todo ? m_due.spans() : QVariantList();
}

QStringList JotPresenter::targets() const
{
    QList<QuickNote> notes = m_store.notes();
    std::stable_sort(notes.begin(), notes.end(),
                     [](const QuickNote& a, const QuickNote& b) { return a.updatedAt > b.updatedAt; });
    QStringList names;
    for (const QuickNote& note : std::as_const(notes)) {
        const QString name = note.firstLine();
        if (!name.isEmpty() && !names.contains(name))
            names << name;
    }
    for (const QString& category : m_store.categories()) {
        if (!names.contains(category))
            names << category;
    }
    return names;
}

void JotPresenter::open()
{
    m_later.cancel();
    m_receipt = {};
    m_message.clear();
    m_due.clear();
    emit draftChanged();
    setStage(Stage::writing);
}

void JotPresenter::close()
{
    if (m_stage == Stage::idle || m_stage == Stage::closing)
        return;
    setStage(Stage::closing);
    m_later = m_clock.after(kClosing, [this] { setStage(Stage::idle); });
}

bool JotPresenter::submit(const QString& text, const QString& target)
{
    if (m_stage != Stage::writing || text.trimmed().isEmpty())
        return false;
    m_lastTodo.clear();
    if (mode() == Mode::todo)
        return fileTodo(text);
    using R = NoteTargetResolver;
    const auto surface = QuickNotesStore::Surface::jotSheet;
    m_textBefore.reset();
    QString message;
    const R::Resolution where =
        mode() == Mode::append ? R::resolve(target, m_store.notes()) : R::Resolution(R::NewInGeneral{});
    if (const auto* append = std::get_if<R::AppendToNote>(&where)) {
        const QuickNote* note = m_store.find(append->id);
        m_textBefore = note->text;
        m_lastNote = note->id;
        message = QStringLiteral("Added to ") + quoted(note->firstLine());
        m_store.append(append->id, text, surface);
    } else if (const auto* category = std::get_if<R::NewInCategory>(&where)) {
        m_lastNote = m_store.add(text, category->name, surface);
        message = QStringLiteral("Saved as a new note in ") + quoted(category->name);
    } else {
        m_lastNote = m_store.add(text, {}, surface);
        message = QStringLiteral("Saved as a new note");
    }
    // Saved at once, so the receipt tells the truth about the disk.
    if (!m_store.saveNow()) {
        const auto& failure = m_store.failure();
        showReceipt(
            {failure ? failure->message : QStringLiteral("Your words are still here."), true, kTrouble});
        return false;
    }
    showReceipt({message, true, kSaved});
    return true;
}

// The line becomes a to-do in the default list, due as its words say unless the reading was
// dropped. A refusal keeps the words in the sheet with the reason.
bool JotPresenter::fileTodo(const QString& text)
{
    // A to-do is one line; the receipt tells the reading of what was filed.
    const QString line = text.simplified();
    m_due.setText(line);
    const TodoDraft::Filing filing = m_due.filing(line, std::nullopt);
    QString made;
    if (const auto refusal = m_todos->addReminder(filing, &made)) {
        m_message = TodoWords::refusalText(*refusal);
        emit draftChanged();
        return false;
    }
    m_lastTodo = made;
    m_lastNote = {};
    m_textBefore.reset();
    const QString due = filing.due ? QStringLiteral(", due ") + m_due.readingText() : QString();
    showReceipt({QStringLiteral("Filed as a to-do") + due, true, kSaved});
    return true;
}

void JotPresenter::undo()
{
    if (!m_receipt.undoable)
        return;
    if (!m_lastTodo.isEmpty() && m_todos) {
        m_todos->remove(m_lastTodo);
        m_lastTodo.clear();
        showReceipt({QStringLiteral("Undone"), false, kSaved});
        return;
    }
    if (m_lastNote.isNull())
        return;
    if (m_textBefore)
        m_store.setText(m_lastNote, *m_textBefore, QuickNotesStore::Surface::jotSheet);
    else
        m_store.remove(m_lastNote);
    m_store.saveNow();
    m_lastNote = {};
    m_textBefore.reset();
    showReceipt({QStringLiteral("Undone"), false, kSaved});
}

void JotPresenter::showReceipt(Receipt receipt)
{
    m_receipt = std::move(receipt);
    setStage(Stage::saved);
    emit stageChanged(); // a second receipt in the same stage is news too
    m_later = m_clock.after(kReceiptStay, [this] { close(); });
}

void JotPresenter::setStage(Stage stage)
{
    if (stage == m_stage)
        return;
    m_stage = stage;
    emit stageChanged();
}

} // namespace norva
