#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace norva::TodoDraft {

// What the add field or the jot sheet asks the store to file.
struct Filing {
    QString title;
    std::optional<QString> list; // a list's id; absent: the default list
    std::optional<QDateTime> due;
    bool dueHasTime = false;
};

enum class DueChoice { none, today, tomorrow, nextWeek, custom };

} // namespace norva::TodoDraft
