#include "notes/NoteTargetResolver.h"

namespace norva {

NoteTargetResolver::Resolution NoteTargetResolver::resolve(const QString& named,
                                                           const QList<QuickNote>& notes)
{
    const QString wanted = named.trimmed();
    if (wanted.isEmpty())
        return NewInGeneral{};
    const QuickNote* best = nullptr;
    for (const QuickNote& note : notes) {
        if (note.firstLine().compare(wanted, Qt::CaseInsensitive) == 0 &&
            (!best || note.updatedAt > best->updatedAt))
            best = &note;
    }
    if (best)
        return AppendToNote{best->id};
    return NewInCategory{wanted};
}

} // namespace norva
