#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace norva {

// A meeting the person keeps in Norva only: stored in Norva's own data folder ("meetings.json"),
// never written to a calendar folder.
struct ManualMeeting {
    QUuid id;
    QString title;
    QDateTime start;
    QDateTime end;
    std::optional<QUrl> joinUrl;

    QJsonObject toJson() const;
    static std::optional<ManualMeeting> fromJson(const QJsonObject& object);
    bool operator==(const ManualMeeting&) const = default;
};

} // namespace norva
