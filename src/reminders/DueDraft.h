#pragma once

#include "app/Clock.h"
#include "reminders/DueParser.h"
#include "reminders/TodoDraft.h"

#include <QString>
#include <QVariantList>

#include <optional>

namespace norva {

// A to-do being typed, as the To-dos page's add field and the jot sheet hold it: its words, the
// due read from them while they are typed (one line only), and whether the person dropped that
// reading to keep the words in the title.
class DueDraft {
public:
    explicit DueDraft(Clock& clock) : m_clock(clock) {}

    // False when the text did not change. An emptied draft forgets a dropped reading.
    bool setText(const QString& text);
    void dropReading();
    void clear();

    const QString& text() const { return m_text; }
    const std::optional<due::Reading>& reading() const { return m_reading; }
    // "Tomorrow 17:00", empty when nothing was read.
    QString readingText() const;
    // Where the words that were read stand in the text, to mark them.
    QVariantList spans() const;
    // The reading of any text now, whatever the draft holds.
    std::optional<due::Reading> read(const QString& text) const;
    // One line as the store files it: the title without the due words and the due, unless the
    // reading was dropped or left no title.
    TodoDraft::Filing filing(const QString& line, const std::optional<QString>& list) const;

private:
    void reread();

    Clock& m_clock;
    due::DueParser m_parser;
    QString m_text;
    std::optional<due::Reading> m_reading;
    bool m_dropped = false;
};

} // namespace norva
