#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace norva {

struct Reminder;

// A to-do that was cleared or deleted, kept in the preferences so that it can be made again.
// Stored as a JSON object with exactly "id", "title", "listName" and, when it had one, "due"
// and "dueHasTime".
struct Trashed {
    static constexpr int kCap = 50;

    QString id;
    QString title;
    QString listName;
    std::optional<QDateTime> due;
    std::optional<bool> dueHasTime;

    friend bool operator==(const Trashed&, const Trashed&) = default;

    static Trashed of(const Reminder& reminder);
    QJsonObject toJson() const;
    static std::optional<Trashed> fromJson(const QJsonObject& object);
};

// The trash with `fresh` added at the front: the most recently trashed first, at most `cap`, the
// oldest leaving first.
QList<Trashed> archiving(QList<Trashed> trash, const QList<Trashed>& fresh, int cap = Trashed::kCap);

} // namespace norva
