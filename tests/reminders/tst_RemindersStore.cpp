#include "CalendarFixtures.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"
#include "TodomanRig.h"

#include "app/SettingsStore.h"
#include "reminders/RemindersStore.h"

#include <QtTest>

using StoreWrite = std::function<void(norva::RemindersStore&)>;
Q_DECLARE_METATYPE(StoreWrite)

using namespace norva;
using namespace norva::test;

namespace {

// A store over the rig's folders, loaded.
struct LoadedStore {
    MemoryPreferences preferences;
    SettingsStore settings{preferences};
    RemindersStore store;
    QSignalSpy changed{&store, &RemindersStore::changed};

    LoadedStore(const QString& root, ManualClock& clock) : store(root, settings, clock)
    {
        store.start();
        QTRY_VERIFY(changed.count() > 0);
    }
    Reminder only(const QString& title) const
    {
        for (const Reminder& r : store.reminders())
            if (r.title == title)
                return r;
        return {};
    }
};

QJsonObject todomanEntry(const QJsonArray& list, const QString& summary)
{
    for (const auto& value : list)
        if (value.toObject().value(QStringLiteral("summary")).toString() == summary)
            return value.toObject();
    return {};
}

// The lines of a file that differ from another's, apart from those named.
QList<QByteArray> otherLinesThatDiffer(const QByteArray& before, const QByteArray& after,
                                       const QList<QByteArray>& allowed)
{
    auto keep = [&](const QByteArray& bytes) {
        QList<QByteArray> lines;
        for (const QByteArray& line : bytes.split('\n')) {
            const QByteArray name = line.left(line.indexOf(':')).split(';').first();
            if (!allowed.contains(name))
                lines.append(line);
        }
        return lines;
    };
    const auto a = keep(before);
    const auto b = keep(after);
    QList<QByteArray> differ;
    for (qsizetype i = 0; i < std::max(a.size(), b.size()); ++i)
        if (a.value(i) != b.value(i))
            differ.append(a.value(i) + " | " + b.value(i));
    return differ;
}

} // namespace

class RemindersStoreTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        if (!TodomanRig::hasTodoman())
            QSKIP("todoman is not installed (tools/install-deps.sh --with-tests)");
    }

    void aToDoMadeWithTodomanAppearsInNorva()
    {
        TodomanRig rig;
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        QCOMPARE(loaded.store.access(), RemindersStore::Access::granted);
        QCOMPARE(loaded.store.lists().size(), 2);
        rig.todoman({QStringLiteral("new"), QStringLiteral("-l"), QStringLiteral("home"),
                     QStringLiteral("--due"), QStringLiteral("2026-11-20 17:00"),
                     QStringLiteral("call mum")});
        QVERIFY(settleStore(clock, loaded.changed));
        const Reminder mum = loaded.only(QStringLiteral("call mum"));
        QCOMPARE(mum.listName, QStringLiteral("home"));
        QVERIFY(mum.dueHasTime);
        QCOMPARE(mum.due->toMSecsSinceEpoch(),
                 QDateTime(QDate(2026, 11, 20), QTime(17, 0), Qt::LocalTime).toMSecsSinceEpoch());
        QVERIFY(!mum.completed);
    }

    void whatNorvaDoesShowsInTodoman()
    {
        TodomanRig rig;
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        const QDateTime due(QDate(2026, 11, 19), QTime(16, 0), Qt::UTC);
        QVERIFY(!loaded.store.addReminder({QStringLiteral("pay rent"), QStringLiteral("work"), due, true}));
        QVERIFY(
            !loaded.store.addReminder({QStringLiteral("water plants"), QStringLiteral("work"), {}, false}));
        QJsonObject rent = todomanEntry(rig.todomanList(), QStringLiteral("pay rent"));
        QCOMPARE(rent.value(QStringLiteral("list")).toString(), QStringLiteral("work"));
        QCOMPARE(rent.value(QStringLiteral("due")).toInteger(), due.toSecsSinceEpoch());
        QCOMPARE(rent.value(QStringLiteral("completed")).toBool(), false);

        const QString id = loaded.only(QStringLiteral("pay rent")).id;
        QVERIFY(loaded.store.toggle(id));
        QCOMPARE(todomanEntry(rig.todomanList(), QStringLiteral("pay rent"))
                     .value(QStringLiteral("completed"))
                     .toBool(),
                 true);
        QVERIFY(settleStore(clock, loaded.changed));
        QVERIFY(loaded.store.reminder(id)->completed);

        const QString plants = loaded.only(QStringLiteral("water plants")).id;
        QVERIFY(loaded.store.moveToList(plants, QStringLiteral("home")));
        QCOMPARE(todomanEntry(rig.todomanList(), QStringLiteral("water plants"))
                     .value(QStringLiteral("list"))
                     .toString(),
                 QStringLiteral("home"));
        QVERIFY(settleStore(clock, loaded.changed));
        QCOMPARE(loaded.store.reminder(plants)->listId, QStringLiteral("home"));

        QVERIFY(loaded.store.trashTask(plants));
        QVERIFY(todomanEntry(rig.todomanList(), QStringLiteral("water plants")).isEmpty());
        QCOMPARE(loaded.store.trash().size(), 1);
        QVERIFY(loaded.store.restore(0));
        QCOMPARE(todomanEntry(rig.todomanList(), QStringLiteral("water plants"))
                     .value(QStringLiteral("list"))
                     .toString(),
                 QStringLiteral("home"));
        QVERIFY(loaded.store.trash().isEmpty());
    }

    void anEditLeavesWhatNorvaDoesNotShowByteForByte()
    {
        TodomanRig rig;
        const QByteArray before = todomanTodo("keep-1", "call mum");
        const QString path = rig.home.write(QStringLiteral("cals/work/keep-1.ics"), before);
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        QVERIFY(loaded.store.toggle(QStringLiteral("keep-1")));
        QVERIFY(loaded.store.rename(QStringLiteral("keep-1"), QStringLiteral("call dad")));
        const QByteArray after = TempHome::read(path);
        QCOMPARE(otherLinesThatDiffer(
                     before, after,
                     {"SUMMARY", "STATUS", "COMPLETED", "PERCENT-COMPLETE", "DTSTAMP", "LAST-MODIFIED"}),
                 QList<QByteArray>{});
        QVERIFY(after.contains("SUMMARY:call dad\r\n"));
        QVERIFY(after.contains("STATUS:COMPLETED\r\n"));
        // todoman reads the edited file as done and renamed.
        const QJsonObject entry = todomanEntry(rig.todomanList(), QStringLiteral("call dad"));
        QCOMPARE(entry.value(QStringLiteral("completed")).toBool(), true);
    }

    void tickingARepeatingToDoMovesItToItsNextOccurrence_data()
    {
        QTest::addColumn<QByteArray>("rule");
        QTest::addColumn<QByteArray>("nextDue");
        QTest::addColumn<QByteArray>("nextRule");
        QTest::addColumn<bool>("completed");
        QTest::newRow("weekly") << QByteArray("FREQ=WEEKLY") << QByteArray("DUE:20261125T090000Z")
                                << QByteArray("RRULE:FREQ=WEEKLY") << false;
        QTest::newRow("counted") << QByteArray("FREQ=DAILY;COUNT=3") << QByteArray("DUE:20261119T090000Z")
                                 << QByteArray("RRULE:FREQ=DAILY;COUNT=2") << false;
        QTest::newRow("last of its count")
            << QByteArray("FREQ=DAILY;COUNT=1") << QByteArray("DUE:20261118T090000Z")
            << QByteArray("RRULE:FREQ=DAILY;COUNT=1") << true;
        QTest::newRow("past its end")
            << QByteArray("FREQ=DAILY;UNTIL=20261118T235959Z") << QByteArray("DUE:20261118T090000Z")
            << QByteArray("RRULE:FREQ=DAILY;UNTIL=20261118T235959Z") << true;
    }
    void tickingARepeatingToDoMovesItToItsNextOccurrence()
    {
        QFETCH(QByteArray, rule);
        QFETCH(QByteArray, nextDue);
        QFETCH(QByteArray, nextRule);
        QFETCH(bool, completed);
        TodomanRig rig;
        const QString path = rig.home.write(
            QStringLiteral("cals/work/r.ics"),
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\nBEGIN:VTODO\r\nUID:r\r\nSUMMARY:bins out\r\n"
            "DUE:20261118T090000Z\r\nRRULE:" +
                rule + "\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        QVERIFY(loaded.store.reminder(QStringLiteral("r"))->recurring);
        QVERIFY(loaded.store.toggle(QStringLiteral("r")));
        const QByteArray after = TempHome::read(path);
        QVERIFY2(after.contains(nextDue + "\r\n"), after.constData());
        QVERIFY2(after.contains(nextRule + "\r\n"), after.constData());
        QCOMPARE(after.contains("STATUS:COMPLETED"), completed);
        QVERIFY(settleStore(clock, loaded.changed));
        QCOMPARE(loaded.store.reminder(QStringLiteral("r"))->completed, completed);
    }

    void badFilesAreSkippedWithOneLineEachAndKept()
    {
        TodomanRig rig;
        LogCapture log;
        QMap<QString, QByteArray> bad;
        bad[QStringLiteral("truncated.ics")] = todomanTodo("t", "x").left(60);
        bad[QStringLiteral("binary.ics")] = QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
        bad[QStringLiteral("huge.ics")] =
            "BEGIN:VCALENDAR\r\n" + QByteArray(10 * 1024 * 1024, 'X') + "\r\nEND:VCALENDAR\r\n";
        QByteArray many = "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:m\r\n";
        for (int i = 0; i < 10000; ++i)
            many += "X-P" + QByteArray::number(i) + ":v\r\n";
        bad[QStringLiteral("many.ics")] = many + "END:VTODO\r\nEND:VCALENDAR\r\n";
        bad[QStringLiteral("deep.ics")] = "BEGIN:VCALENDAR\r\n" +
                                          QByteArray("BEGIN:VALARM\r\n").repeated(3000) +
                                          QByteArray("END:VALARM\r\n").repeated(3000) + "END:VCALENDAR\r\n";
        for (auto it = bad.cbegin(); it != bad.cend(); ++it)
            rig.home.write(QStringLiteral("cals/work/") + it.key(), it.value());
        QVERIFY(QFile::link(QStringLiteral("/etc/shadow"), rig.root + QStringLiteral("/work/shadow.ics")));
        rig.home.write(QStringLiteral("cals/work/good.ics"), todomanTodo("good", "still here"));
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        QCOMPARE(loaded.store.reminders().size(), 1);
        QCOMPARE(loaded.store.reminders().first().title, QStringLiteral("still here"));
        QCOMPARE(log.count(QStringLiteral("Norva reminders: did not read work/")), 6);
        QCOMPARE(log.lines().size(), 6);
        for (auto it = bad.cbegin(); it != bad.cend(); ++it)
            QVERIFY(TempHome::read(rig.root + QStringLiteral("/work/") + it.key()) == it.value());
        // An edit in the same list leaves them alone and does not log them again.
        QVERIFY(loaded.store.toggle(QStringLiteral("good")));
        QVERIFY(settleStore(clock, loaded.changed));
        QCOMPARE(log.lines().size(), 6);
    }

    void aCollectionWithEventsIsLeftToTheMeetings()
    {
        TodomanRig rig;
        rig.home.write(
            QStringLiteral("cals/personal/e.ics"),
            "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:e\r\nSUMMARY:lunch\r\nDTSTART:20261118T120000Z\r\n"
            "END:VEVENT\r\nEND:VCALENDAR\r\n");
        rig.home.write(QStringLiteral("cals/personal/t.ics"), todomanTodo("t", "in a calendar"));
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        QCOMPARE(loaded.store.lists().size(), 2);
        QVERIFY(!loaded.store.reminder(QStringLiteral("t")));
    }

    void clearingSixtyKeepsTheFiftyMostRecentInTheTrash()
    {
        TodomanRig rig;
        for (int i = 0; i < 60; ++i)
            rig.home.write(QStringLiteral("cals/work/%1.ics").arg(i),
                           "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nUID:" + QByteArray::number(i) +
                               "\r\nSUMMARY:t" + QByteArray::number(i) +
                               "\r\nSTATUS:COMPLETED\r\nEND:VTODO\r\nEND:VCALENDAR\r\n");
        rig.home.write(QStringLiteral("cals/work/open.ics"), todomanTodo("open", "still open"));
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        loaded.store.trashTask(QStringLiteral("open")); // trashed before the clear: the oldest
        QVERIFY(loaded.store.clearCompleted(SmartList::all));
        const QList<Trashed> trash = loaded.store.trash();
        QCOMPARE(trash.size(), Trashed::kCap);
        QVERIFY(std::none_of(trash.cbegin(), trash.cend(),
                             [](const Trashed& t) { return t.id == QStringLiteral("open"); }));
        QCOMPARE(QDir(rig.root + QStringLiteral("/work")).entryList(QDir::Files).size(), 0);
    }

    void theManualOrderLeadsAndForgetsToDosThatLeft()
    {
        TodomanRig rig;
        for (const char* id : {"a", "b", "c"})
            rig.home.write(QStringLiteral("cals/work/%1.ics").arg(QLatin1String(id)), todomanTodo(id, id));
        ManualClock clock;
        LoadedStore loaded(rig.root, clock);
        auto titles = [&] {
            QStringList t;
            for (const Reminder& r : loaded.store.rows(QStringLiteral("work"), false))
                t.append(r.title);
            return t;
        };
        QCOMPARE(titles(), (QStringList{"a", "b", "c"}));
        loaded.store.move({QStringLiteral("c"), QStringLiteral("a")});
        QCOMPARE(titles(), (QStringList{"c", "a", "b"}));
        QVERIFY(QFile::remove(rig.root + QStringLiteral("/work/c.ics")));
        QVERIFY(settleStore(clock, loaded.changed));
        QCOMPARE(titles(), (QStringList{"a", "b"}));
        QCOMPARE(loaded.preferences.value(QStringLiteral("todos.order.v1"))->toString(),
                 QStringLiteral("[\"a\"]"));
    }

    void withoutAFolderThereIsNoAccessUntilAListIsMade()
    {
        TempHome home;
        ManualClock clock;
        LoadedStore loaded(home.file(QStringLiteral("calendars")), clock);
        QCOMPARE(loaded.store.access(), RemindersStore::Access::noFolder);
        QCOMPARE(loaded.store.addReminder({QStringLiteral("x"), {}, {}, false}), TodoRefusal::denied);
        const auto list = loaded.store.createList(QStringLiteral("To-dos"));
        QVERIFY(list);
        QCOMPARE(loaded.store.access(), RemindersStore::Access::granted);
        QVERIFY(!loaded.store.addReminder({QStringLiteral("x"), {}, {}, false}));
        QCOMPARE(QDir(list->path).entryList({QStringLiteral("*.ics")}, QDir::Files).size(), 1);
    }

    void theStatedStoreRefusesEveryWrite_data()
    {
        QTest::addColumn<QString>("asked");
        QTest::addColumn<StoreWrite>("write");
        const auto row = [](const char* asked, StoreWrite write) {
            QTest::newRow(asked) << QString::fromLatin1(asked) << write;
        };
        row("ticking a to-do", [](RemindersStore& s) { s.toggle(QStringLiteral("1")); });
        row("filing a to-do", [](RemindersStore& s) { s.addReminder({QStringLiteral("x"), {}, {}, false}); });
        row("filing several to-dos", [](RemindersStore& s) {
            s.addBatch({{QStringLiteral("x"), {}, {}, false}});
        });
        row("clearing the completed to-dos", [](RemindersStore& s) { s.clearCompleted(SmartList::all); });
        row("deleting a list's to-dos", [](RemindersStore& s) { s.deleteAll(QStringLiteral("l")); });
        row("trashing a to-do", [](RemindersStore& s) { s.trashTask(QStringLiteral("1")); });
        row("making a list", [](RemindersStore& s) { s.createList(QStringLiteral("n")); });
        row("deleting a list", [](RemindersStore& s) { s.deleteList(QStringLiteral("l")); });
    }
    void theStatedStoreRefusesEveryWrite()
    {
        QFETCH(QString, asked);
        QFETCH(StoreWrite, write);
        LogCapture log;
        ManualClock clock;
        Reminder one;
        one.id = QStringLiteral("1");
        one.title = QStringLiteral("stated");
        one.listId = QStringLiteral("l");
        auto store =
            RemindersStore::stated({{QStringLiteral("l"), QStringLiteral("List"), {}, {}}}, {one}, clock);
        write(*store);
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral("Norva reminders: ") + asked +
                             QStringLiteral(" refused (this store holds stated reminders, and never "
                                            "writes this computer's own)")});
        QCOMPARE(store->reminders(), QList<Reminder>{one});
    }
};

NORVA_TEST(RemindersStoreTest)

#include "tst_RemindersStore.moc"
