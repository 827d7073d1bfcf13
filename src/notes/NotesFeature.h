#pragma once

#include "app/Clock.h"
#include "notes/JotPresenter.h"
#include "notes/NotesDesk.h"
#include "notes/NotesFileOps.h"
#include "notes/NotesMirror.h"
#include "notes/QuickNotesStore.h"

#include <memory>

namespace norva {

class SettingsStore;

// Quick notes as Norva runs them: the store over "notes.json", the notes page, the jot sheet and
// the Markdown mirror that follows its two settings. Made once at start-up; the demo reads none of the
// person's notes.
class NotesFeature {
public:
    NotesFeature(Clock& clock, SettingsStore& settings, const QString& dataFolder, bool readNotes);

    QuickNotesStore& store() { return *m_store; }
    NotesDesk& desk() { return *m_desk; }
    NotesMirror& mirror() { return *m_mirror; }
    JotPresenter& jot() { return *m_jot; }

private:
    LocalNotesFileOps m_files;
    std::unique_ptr<QuickNotesStore> m_store;
    std::unique_ptr<NotesDesk> m_desk;
    std::unique_ptr<NotesMirror> m_mirror;
    std::unique_ptr<JotPresenter> m_jot;
};

} // namespace norva
