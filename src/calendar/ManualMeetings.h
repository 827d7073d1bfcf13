#pragma once

#include "app/Clock.h"
#include "calendar/ManualMeeting.h"
#include "storage/StoredList.h"

#include <QList>

#include <memory>

namespace norva {

// The meetings the person keeps in Norva only, in "meetings.json" in Norva's data folder.
// Never written to a calendar folder, so khal and the person's server never see them.
class ManualMeetings {
public:
    static const QString kFileName; // "meetings.json"

    ManualMeetings(const QString& dataFolder, Clock& clock);

    // Reads the file; an unreadable one leaves the list empty and is logged.
    void load();
    const QList<ManualMeeting>& meetings() const { return m_meetings; }

    void add(ManualMeeting meeting);
    // False when no meeting has that id (it was removed meanwhile); logged with the action's words.
    bool update(const ManualMeeting& meeting);
    bool remove(const QUuid& id);
    // Writes a waiting save now (at quit).
    void saveManual();

private:
    int indexOf(const QUuid& id) const;

    QList<ManualMeeting> m_meetings;
    std::unique_ptr<StoredList> m_file;
};

} // namespace norva
