#include "LogCapture.h"
#include "ManualClock.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "calendar/FaceMeetingChooser.h"
#include "calendar/MeetingActivity.h"

#include <QTest>

using namespace norva;
using namespace std::chrono_literals;

namespace {

const QDateTime kNow(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);

EventInfo calendarEvent(const QString& title, int startMinutes, int lengthMinutes)
{
    EventInfo info;
    info.title = title;
    info.start = kNow.addSecs(startMinutes * 60);
    info.end = info.start.addSecs(lengthMinutes * 60);
    info.ekOccurrence = {QStringLiteral("work"), title + QStringLiteral(".ics"), title, std::nullopt};
    return info;
}

ManualMeeting ownMeeting(const QString& title, int startMinutes, int lengthMinutes)
{
    return {QUuid::createUuid(), title, kNow.addSecs(startMinutes * 60),
            kNow.addSecs((startMinutes + lengthMinutes) * 60),
            QUrl(QStringLiteral("https://whereby.com/room"))};
}

} // namespace

Q_DECLARE_METATYPE(norva::Meeting)

// Which meeting the closed notch offers, and how its countdown reads.
class FaceMeetingTest : public QObject {
    Q_OBJECT

private slots:
    void theNextRealMeetingIsChosen_data()
    {
        QTest::addColumn<QList<Meeting>>("meetings");
        QTest::addColumn<QString>("chosen"); // empty: none
        QTest::addColumn<QStringList>("rejected");

        EventInfo allDay = calendarEvent(QStringLiteral("Offsite"), -60, 24 * 60);
        allDay.allDay = true;
        EventInfo cancelled = calendarEvent(QStringLiteral("Retro"), 5, 30);
        cancelled.cancelled = true;
        EventInfo declined = calendarEvent(QStringLiteral("All hands"), 5, 30);
        declined.attendees = {{QStringLiteral("ada@example.com"), true},
                              {QStringLiteral("bob@example.com"), false}};
        EventInfo declinedBySomeoneElse = calendarEvent(QStringLiteral("Design"), 8, 30);
        declinedBySomeoneElse.attendees = {{QStringLiteral("bob@example.com"), true}};

        QTest::newRow("inside the lead time") << QList<Meeting>{calendarEvent(QStringLiteral("Sync"), 9, 30)}
                                              << QStringLiteral("Sync") << QStringList{};
        QTest::newRow("beyond the lead time")
            << QList<Meeting>{calendarEvent(QStringLiteral("Sync"), 11, 30)} << QString() << QStringList{};
        QTest::newRow("running") << QList<Meeting>{calendarEvent(QStringLiteral("Sync"), -5, 30)}
                                 << QStringLiteral("Sync") << QStringList{};
        QTest::newRow("over") << QList<Meeting>{calendarEvent(QStringLiteral("Sync"), -30, 30)} << QString()
                              << QStringList{};
        QTest::newRow("the next one takes over from a running one")
            << QList<Meeting>{calendarEvent(QStringLiteral("Long"), -50, 120),
                              calendarEvent(QStringLiteral("Next"), 4, 30)}
            << QStringLiteral("Next") << QStringList{};
        QTest::newRow("all-day, cancelled and declined are not meetings")
            << QList<Meeting>{allDay, cancelled, declined, calendarEvent(QStringLiteral("Later"), 60, 30)}
            << QString()
            << QStringList{"Offsite: it is all-day", "Retro: it is cancelled", "All hands: you declined it"};
        QTest::newRow("declined by someone else still counts")
            << QList<Meeting>{declinedBySomeoneElse} << QStringLiteral("Design") << QStringList{};
        QTest::newRow("a Norva-only meeting counts")
            << QList<Meeting>{ownMeeting(QStringLiteral("Coffee"), 2, 15)} << QStringLiteral("Coffee")
            << QStringList{};
    }
    void theNextRealMeetingIsChosen()
    {
        QFETCH(QList<Meeting>, meetings);
        QFETCH(QStringList, rejected);
        const auto choice = FaceMeetingChooser::choose(meetings, kNow, FaceMeetingChooser::kDefaultLeadTime,
                                                       {QStringLiteral("ada@example.com")});
        QTEST(choice.meeting ? choice.meeting->title() : QString(), "chosen");
        QStringList why;
        for (const auto& [meeting, reason] : choice.rejected)
            why << meeting.title() + QStringLiteral(": ") + reason;
        QCOMPARE(why, rejected);
    }

    void countdownReads_data()
    {
        QTest::addColumn<int>("secondsToStart");
        QTest::addColumn<QString>("text");
        QTest::newRow("ten minutes") << 600 << QStringLiteral("10 min");
        QTest::newRow("rounded up") << 541 << QStringLiteral("10 min");
        QTest::newRow("on the minute") << 540 << QStringLiteral("9 min");
        QTest::newRow("last seconds") << 20 << QStringLiteral("1 min");
        QTest::newRow("an hour and more") << 3900 << QStringLiteral("1 h 5 min");
        QTest::newRow("started") << 0 << QStringLiteral("now");
        QTest::newRow("running") << -600 << QStringLiteral("now");
    }
    void countdownReads()
    {
        QFETCH(int, secondsToStart);
        const QDateTime start = kNow.addSecs(secondsToStart);
        QTEST(MeetingActivity::countdownText(start, start.addSecs(1800), kNow), "text");
    }

    // The activity counts down by itself on the clock, says "now" at the start, and joins on a click.
    void activityCountsDownAndJoins()
    {
        test::ManualClock clock(kNow);
        LiveActivityCoordinator coordinator(clock);
        QList<Meeting> joined;
        int pagesOpened = 0;
        MeetingActivity activity(
            coordinator, clock, [&](const Meeting& meeting) { joined << meeting; }, [&] { ++pagesOpened; });
        EventInfo sync = calendarEvent(QStringLiteral("Sync"), 2, 30);
        sync.joinUrl = QUrl(QStringLiteral("https://acme.zoom.us/j/1"));
        activity.show(Meeting(sync));
        const auto value = [&] { return coordinator.find(MeetingActivity::kId)->text.value; };
        QCOMPARE(value(), QStringLiteral("2 min"));
        QCOMPARE(coordinator.find(MeetingActivity::kId)->content.kind(), ActivityContent::Kind::meeting);
        QVERIFY(coordinator.find(MeetingActivity::kId)
                    ->text.detail.endsWith(QStringLiteral("click to join on Zoom")));
        clock.advance(59s);
        QCOMPARE(value(), QStringLiteral("2 min"));
        clock.advance(1s);
        QCOMPARE(value(), QStringLiteral("1 min"));
        clock.advance(60s);
        QCOMPARE(value(), QStringLiteral("now"));
        coordinator.find(MeetingActivity::kId)->onTap();
        QCOMPARE(joined.size(), 1);
        QCOMPARE(pagesOpened, 0);
        // A meeting without a link has nothing to join: a tap opens the page.
        activity.show(Meeting(calendarEvent(QStringLiteral("Walk"), 5, 30)));
        coordinator.find(MeetingActivity::kId)->onTap();
        QCOMPARE(joined.size(), 1);
        QCOMPARE(pagesOpened, 1);

        activity.show(std::nullopt);
        QVERIFY(!coordinator.find(MeetingActivity::kId));
        QCOMPARE(clock.pendingCount(), 0);
    }
};

NORVA_TEST(FaceMeetingTest)
#include "tst_FaceMeeting.moc"
