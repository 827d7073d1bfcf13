#pragma once

#include "app/Clock.h"
#include "calendar/EventStore.h"

#include <QTimeZone>

#include <memory>

namespace norva {

class VdirWatch;

// The person's calendars as vdir folders (one iCalendar file per event, one folder per
// calendar), shared with khal and vdirsyncer. The folder watch re-reads only files that changed;
// each file is digested once per version: its one-off events laid out on the time line, and
// repeating ones kept parsed so that any window can be expanded from them without reading again.
class VdirEventStore : public EventStore {
    Q_OBJECT
public:
    static const QString kArea; // "Norva calendar"

    VdirEventStore(QString root, Clock& clock, QTimeZone zone = QTimeZone::systemTimeZone(),
                   QObject* parent = nullptr);
    ~VdirEventStore() override;

    void start() override;
    void fetch(const EventWindow& window, std::function<void(Snapshot)> done) override;
    std::optional<QString> add(const QString& calendarId, const EventDraft& draft) override;
    std::optional<QString> change(const EventOccurrence& occurrence, const EventDraft& draft) override;
    std::optional<QString> remove(const EventOccurrence& occurrence) override;

    const QString& root() const;
    bool hasLoaded() const;

private:
    QString pathOf(const EventOccurrence& occurrence) const;

    Clock& m_clock;
    QTimeZone m_zone;
    std::unique_ptr<VdirWatch> m_watch;
    std::function<void(Snapshot)> m_waiting; // a fetch asked for before the first read finished
    EventWindow m_waitingWindow;
};

} // namespace norva
