#include "notes/QuickNotesStore.h"

#include "app/Log.h"
#include "notes/FileTrouble.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace norva {
namespace {

const QString kArea = QStringLiteral("Norva Notes");

StoredList::Wording notesWording()
{
    StoredList::Wording wording;
    wording.notAList = QStringLiteral("not a list of notes");
    wording.setAside = QStringLiteral(": set the unreadable %1 aside as %2");
    wording.stamp = QStringLiteral("yyyy-MM-dd-HHmmss");
    return wording;
}

} // namespace

const QString QuickNotesStore::fileName = QStringLiteral("notes.json");

QuickNotesStore::QuickNotesStore(Clock& clock, const QString& dataFolder, QObject* parent)
    : QObject(parent), m_clock(clock),
      m_list(dataFolder + QLatin1Char('/') + fileName, kArea, clock, kSaveDelay)
{
    m_list.setWording(notesWording());
    m_list.setSnapshot([this] {
        QJsonArray array;
        for (const QuickNote& note : std::as_const(m_notes))
            array.append(note.toJson());
        return array;
    });
    m_list.setOnSaved([this] { saved(); });
}

QuickNotesStore::~QuickNotesStore()
{
    if (m_list.isPending())
        m_list.saveNow();
}

QString QuickNotesStore::unreadableFileText()
{
    return QStringLiteral("Norva couldn't read your notes file. It is kept, untouched.");
}

QString QuickNotesStore::damagedNotesText()
{
    return QStringLiteral("Norva couldn't read some of your notes. The file is kept, untouched.");
}

QString QuickNotesStore::setAsideText()
{
    return QStringLiteral("Some notes Norva couldn't read are kept in a file beside your notes.");
}

QString QuickNotesStore::unsavedText(const QString& reason)
{
    return QStringLiteral("Norva couldn't save your notes: ") + reason +
           QStringLiteral(". They stay here until it can.");
}

void QuickNotesStore::load()
{
    const QJsonArray elements = m_list.load();
    m_notes.clear();
    int damaged = 0;
    for (const auto& element : elements) {
        const std::optional<QuickNote> note =
            element.isObject() ? QuickNote::fromJson(element.toObject()) : std::nullopt;
        if (note)
            m_notes.append(*note);
        else
            ++damaged;
    }
    if (m_list.holdsUnreadable()) {
        setFailure(Failure{FailureKind::unreadable, Surface::notesPage, unreadableFileText()});
    } else if (damaged > 0) {
        // The damaged notes are still in the file: it is kept whole until the first save sets it aside.
        m_list.keepFileBeforeNextSave();
        logLine(kArea + QStringLiteral(": could not read ") + QString::number(damaged) +
                QStringLiteral(" of ") + QString::number(elements.size()) + QStringLiteral(" notes in ") +
                fileName + QStringLiteral(" (some notes are damaged); the file is kept, untouched"));
        setFailure(Failure{FailureKind::unreadable, Surface::notesPage, damagedNotesText()});
    } else {
        reportSetAsideFiles();
    }
    emit notesChanged();
}

// A file set aside by an earlier run still holds notes that are not in the list.
void QuickNotesStore::reportSetAsideFiles()
{
    const QFileInfo file(m_list.path());
    const QStringList aside =
        file.absoluteDir().entryList({fileName + QStringLiteral(".unreadable-*")}, QDir::Files, QDir::Name);
    if (aside.isEmpty())
        return;
    for (const QString& name : aside)
        logLine(
            kArea + QStringLiteral(": kept ") + name + QStringLiteral(" beside ") + fileName +
            QStringLiteral(" (Norva could not read it): its notes are not in Norva until it is dealt with"));
    setFailure(Failure{FailureKind::setAside, Surface::notesPage, setAsideText()});
}

const QuickNote* QuickNotesStore::find(const QUuid& id) const
{
    for (const QuickNote& note : m_notes) {
        if (note.id == id)
            return &note;
    }
    return nullptr;
}

QuickNote* QuickNotesStore::findMutable(const QUuid& id)
{
    return const_cast<QuickNote*>(std::as_const(*this).find(id));
}

QStringList QuickNotesStore::categories() const
{
    QStringList names;
    for (const QuickNote& note : m_notes) {
        if (!note.category.isEmpty() && !names.contains(note.category))
            names << note.category;
    }
    return names;
}

QUuid QuickNotesStore::add(const QString& text, const QString& category, Surface surface)
{
    QuickNote note;
    note.id = QUuid::createUuid();
    note.text = text;
    note.category = category.trimmed();
    note.createdAt = m_clock.now();
    note.updatedAt = note.createdAt;
    m_notes.append(note);
    changed(surface);
    return note.id;
}

void QuickNotesStore::putBack(const QuickNote& note, int position)
{
    if (find(note.id))
        return;
    m_notes.insert(position < 0 || position > m_notes.size() ? m_notes.size() : position, note);
    changed(Surface::notesPage);
}

bool QuickNotesStore::setText(const QUuid& id, const QString& text, Surface surface)
{
    QuickNote* note = findMutable(id);
    if (!note || note->text == text)
        return false;
    note->text = text;
    note->updatedAt = m_clock.now();
    changed(surface);
    return true;
}

bool QuickNotesStore::setCategory(const QUuid& id, const QString& category)
{
    QuickNote* note = findMutable(id);
    if (!note || note->category == category.trimmed())
        return false;
    note->category = category.trimmed();
    note->updatedAt = m_clock.now();
    changed(Surface::notesPage);
    return true;
}

bool QuickNotesStore::append(const QUuid& id, const QString& text, Surface surface)
{
    const QuickNote* note = find(id);
    if (!note)
        return false;
    const bool needsBreak = !note->text.isEmpty() && !note->text.endsWith(QLatin1Char('\n'));
    return setText(id, note->text + (needsBreak ? QStringLiteral("\n") : QString()) + text, surface);
}

std::optional<std::pair<QuickNote, int>> QuickNotesStore::remove(const QUuid& id)
{
    for (int index = 0; index < m_notes.size(); ++index) {
        if (m_notes[index].id == id) {
            QuickNote note = m_notes.takeAt(index);
            changed(Surface::notesPage);
            return std::make_pair(std::move(note), index);
        }
    }
    return std::nullopt;
}

bool QuickNotesStore::saveNow()
{
    return m_list.saveNow();
}

void QuickNotesStore::changed(Surface surface)
{
    m_lastSurface = surface;
    m_list.later();
    emit notesChanged();
}

void QuickNotesStore::saved()
{
    if (const auto& why = m_list.lastSaveFailure()) {
        setFailure(Failure{FailureKind::unsaved, m_lastSurface, unsavedText(plainFileTrouble(*why))});
        return;
    }
    if (!m_list.setAsideName().isEmpty())
        setFailure(Failure{FailureKind::setAside, Surface::notesPage, setAsideText()});
    else if (m_failure && m_failure->kind == FailureKind::unsaved)
        setFailure(std::nullopt);
}

void QuickNotesStore::setFailure(std::optional<Failure> failure)
{
    if (failure == m_failure)
        return;
    m_failure = std::move(failure);
    emit failureChanged();
}

} // namespace norva
