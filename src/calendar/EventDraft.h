#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace norva {

// What the meeting forms hand over: a title, a time and an optional join link.
struct EventDraft {
    QString title;
    QDateTime start;
    QDateTime end;
    std::optional<QUrl> joinUrl;
    bool operator==(const EventDraft&) const = default;
};

} // namespace norva
