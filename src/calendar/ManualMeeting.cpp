#include "calendar/ManualMeeting.h"

namespace norva {
namespace {

// The stored names of the fields (the list file's keys).
namespace Keys {
const QString id = QStringLiteral("id");
const QString title = QStringLiteral("title");
const QString start = QStringLiteral("start");
const QString end = QStringLiteral("end");
const QString joinUrl = QStringLiteral("joinURL");
} // namespace Keys

QString instantText(const QDateTime& instant)
{
    return instant.toUTC().toString(Qt::ISODateWithMs);
}

} // namespace

QJsonObject ManualMeeting::toJson() const
{
    QJsonObject object{{Keys::id, id.toString(QUuid::WithoutBraces)},
                       {Keys::title, title},
                       {Keys::start, instantText(start)},
                       {Keys::end, instantText(end)}};
    if (joinUrl)
        object.insert(Keys::joinUrl, joinUrl->toString(QUrl::FullyEncoded));
    return object;
}

std::optional<ManualMeeting> ManualMeeting::fromJson(const QJsonObject& object)
{
    ManualMeeting meeting;
    meeting.id = QUuid::fromString(object.value(Keys::id).toString());
    meeting.title = object.value(Keys::title).toString();
    meeting.start = QDateTime::fromString(object.value(Keys::start).toString(), Qt::ISODateWithMs);
    meeting.end = QDateTime::fromString(object.value(Keys::end).toString(), Qt::ISODateWithMs);
    if (meeting.id.isNull() || !meeting.start.isValid() || !meeting.end.isValid())
        return std::nullopt;
    const QString link = object.value(Keys::joinUrl).toString();
    if (!link.isEmpty())
        meeting.joinUrl = QUrl(link);
    return meeting;
}

} // namespace norva
