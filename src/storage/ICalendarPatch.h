#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

struct icalproperty_impl;
using icalproperty = struct icalproperty_impl;

namespace norva {

// Edits a calendar item as text, so that everything Norva does not touch (X- properties, alarms,
// categories, attachments, another program's line folding) stays byte for byte as it was.
// Only the content lines of the named properties of one component are replaced.
class ICalendarPatch {
public:
    // `kind` is the component to edit ("VTODO", "VEVENT"); `uid` picks it when the file holds
    // several (empty: the first). The master component is edited, never a RECURRENCE-ID exception.
    ICalendarPatch(QByteArray kind, QByteArray uid);

    // Replaces every line of the property with this one (libical writes and folds it); the
    // property is freed here.
    ICalendarPatch& set(icalproperty* property);
    // Replaces every line of the property `name` with these properties (none: removes it).
    ICalendarPatch& setAll(const QByteArray& name, const QList<icalproperty*>& properties);
    ICalendarPatch& remove(const QByteArray& name) { return setAll(name, {}); }

    // The bytes with the changes made, or nothing when the component is not in them.
    std::optional<QByteArray> applyTo(const QByteArray& bytes) const;

    // The content line libical writes for a property (CRLF, folded at 75 octets).
    static QByteArray contentLine(icalproperty* property);

private:
    struct Change {
        QByteArray name;
        QByteArray lines;
    };
    QByteArray m_kind;
    QByteArray m_uid;
    QList<Change> m_changes;
};

} // namespace norva
