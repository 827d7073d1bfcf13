#include "agents/usage/UsageMonitor.h"

#include "agents/ApprovalsFolder.h"
#include "agents/ApprovalsFolderWatch.h"
#include "app/Log.h"

#include <QFileInfo>

namespace norva {
namespace {

// Re-reads now and then even without a change: a window must vanish when it resets, and the
// "resets in" words move on.
constexpr Seconds kRereadInterval{60};
// A reading older than this says little about the allowance any more (no Claude Code session has
// drawn its status line since), so it is hidden rather than shown stale.
constexpr double kStaleReadingSeconds = 6 * 3600;
constexpr qint64 kSecondsPerMinute = 60;
constexpr qint64 kSecondsPerHour = 3600;
constexpr qint64 kSecondsPerDay = 86400;
// Where a window's bar turns to a warning colour, and where it reads as used up.
constexpr int kHighPercent = 70;
constexpr int kFullPercent = 90;

const QString kPrefix = QStringLiteral("Norva agents: Claude usage");

} // namespace

UsageMonitor::UsageMonitor(Clock& clock, QString approvalsFolder, QObject* parent)
    : QObject(parent), m_clock(clock), m_folder(std::move(approvalsFolder)),
      m_windows(QStringLiteral("label"), this)
{}

UsageMonitor::~UsageMonitor() = default;

void UsageMonitor::start()
{
    if (!m_watch) {
        m_watch = new ApprovalsFolderWatch(m_folder, this);
        connect(m_watch, &ApprovalsFolderWatch::changed, this, &UsageMonitor::refresh);
    }
    m_watch->start();
    m_tick = m_clock.every(kRereadInterval, [this] {
        if (!m_watch->isWatching())
            m_watch->start();
        refresh();
    });
    refresh();
}

void UsageMonitor::stop()
{
    m_tick.cancel();
    if (m_watch)
        m_watch->stop();
}

void UsageMonitor::hide(const QString& line)
{
    if (line != m_lastReason)
        logLine(line);
    m_lastReason = line;
    if (available()) {
        m_limits = {};
        publish();
    }
}

void UsageMonitor::refresh()
{
    const ApprovalsFolder folder(m_folder);
    const QFileInfo info(folder.filePath(UsageBridge::limitsFile));
    if (!info.exists() && !info.isSymLink())
        return hide(kPrefix + QStringLiteral(": no statusline data yet (the usage bridge has not written "
                                             "rate-limits.json), hiding"));
    // Read through ApprovalsFolder, so a link planted under the name is never followed.
    const auto modified = folder.modified(UsageBridge::limitsFile);
    const auto bytes = folder.read(UsageBridge::limitsFile);
    if (!modified || !bytes)
        return hide(kPrefix + QStringLiteral(" is hidden (the file could not be read)"));
    const QDateTime now = m_clock.now();
    const double age = modified->secsTo(now);
    if (age > kStaleReadingSeconds)
        return hide(kPrefix + QStringLiteral(": the last reading is ") +
                    QString::number(qint64(age) / kSecondsPerHour) + QStringLiteral(" h old, hiding"));
    const UsageBridge::Reading reading = UsageBridge::parseLimits(*bytes, now);
    if (!reading.ok()) {
        if (reading.failure == QStringLiteral("not a JSON object"))
            return hide(kPrefix + QStringLiteral(" is hidden (rate_limits is not an object)"));
        if (reading.lastReset)
            return hide(kPrefix + QStringLiteral(": every window in the last reading has already reset at ") +
                        reading.lastReset->toUTC().toString(Qt::ISODate) + QStringLiteral(", hiding"));
        return hide(kPrefix + QStringLiteral(" is hidden (") + reading.failure + QLatin1Char(')'));
    }
    m_lastReason.clear();
    // The "resets in" words depend on now, so the view is told on every reading.
    m_limits = reading.limits;
    publish();
}

QString UsageMonitor::resetText(const QDateTime& at, const QDateTime& now)
{
    const qint64 seconds = std::max<qint64>(0, now.secsTo(at));
    const qint64 days = seconds / kSecondsPerDay;
    const qint64 hours = (seconds % kSecondsPerDay) / kSecondsPerHour;
    const qint64 minutes = (seconds % kSecondsPerHour) / kSecondsPerMinute;
    if (days > 0)
        return QStringLiteral("resets in %1 d %2 h").arg(days).arg(hours);
    if (hours > 0)
        return QStringLiteral("resets in %1 h %2 min").arg(hours).arg(minutes);
    return QStringLiteral("resets in %1 min").arg(std::max<qint64>(1, minutes));
}

void UsageMonitor::publish()
{
    m_windows.setRows(windowRows());
    emit windowsChanged();
}

QVariantList UsageMonitor::windowRows() const
{
    QVariantList list;
    const QDateTime now = m_clock.now();
    auto add = [&](const std::optional<UsageBridge::Window>& window, const QString& label) {
        if (window)
            list.append(QVariantMap{
                {QStringLiteral("label"), label},
                {QStringLiteral("percent"), window->percent},
                {QStringLiteral("level"), window->percent >= kFullPercent   ? QStringLiteral("full")
                                          : window->percent >= kHighPercent ? QStringLiteral("high")
                                                                            : QStringLiteral("normal")},
                {QStringLiteral("resetText"), resetText(window->resetsAt, now)}});
    };
    add(m_limits.fiveHour, QStringLiteral("5 hours"));
    add(m_limits.sevenDay, QStringLiteral("7 days"));
    return list;
}

} // namespace norva
