// Feeds arbitrary bytes to the event reader and the link finder, under AddressSanitizer and
// UndefinedBehaviorSanitizer: event files come from other programs and from servers through
// vdirsyncer, so nothing in them may crash Norva or hold it up. Built and run by run.sh.
#include "calendar/EventReader.h"
#include "calendar/MeetingLinks.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    static const QTimeZone local("Europe/London");
    static const norva::EventWindow window{QDateTime(QDate(2026, 11, 18), QTime(9, 0), Qt::UTC),
                                           QDateTime(QDate(2026, 12, 2), QTime(10, 0), Qt::UTC)};
    const auto result = norva::EventReader::read(bytes, window, local);
    for (const norva::EventInfo& event : result.events) {
        if (!event.start.isValid() || event.end < event.start)
            __builtin_trap(); // every occurrence the reader hands out has a real time span
    }
    norva::MeetingLinks::detectMeetingLink(QString::fromUtf8(bytes));
    return 0;
}
