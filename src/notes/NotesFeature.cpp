#include "notes/NotesFeature.h"

#include "app/SettingsStore.h"

namespace norva {

NotesFeature::NotesFeature(Clock& clock, SettingsStore& settings, const QString& dataFolder, bool readNotes)
    : m_store(std::make_unique<QuickNotesStore>(clock, dataFolder)),
      m_desk(std::make_unique<NotesDesk>(*m_store, clock)),
      m_mirror(std::make_unique<NotesMirror>(clock, *m_store, m_files, dataFolder)),
      m_jot(std::make_unique<JotPresenter>(*m_store, clock, &settings))
{
    if (!readNotes)
        return;
    m_store->load();
    m_mirror->follow(settings);
}

} // namespace norva
