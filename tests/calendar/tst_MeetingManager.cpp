#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TempHome.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "calendar/CalendarPageModel.h"
#include "calendar/ManualMeetings.h"
#include "calendar/MeetingManager.h"
#include "calendar/MeetingSettings.h"

#include <QTest>

using namespace norva;
using namespace std::chrono_literals;

namespace {

const QTimeZone kLondon("Europe/London");
const QDateTime kNow(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);

// The calendars as the manager sees them through its store: a list in memory, and writes that
// can be told to fail, as a full disk or a read-only folder would.
class ListedEventStore final : public EventStore {
public:
    QList<EventInfo> events;
    QList<CalendarInfo> calendars{
        {QStringLiteral("work"), QStringLiteral("Work"), QStringLiteral("#ff8800")}};
    std::optional<QString> failWith;
    int writes = 0;
    QList<EventWindow> windowsAsked;

    void start() override {}
    void fetch(const EventWindow& window, std::function<void(Snapshot)> done) override
    {
        windowsAsked.append(window);
        done({true, calendars, events});
    }
    std::optional<QString> add(const QString&, const EventDraft&) override { return write(); }
    std::optional<QString> change(const EventOccurrence&, const EventDraft&) override { return write(); }
    std::optional<QString> remove(const EventOccurrence&) override { return write(); }

private:
    std::optional<QString> write()
    {
        ++writes;
        return failWith;
    }
};

EventInfo calendarEvent(const QString& title, const QDateTime& start, int minutes)
{
    EventInfo info;
    info.title = title;
    info.start = start;
    info.end = start.addSecs(minutes * 60);
    info.ekOccurrence = {QStringLiteral("work"), title + QStringLiteral(".ics"), title, std::nullopt};
    return info;
}

struct Fixture {
    test::TempHome home;
    test::ManualClock clock{kNow};
    test::MemoryPreferences preferences;
    SettingsStore settings{preferences};
    MeetingSettings meetingSettings{settings};
    ListedEventStore store;
    ManualMeetings manual{home.path(), clock};
    QList<QUrl> opened;
    MeetingManager manager{clock, store, manual, meetingSettings, [this](const QUrl& url) {
                               opened << url;
                               return true;
                           }};
    Fixture() { manager.setTimeZone(kLondon); }
};

} // namespace

// The manager: the merged days, the notch's meeting over time, writes and their failures.
class MeetingManagerTest : public QObject {
    Q_OBJECT

private slots:
    void fetchesFromAnHourAgoToTwoWeeksAhead()
    {
        Fixture f;
        f.manager.beginRefreshing();
        QCOMPARE(f.store.windowsAsked.size(), 1);
        QCOMPARE(f.store.windowsAsked[0].from, kNow.addSecs(-3600));
        QCOMPARE(f.store.windowsAsked[0].to, kNow.addSecs(1209600));
        f.clock.advance(MeetingManager::kWindowRefresh);
        QCOMPARE(f.store.windowsAsked.size(), 2);
        QCOMPARE(f.store.windowsAsked[1].from, kNow);
    }

    void daysMergeNorvaMeetingsAndFollowTheLocalDay()
    {
        Fixture f;
        // 23:30 UTC on 18 November is still the 18th in London; 00:30 UTC is the 19th.
        f.store.events = {
            calendarEvent(QStringLiteral("Late"), QDateTime(QDate(2026, 11, 18), QTime(23, 30), Qt::UTC), 30),
            calendarEvent(QStringLiteral("Early"), QDateTime(QDate(2026, 11, 19), QTime(0, 30), Qt::UTC),
                          30)};
        f.manager.beginRefreshing();
        f.manager.addManualMeeting(
            {QStringLiteral("Coffee"), kNow.addSecs(3600), kNow.addSecs(5400), std::nullopt});
        const auto& days = f.manager.eventDays();
        QCOMPARE(days.size(), 2);
        QCOMPARE(days[0].day, QDate(2026, 11, 18));
        QCOMPARE(days[0].meetings.size(), 2);
        QCOMPARE(days[0].meetings[0].title(), QStringLiteral("Coffee"));
        QVERIFY(days[0].meetings[0].isNorvaOnly());
        QCOMPARE(days[1].meetings[0].title(), QStringLiteral("Early"));
        QCOMPARE(f.store.writes, 0); // a Norva-only meeting never reaches the calendars
    }

    void theNotchMeetingComesAtItsLeadTimeAndLeavesAtItsEnd()
    {
        Fixture f;
        EventInfo review = calendarEvent(QStringLiteral("Review"), kNow.addSecs(30 * 60), 30);
        review.joinUrl = QUrl(QStringLiteral("https://meet.google.com/abc-defg-hij"));
        EventInfo offsite = calendarEvent(QStringLiteral("Offsite"), kNow.addSecs(15 * 60), 60);
        offsite.allDay = true;
        f.store.events = {offsite, review};
        test::LogCapture log;
        f.manager.beginRefreshing();
        QVERIFY(!f.manager.faceMeeting());
        f.clock.advance(20min);
        QCOMPARE(f.manager.faceMeeting()->title(), QStringLiteral("Review"));
        QCOMPARE(log.count(QStringLiteral("it is not a meeting: it is all-day")), 1);
        f.clock.advance(40min);
        QVERIFY(!f.manager.faceMeeting());
        f.manager.refresh();
        QCOMPARE(log.count(QStringLiteral("it is not a meeting")), 1); // said once, not on every refresh
    }

    void theLeadTimeIsASetting()
    {
        Fixture f;
        f.meetingSettings.setLeadMinutes(45);
        f.store.events = {calendarEvent(QStringLiteral("Review"), kNow.addSecs(40 * 60), 30)};
        f.manager.beginRefreshing();
        QCOMPARE(f.manager.faceMeeting()->title(), QStringLiteral("Review"));
    }

    void failedWritesAreLoggedWithTheirAction_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<QString>("line");
        QTest::newRow("add") << 0
                             << "Norva calendar: an event was not saved (adding a Norva meeting: disk full)";
        QTest::newRow("change") << 1
                                << "Norva calendar: an event was not changed (changing an event: disk full)";
        QTest::newRow("delete") << 2
                                << "Norva calendar: an event was not deleted (deleting an event: disk full)";
    }
    void failedWritesAreLoggedWithTheirAction()
    {
        QFETCH(int, which);
        QFETCH(QString, line);
        Fixture f;
        f.store.failWith = QStringLiteral("disk full");
        f.manager.beginRefreshing();
        test::LogCapture log;
        const EventDraft draft{QStringLiteral("Sync"), kNow, kNow.addSecs(1800), std::nullopt};
        const EventOccurrence occurrence{
            QStringLiteral("work"), QStringLiteral("a.ics"), QStringLiteral("a"), {}};
        const bool done = which == 0   ? f.manager.addCalendarEvent(QStringLiteral("work"), draft)
                          : which == 1 ? f.manager.updateCalendarEvent(occurrence, draft)
                                       : f.manager.deleteCalendarEvent(occurrence);
        QVERIFY(!done);
        QCOMPARE(log.lines(), QStringList{line});
    }

    void norvaOnlyMeetingsAreKeptInTheDataFolder()
    {
        test::TempHome home;
        test::ManualClock clock(kNow);
        const EventDraft draft{QStringLiteral("Dentist"), kNow.addDays(1), kNow.addDays(1).addSecs(1800),
                               QUrl(QStringLiteral("https://whereby.com/dentist"))};
        {
            ManualMeetings manual(home.path(), clock);
            manual.load();
            manual.add({{}, draft.title, draft.start, draft.end, draft.joinUrl});
        } // a quit saves what waits
        ManualMeetings again(home.path(), clock);
        again.load();
        QCOMPARE(again.meetings().size(), 1);
        QCOMPARE(again.meetings()[0].title, QStringLiteral("Dentist"));
        QCOMPARE(again.meetings()[0].start, draft.start);
        QCOMPARE(again.meetings()[0].joinUrl, draft.joinUrl);
    }

    void unreadableNorvaMeetingsLeaveTheListEmptyAndTheFileAlone()
    {
        test::TempHome home;
        test::ManualClock clock(kNow);
        const QString path = home.write(ManualMeetings::kFileName, "{ not json");
        test::LogCapture log;
        ManualMeetings manual(home.path(), clock);
        manual.load();
        QVERIFY(manual.meetings().isEmpty());
        QVERIFY(log.contains(QStringLiteral("Norva calendar: the Norva-only meetings did not load (")));
        QCOMPARE(test::TempHome::read(path), QByteArray("{ not json"));
    }

    void theAddressOnMostInvitationsIsTakenAsThePersons()
    {
        Fixture f;
        for (int i = 0; i < 3; ++i) {
            EventInfo invitation = calendarEvent(QStringLiteral("Invite %1").arg(i), kNow.addDays(i + 1), 30);
            invitation.attendees = {{QStringLiteral("ada@example.com"), false},
                                    {QStringLiteral("guest%1@example.com").arg(i), false}};
            f.store.events << invitation;
        }
        f.manager.beginRefreshing();
        QCOMPARE(f.meetingSettings.addresses(), QSet<QString>{QStringLiteral("ada@example.com")});
    }

    void theFormSavesAndJoinsThroughThePage()
    {
        Fixture f;
        f.manager.beginRefreshing();
        CalendarPageModel page(f.manager, f.clock);
        QVariantMap form = page.formFor({});
        QCOMPARE(form.value(QStringLiteral("calendar")).toString(), QStringLiteral("work"));
        form[QStringLiteral("title")] = QStringLiteral("Planning");
        form[QStringLiteral("calendar")] = CalendarPageModel::kNorvaOnly;
        form[QStringLiteral("start")] = QStringLiteral("10:05");
        form[QStringLiteral("date")] = QStringLiteral("2026-11-18");
        form[QStringLiteral("link")] =
            QStringLiteral("Join Zoom Meeting https://acme.zoom.us/j/123?pwd=x. Passcode 1");
        QVERIFY(page.save(form));
        QCOMPARE(page.days()->count(), 1);
        const QVariantMap row = page.days()->get(0).value(QStringLiteral("events")).toList()[0].toMap();
        QCOMPARE(row.value(QStringLiteral("calendar")).toString(), QStringLiteral("Norva only"));
        QVERIFY(row.value(QStringLiteral("canJoin")).toBool());
        QVERIFY(page.join(row.value(QStringLiteral("key")).toString()));
        QCOMPARE(f.opened, QList<QUrl>{QUrl(QStringLiteral("https://acme.zoom.us/j/123?pwd=x"))});

        form[QStringLiteral("start")] = QStringLiteral("half past");
        QVERIFY(!page.save(form));
        QVERIFY(page.notice().contains(QStringLiteral("Your words are still here.")));

        // The calendar chosen for a new event is offered first next time.
        f.store.calendars.append({QStringLiteral("home"), QStringLiteral("Home"), QString()});
        f.manager.refresh();
        QVERIFY(f.manager.addCalendarEvent(QStringLiteral("home"),
                                           {QStringLiteral("Gym"), kNow, kNow, std::nullopt}));
        QCOMPARE(page.formFor({}).value(QStringLiteral("calendar")).toString(), QStringLiteral("home"));
    }
};

NORVA_TEST(MeetingManagerTest)
#include "tst_MeetingManager.moc"
