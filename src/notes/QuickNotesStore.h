#pragma once

#include "app/Clock.h"
#include "notes/QuickNote.h"
#include "storage/StoredList.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <optional>

namespace norva {

// The quick notes, kept in "notes.json" in Norva's data folder. Each note is read on its own, so
// one damaged note does not cost the others; a file Norva cannot read is never written over but
// set aside with a stamp before the first save. A save that fails keeps the notes in memory and
// says so in calm words until a later save gets through. Main thread only.
class QuickNotesStore : public QObject {
    Q_OBJECT
public:
    // The wait between a change and its save: a burst of typing writes the file once.
    static constexpr Seconds kSaveDelay{0.3};
    static const QString fileName; // "notes.json"

    enum class FailureKind { unreadable, setAside, unsaved };
    // Where the person meets the failure: the notes page, or the jot sheet they are typing in.
    enum class Surface { notesPage, jotSheet };
    struct Failure {
        FailureKind kind = FailureKind::unreadable;
        Surface surface = Surface::notesPage;
        QString message;
        bool operator==(const Failure&) const = default;
    };

    QuickNotesStore(Clock& clock, const QString& dataFolder, QObject* parent = nullptr);
    ~QuickNotesStore() override; // a change still waiting is saved now, so a quit loses nothing

    // Reads the file; once, at start.
    void load();

    // Oldest first, as they were made.
    const QList<QuickNote>& notes() const { return m_notes; }
    const QuickNote* find(const QUuid& id) const;
    // Every category in use, in the order first met, without the general one.
    QStringList categories() const;

    // A new note; its id.
    QUuid add(const QString& text, const QString& category = {}, Surface surface = Surface::notesPage);
    // Puts back a note as it was (an undo): under its own id, where it stood.
    void putBack(const QuickNote& note, int position = -1);
    bool setText(const QUuid& id, const QString& text, Surface surface = Surface::notesPage);
    bool setCategory(const QUuid& id, const QString& category);
    // Adds the text as a new line at the end of the note.
    bool append(const QUuid& id, const QString& text, Surface surface = Surface::notesPage);
    // Takes a note away; the note as it was and where it stood, for an undo.
    std::optional<std::pair<QuickNote, int>> remove(const QUuid& id);

    // Saves a change that is waiting at once; true when the file holds the notes.
    bool saveNow();
    bool isSavePending() const { return m_list.isPending(); }

    const std::optional<Failure>& failure() const { return m_failure; }

    // The page's words for each failure.
    static QString unreadableFileText();
    static QString damagedNotesText();
    static QString setAsideText();
    static QString unsavedText(const QString& reason);

signals:
    void notesChanged();
    void failureChanged();

private:
    void changed(Surface surface);
    void saved();
    void setFailure(std::optional<Failure> failure);
    void reportSetAsideFiles();
    QuickNote* findMutable(const QUuid& id);

    Clock& m_clock;
    StoredList m_list;
    QList<QuickNote> m_notes;
    std::optional<Failure> m_failure;
    Surface m_lastSurface = Surface::notesPage;
};

} // namespace norva
