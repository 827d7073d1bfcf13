#include "calendar/MeetingActivity.h"

#include "activities/LiveActivityCoordinator.h"
#include "calendar/MeetingLinks.h"

namespace norva {
namespace {

constexpr qint64 kMinute = 60;

// Whole minutes left, rounded up: at 9 min 10 s the ear says "10 min", and "1 min" until the start.
qint64 minutesUntil(const QDateTime& start, const QDateTime& now)
{
    const qint64 seconds = now.secsTo(start);
    return (seconds + kMinute - 1) / kMinute;
}

QString durationText(qint64 minutes)
{
    if (minutes < kMinute)
        return QString::number(minutes) + QStringLiteral(" min");
    const qint64 rest = minutes % kMinute;
    QString text = QString::number(minutes / kMinute) + QStringLiteral(" h");
    if (rest > 0)
        text += QLatin1Char(' ') + QString::number(rest) + QStringLiteral(" min");
    return text;
}

} // namespace

const QString MeetingActivity::kId = QStringLiteral("meeting");

MeetingActivity::MeetingActivity(LiveActivityCoordinator& coordinator, Clock& clock,
                                 std::function<void(const Meeting&)> join, std::function<void()> openPage)
    : m_coordinator(coordinator), m_clock(clock), m_join(std::move(join)), m_openPage(std::move(openPage))
{}

MeetingActivity::~MeetingActivity()
{
    m_tick.cancel();
}

QString MeetingActivity::countdownText(const QDateTime& start, const QDateTime& end, const QDateTime& now)
{
    if (now >= start && now < end)
        return QStringLiteral("now");
    return durationText(std::max<qint64>(1, minutesUntil(start, now)));
}

void MeetingActivity::show(const std::optional<Meeting>& meeting)
{
    if (!meeting) {
        m_tick.cancel();
        if (m_meeting)
            m_coordinator.remove(kId);
        m_meeting.reset();
        return;
    }
    m_meeting = meeting;
    publish();
}

void MeetingActivity::publish()
{
    const Meeting& meeting = *m_meeting;
    const QDateTime now = m_clock.now();
    LiveActivity activity;
    activity.id = kId;
    activity.priority = kPriority;
    activity.content = ActivityContent::meeting();
    activity.text.title = meeting.title().isEmpty() ? QStringLiteral("Meeting") : meeting.title();
    activity.text.value = countdownText(meeting.start(), meeting.end(), now);
    const QString clock = Meeting::clockText(meeting.start(), QTimeZone::systemTimeZone());
    const bool running = now >= meeting.start();
    activity.text.detail = (running ? QStringLiteral("Started at ") : QStringLiteral("Starts at ")) + clock;
    if (const auto link = meeting.joinUrl()) {
        if (const auto service = MeetingLinks::serviceOf(*link))
            activity.text.detail += QStringLiteral(" · click to join on ") + service->service;
        activity.onTap = [join = m_join, meeting] { join(meeting); };
    } else {
        activity.onTap = m_openPage;
    }
    m_coordinator.upsert(std::move(activity));

    // The next moment the words change: the next whole minute of the countdown, or the start.
    qint64 wait = 0;
    if (!running) {
        const qint64 secondsLeft = now.secsTo(meeting.start());
        wait = secondsLeft % kMinute;
        if (wait == 0)
            wait = std::min<qint64>(kMinute, secondsLeft);
    }
    if (wait > 0)
        m_tick = m_clock.after(Seconds(double(wait)), [this] { publish(); });
    else
        m_tick.cancel(); // running: the manager's own tick takes it off at the end
}

} // namespace norva
