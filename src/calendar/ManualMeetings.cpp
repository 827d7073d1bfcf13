#include "calendar/ManualMeetings.h"

#include "app/Log.h"

#include <QDir>
#include <QJsonArray>

namespace norva {

const QString ManualMeetings::kFileName = QStringLiteral("meetings.json");

namespace {
const QString kArea = QStringLiteral("Norva calendar");
}

ManualMeetings::ManualMeetings(const QString& dataFolder, Clock& clock)
    : m_file(std::make_unique<StoredList>(QDir(dataFolder).filePath(kFileName), kArea, clock))
{
    m_file->setSnapshot([this] {
        QJsonArray array;
        for (const ManualMeeting& meeting : m_meetings)
            array.append(meeting.toJson());
        return array;
    });
}

void ManualMeetings::load()
{
    const QJsonArray stored = m_file->load();
    if (m_file->holdsUnreadable()) {
        logLine(QStringLiteral("Norva calendar: the Norva-only meetings did not load (") + kFileName +
                QStringLiteral(" could not be read)"));
    }
    m_meetings = m_file->decode<ManualMeeting>(stored, &ManualMeeting::fromJson);
}

int ManualMeetings::indexOf(const QUuid& id) const
{
    for (int i = 0; i < m_meetings.size(); ++i) {
        if (m_meetings[i].id == id)
            return i;
    }
    return -1;
}

void ManualMeetings::add(ManualMeeting meeting)
{
    if (meeting.id.isNull())
        meeting.id = QUuid::createUuid();
    m_meetings.append(std::move(meeting));
    m_file->later();
}

bool ManualMeetings::update(const ManualMeeting& meeting)
{
    const int index = indexOf(meeting.id);
    if (index < 0) {
        logLine(QStringLiteral(
            "Norva calendar: the Norva-only meetings were not saved (changing a Norva meeting: "
            "it is no longer there)"));
        return false;
    }
    m_meetings[index] = meeting;
    m_file->later();
    return true;
}

bool ManualMeetings::remove(const QUuid& id)
{
    const int index = indexOf(id);
    if (index < 0) {
        logLine(QStringLiteral(
            "Norva calendar: the Norva-only meetings were not saved (removing a Norva meeting: "
            "it is no longer there)"));
        return false;
    }
    m_meetings.removeAt(index);
    m_file->later();
    return true;
}

void ManualMeetings::saveManual()
{
    if (m_file->isPending())
        m_file->saveNow();
}

} // namespace norva
