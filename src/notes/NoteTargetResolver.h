#pragma once

#include "notes/QuickNote.h"

#include <QList>
#include <QString>

#include <variant>

namespace norva {

// Where a jotted text that is to be appended goes: to the note the person named (by its first
// line), else to a new note in the category they named, else to a new note in the general one.
class NoteTargetResolver {
public:
    struct AppendToNote {
        QUuid id;
        bool operator==(const AppendToNote&) const = default;
    };
    struct NewInCategory {
        QString name;
        bool operator==(const NewInCategory&) const = default;
    };
    struct NewInGeneral {
        bool operator==(const NewInGeneral&) const = default;
    };
    using Resolution = std::variant<AppendToNote, NewInCategory, NewInGeneral>;

    // `named` is what the person typed or picked as the target; notes are searched newest first.
    static Resolution resolve(const QString& named, const QList<QuickNote>& notes);
};

} // namespace norva
