#pragma once

#include "notes/JotPresenter.h"
#include "notes/NotesDesk.h"
#include "notes/NotesFileOps.h"
#include "notes/NotesMirror.h"
#include "notes/QuickNotesStore.h"
#include "shell/FeatureModule.h"

#include <memory>

namespace norva {

class Shell;

// Quick notes as Norva runs them: the store over "notes.json", the notes page, the jot sheet and
// the Markdown mirror that follows its two settings. The demo reads none of the person's notes and
// keeps its own in the shell's data folder for the demo.
class NotesModule : public FeatureModule {
    Q_OBJECT
public:
    explicit NotesModule(Shell& shell);
    ~NotesModule() override;

    void start() override;
    QList<FeaturePage> pages() const override;
    QList<QObject*> qmlObjects() const override;
    // Opens the jot sheet (the notch's button, norva --jot); the shell opens the notes page under it.
    void openJot();

private:
    Shell& m_shell;
    LocalNotesFileOps m_files;
    std::unique_ptr<QuickNotesStore> m_store;
    std::unique_ptr<NotesDesk> m_desk;
    std::unique_ptr<NotesMirror> m_mirror;
    std::unique_ptr<JotPresenter> m_jot;
};

} // namespace norva
