#pragma once

#include "app/Clock.h"
#include "calendar/Meeting.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace norva {

// Picks the meeting the closed notch offers: the next one that is a real meeting (not all-day, not
// cancelled, not declined by the person), from its lead time before the start until its end.
class FaceMeetingChooser {
public:
    // How long before its start a meeting shows on the closed notch, unless the person chose otherwise.
    static constexpr Seconds kDefaultLeadTime{10 * 60};

    struct Choice {
        std::optional<Meeting> meeting;
        // Meetings inside the lead time that were passed over, each with why it is not a meeting.
        QList<std::pair<Meeting, QString>> rejected;
    };

    // `addresses` are the person's own (lower-case); an invitation one of them declined is skipped.
    static Choice choose(const QList<Meeting>& merged, const QDateTime& now, Seconds leadTime,
                         const QSet<QString>& addresses);

    // Why a meeting never shows on the notch ("it is all-day"), or nothing when it may.
    static std::optional<QString> rejectionOf(const Meeting& meeting, const QSet<QString>& addresses);
};

} // namespace norva
