#include "notes/NotesModule.h"

#include "reminders/RemindersModule.h"
#include "shell/Shell.h"

namespace norva {

NotesModule::NotesModule(Shell& shell)
    : m_shell(shell), m_store(std::make_unique<QuickNotesStore>(shell.clock(), shell.dataFolder())),
      m_desk(std::make_unique<NotesDesk>(*m_store, shell.clock())),
      m_mirror(std::make_unique<NotesMirror>(shell.clock(), *m_store, m_files, shell.dataFolder())),
      m_jot(std::make_unique<JotPresenter>(*m_store, shell.clock(), &shell.settings()))
{
    // The jot sheet files a line as a to-do through the to-dos' own store.
    if (RemindersModule* reminders = shell.find<RemindersModule>())
        m_jot->setTodos(&reminders->store());
}

NotesModule::~NotesModule() = default;

void NotesModule::start()
{
    if (m_shell.demo().on)
        return;
    m_store->load();
    m_mirror->follow(m_shell.settings());
}

QList<FeaturePage> NotesModule::pages() const
{
    return {{QStringLiteral("notes"), QStringLiteral("Notes"), QStringLiteral("NotesPage.qml"),
             QStringLiteral("Your quick notes will be here."), 52}};
}

QList<QObject*> NotesModule::qmlObjects() const
{
    return {m_desk.get(), m_mirror.get(), m_jot.get()};
}

void NotesModule::openJot()
{
    m_jot->open();
}

} // namespace norva
