#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace norva {

// One to-do as Norva shows it, made from a VTODO in one of the person's calendar folders.
struct Reminder {
    QString id; // the item's UID, unique among the lists
    QString title;
    std::optional<QDateTime> due; // a whole-day due is the start of its day, local time
    bool completed = false;
    QString listName;  // the list's display name
    QString listColor; // "#rrggbb" from the list's "color" file, or empty
    bool dueHasTime = false;
    int priority = 0;                  // as iCalendar stores it: 0 none, 1 highest ... 9 lowest
    std::optional<QString> listColour; // a colour chosen in Norva for the list
    QString listId;                    // the list's folder name
    QString path;                      // the item's file
    bool recurring = false;            // it has an RRULE: ticking it moves it to its next occurrence

    friend bool operator==(const Reminder&, const Reminder&) = default;
};

// One list of to-dos: a collection of the calendar folders that holds no events.
struct TodoList {
    QString id;
    QString name;
    QString color;
    QString path;
    friend bool operator==(const TodoList&, const TodoList&) = default;
};

enum class DueState { none, later, today, overdue };
enum class SmartList { today, scheduled, all };

// Whether a to-do is due later, today or is overdue at `now`. A timed to-do is overdue from its
// due minute on; a whole-day one only from the next day, since the day itself is still open.
DueState dueState(const Reminder& reminder, const QDateTime& now);

} // namespace norva
