#include "calendar/VdirEventStore.h"

#include "app/Background.h"
#include "app/Log.h"
#include "calendar/EventReader.h"
#include "calendar/EventWriter.h"
#include "storage/ICalendarFile.h"
#include "storage/VdirCollection.h"
#include "storage/VdirWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <libical/ical.h>

namespace norva {

const QString VdirEventStore::kArea = QStringLiteral("Norva calendar");

namespace {

// One-off events do not depend on the window, so they are laid out once per version of their
// file, over a window wider than any Norva asks for.
const EventWindow kAllTime{QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC),
                           QDateTime(QDate(9999, 12, 31), QTime(0, 0), Qt::UTC)};

// What the meetings keep of one event file.
struct EventFileDigest {
    QList<EventInfo> oneOff;                        // the occurrences of its events that do not repeat
    std::shared_ptr<const ICalendarFile> repeating; // kept parsed when an event of it repeats
    QString failure;                                // why its events could not be read
};
using DigestPointer = std::shared_ptr<const EventFileDigest>;

bool holdsRepeatingEvent(const icalcomponent* calendar)
{
    auto* root = const_cast<icalcomponent*>(calendar); // libical's getters are not const; nothing changes
    for (icalcomponent* event = icalcomponent_get_first_component(root, ICAL_VEVENT_COMPONENT); event;
         event = icalcomponent_get_next_component(root, ICAL_VEVENT_COMPONENT)) {
        if (icalcomponent_get_first_property(event, ICAL_RRULE_PROPERTY) ||
            icalcomponent_get_first_property(event, ICAL_RDATE_PROPERTY) ||
            icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY))
            return true;
    }
    return false;
}

VdirDigest digestFor(const QTimeZone& zone)
{
    return [zone](const ICalendarFile& file) -> std::any {
        auto digest = std::make_shared<EventFileDigest>();
        if (!file.holds("VEVENT"))
            return DigestPointer(digest); // to-dos sharing the folder: nothing for the meetings
        if (holdsRepeatingEvent(file.calendar())) {
            // Read over an empty window only to learn whether its events can be read at all; the
            // occurrences are laid out for each window asked for.
            const QDateTime never = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
            digest->failure = EventReader::read(file.calendar(), {never, never}, zone).failure;
            if (digest->failure.isEmpty())
                digest->repeating = std::make_shared<const ICalendarFile>(file);
            return DigestPointer(digest);
        }
        EventReader::Result read = EventReader::read(file.calendar(), kAllTime, zone);
        digest->failure = read.failure;
        digest->oneOff = std::move(read.events);
        return DigestPointer(digest);
    };
}

DigestPointer digestOf(const VdirItem& item)
{
    const auto* digest = std::any_cast<DigestPointer>(&item.digest);
    return digest ? *digest : nullptr;
}

// Lays out the events of every readable file for the window (off the main thread).
EventStore::Snapshot snapshotOf(const VdirState& state, const EventWindow& window, const QTimeZone& zone)
{
    EventStore::Snapshot snapshot;
    snapshot.readable = state.rootReadable || !QFileInfo::exists(state.root);
    for (const VdirCollection& collection : state.collections)
        snapshot.calendars.append({collection.id, collection.displayName, collection.color});
    for (auto it = state.items.cbegin(); it != state.items.cend(); ++it) {
        const DigestPointer digest = digestOf(it.value());
        if (!digest || !digest->failure.isEmpty())
            continue;
        const EventOccurrence from{it->collectionId, QFileInfo(it.key()).fileName(), {}, {}};
        const auto place = [&](EventInfo event) {
            event.ekOccurrence.calendarId = from.calendarId;
            event.ekOccurrence.fileName = from.fileName;
            snapshot.events.append(std::move(event));
        };
        if (digest->repeating) {
            for (EventInfo& event : EventReader::read(digest->repeating->calendar(), window, zone).events)
                place(std::move(event));
            continue;
        }
        for (const EventInfo& event : digest->oneOff) {
            if (window.overlaps(event.start, event.end))
                place(event);
        }
    }
    return snapshot;
}

} // namespace

VdirEventStore::VdirEventStore(QString root, Clock& clock, QTimeZone zone, QObject* parent)
    : EventStore(parent), m_clock(clock), m_zone(std::move(zone)),
      m_watch(std::make_unique<VdirWatch>(std::move(root), kArea, digestFor(m_zone), clock))
{
    connect(m_watch.get(), &VdirWatch::changed, this, [this](const QStringList& paths) {
        // A file whose events cannot be read is told once per version of it, and left as it is.
        for (const QString& path : paths) {
            const DigestPointer digest = digestOf(m_watch->state().items.value(path));
            if (digest && !digest->failure.isEmpty())
                logLine(kArea + QStringLiteral(": did not read ") +
                        m_watch->state().items.value(path).collectionId + QLatin1Char('/') +
                        QFileInfo(path).fileName() + QStringLiteral(" (") + digest->failure +
                        QLatin1Char(')'));
        }
        if (m_waiting) {
            auto done = std::move(m_waiting);
            m_waiting = nullptr;
            fetch(m_waitingWindow, std::move(done));
        }
        emit changed();
    });
}

VdirEventStore::~VdirEventStore() = default;

const QString& VdirEventStore::root() const
{
    return m_watch->root();
}

bool VdirEventStore::hasLoaded() const
{
    return m_watch->hasLoaded();
}

void VdirEventStore::start()
{
    m_watch->start();
}

void VdirEventStore::fetch(const EventWindow& window, std::function<void(Snapshot)> done)
{
    if (!m_watch->hasLoaded()) {
        // The first read is still under way; this fetch answers once it is in.
        m_waiting = std::move(done);
        m_waitingWindow = window;
        return;
    }
    runOffMain<Snapshot>(
        this, [state = m_watch->state(), window, zone = m_zone] { return snapshotOf(state, window, zone); },
        std::move(done));
}

QString VdirEventStore::pathOf(const EventOccurrence& occurrence) const
{
    return QDir(QDir(root()).filePath(occurrence.calendarId)).filePath(occurrence.fileName);
}

std::optional<QString> VdirEventStore::add(const QString& calendarId, const EventDraft& draft)
{
    const auto calendar = VdirCollection::at(QDir(root()).filePath(calendarId));
    if (calendarId.isEmpty() || !calendar)
        return QStringLiteral("there is no calendar ") + calendarId;
    const QString uid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    const QByteArray text = EventWriter::newEvent(draft, uid, m_clock.now(), m_zone);
    if (auto why = writeCalendarItem(calendar->itemPathFor(uid), text))
        return why;
    m_watch->rescan(calendar->path);
    return std::nullopt;
}

std::optional<QString> VdirEventStore::change(const EventOccurrence& occurrence, const EventDraft& draft)
{
    const QString path = pathOf(occurrence);
    const ICalendarFile::Read read = ICalendarFile::read(path);
    if (!read.file)
        return read.reason;
    const auto text = EventWriter::changed(read.file->bytes(), occurrence, draft, m_clock.now(), m_zone);
    if (!text)
        return QStringLiteral("the event is no longer in ") + occurrence.fileName;
    if (auto why = writeCalendarItem(path, *text))
        return why;
    m_watch->rescan(QFileInfo(path).absolutePath());
    return std::nullopt;
}

std::optional<QString> VdirEventStore::remove(const EventOccurrence& occurrence)
{
    const QString path = pathOf(occurrence);
    if (occurrence.recurrenceId) {
        // One occurrence of a series: the series stays, without that occurrence.
        const ICalendarFile::Read read = ICalendarFile::read(path);
        if (!read.file)
            return read.reason;
        const auto text = EventWriter::withoutOccurrence(read.file->bytes(), occurrence);
        if (!text)
            return QStringLiteral("the event is no longer in ") + occurrence.fileName;
        if (auto why = writeCalendarItem(path, *text))
            return why;
    } else {
        QFile file(path);
        if (!file.remove())
            return file.errorString();
    }
    m_watch->rescan(QFileInfo(path).absolutePath());
    return std::nullopt;
}

} // namespace norva
