#pragma once

#include "reminders/DueTypes.h"
#include "reminders/RemindersStore.h"

#include <QString>
#include <QVariantList>

// How a typed to-do's due is read and told, the same in the To-dos page's add field and the jot sheet.
namespace norva::TodoWords {

due::Calendar localCalendar();
// "Tomorrow 17:00" for a reading, "Friday" for one without a time.
QString readingText(const due::Reading& reading);
// The words of `text` that the reading took out of the title (start and length of each), to mark them.
QVariantList spansRead(const QString& text, const QString& title);
// Why a to-do was not filed, in a calm sentence that says the words are kept.
QString refusalText(TodoRefusal refusal);

} // namespace norva::TodoWords
