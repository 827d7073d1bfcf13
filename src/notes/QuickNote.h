#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

namespace norva {

// One quick note, stored in "notes.json" as an object with exactly the keys "id", "text",
// "category", "updatedAt" and "createdAt".
struct QuickNote {
    QUuid id;
    QString text;
    QString category; // empty for the general category
    QDateTime updatedAt;
    QDateTime createdAt;

    bool operator==(const QuickNote&) const = default;

    // The first line with something on it, trimmed: what a note is called in lists and files.
    QString firstLine() const;

    QJsonObject toJson() const;
    // LenientNote: a note whose id or text cannot be read is none; a missing category reads as
    // the general one and a missing time as the other time (or the epoch), so one damaged key
    // costs no more than it must.
    static std::optional<QuickNote> fromJson(const QJsonObject& object);
};

} // namespace norva
