#include "CalendarFixtures.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "storage/VdirRoot.h"
#include "storage/VdirWatch.h"

#include <QSignalSpy>
#include <QtTest>

using namespace norva;
using namespace norva::test;

class VdirRootTest : public QObject {
    Q_OBJECT

private slots:
    void theRootIsFoundWhereTheToolsKeepIt_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("configFile");
        QTest::addColumn<QByteArray>("config");
        QTest::addColumn<QString>("expected"); // relative to HOME
        QTest::newRow("nothing set") << "" << QString() << QByteArray() << ".local/share/calendars";
        QTest::newRow("todoman glob")
            << "" << QStringLiteral(".config/todoman/config.py")
            << QByteArray("[main]\npath = \"~/cals/*\"\ndate_format = \"%Y-%m-%d\"\n") << "cals";
        QTest::newRow("khal calendar")
            << "" << QStringLiteral(".config/khal/config")
            << QByteArray("[calendars]\n[[home]]\npath = ~/khalcals/home\n") << "khalcals";
        QTest::newRow("khal discover")
            << "" << QStringLiteral(".config/khal/config")
            << QByteArray("[calendars]\n[[all]]\npath = ~/sync/*\ntype = discover\n") << "sync";
        QTest::newRow("setting wins") << "~/mine" << QStringLiteral(".config/todoman/config.py")
                                      << QByteArray("path = \"~/cals/*\"\n") << "mine";
    }
    void theRootIsFoundWhereTheToolsKeepIt()
    {
        QFETCH(QString, setting);
        QFETCH(QString, configFile);
        QFETCH(QByteArray, config);
        QFETCH(QString, expected);
        TempHome home;
        if (!configFile.isEmpty())
            home.write(configFile, config);
        QCOMPARE(VdirRoot::locate(setting), home.file(expected));
    }

    void collectionsCarryTheirNameAndColour()
    {
        TempHome home;
        home.write(QStringLiteral("cals/work/displayname"), "Work things\n");
        home.write(QStringLiteral("cals/work/color"), "#FF8800ff\n");
        home.write(QStringLiteral("cals/home/a.ics"), todomanTodo("a", "x"));
        home.write(QStringLiteral("cals/home/color"), "orange");
        home.write(QStringLiteral("cals/.hidden/a.ics"), todomanTodo("a", "x"));
        const auto collections = VdirRoot(home.file(QStringLiteral("cals"))).collections();
        QCOMPARE(collections.size(), 2);
        QCOMPARE(collections[0].displayName, QStringLiteral("home"));
        QCOMPARE(collections[0].color, QString()); // not a colour
        QCOMPARE(collections[0].itemFiles(), QStringList{home.file(QStringLiteral("cals/home/a.ics"))});
        QCOMPARE(collections[1].displayName, QStringLiteral("Work things"));
        QCOMPARE(collections[1].color, QStringLiteral("#ff8800"));
    }

    void aCollectionIsMadeAndRemovedButUnknownFilesKeepIt()
    {
        TempHome home;
        const VdirRoot root(home.file(QStringLiteral("cals")));
        QVERIFY(!root.isReadable());
        QString why;
        const auto made =
            root.createCollection(QStringLiteral("Groceries & more"), QStringLiteral("#00aa00"), &why);
        QVERIFY2(made, qPrintable(why));
        QCOMPARE(made->id, QStringLiteral("groceries-more"));
        QVERIFY(root.isReadable());
        QCOMPARE(root.collections(), QList<VdirCollection>{*made});
        const auto second = root.createCollection(QStringLiteral("Groceries & more"), {}, &why);
        QCOMPARE(second->id, QStringLiteral("groceries-more-2"));

        home.write(QStringLiteral("cals/groceries-more/x.ics"), todomanTodo("x", "x"));
        QVERIFY(!root.removeCollection(*made));
        QVERIFY(!QFileInfo::exists(made->path));

        home.write(QStringLiteral("cals/groceries-more-2/notes.txt"), "mine");
        QCOMPARE(root.removeCollection(*second),
                 QStringLiteral("its folder holds files Norva does not know, so it stays"));
        QCOMPARE(TempHome::read(second->path + QStringLiteral("/notes.txt")), QByteArray("mine"));
    }

    void aNewItemGetsAFreshSafeName()
    {
        TempHome home;
        home.write(QStringLiteral("cals/l/a_b.ics"), "x");
        const auto collection = VdirCollection::at(home.file(QStringLiteral("cals/l")));
        QCOMPARE(collection->itemPathFor(QStringLiteral("a/b")),
                 home.file(QStringLiteral("cals/l/a_b-2.ics")));
    }
};

NORVA_TEST(VdirRootTest)

namespace {

VdirDigest summaryDigest()
{
    return [](const ICalendarFile& file) {
        // A plain value made off the main thread, as a consumer's record would be.
        const QByteArray bytes = file.bytes();
        const qsizetype at = bytes.indexOf("SUMMARY:") + 8;
        return std::any(QString::fromUtf8(bytes.mid(at, bytes.indexOf('\r', at) - at)));
    };
}

QString summaryOf(const VdirWatch& watch, const QString& path)
{
    const auto it = watch.state().items.constFind(path);
    return it == watch.state().items.cend() || !it->readable ? QString() : std::any_cast<QString>(it->digest);
}

} // namespace

class VdirWatchTest : public QObject {
    Q_OBJECT

    // Waits for the folder event, lets the settle time pass on the manual clock and waits for
    // the scan that follows it.
    static void settle(ManualClock& clock, QSignalSpy& spy, int expected)
    {
        QTRY_VERIFY_WITH_TIMEOUT(clock.pendingCount() > 0, 5000);
        clock.advance(VdirWatch::kSettle);
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), expected, 5000);
    }

private slots:
    void aChangeByAnotherProgramRereadsOnlyThatFile()
    {
        TempHome home;
        LogCapture log;
        ManualClock clock;
        for (int list = 0; list < 3; ++list)
            for (int item = 0; item < 5; ++item)
                home.write(QStringLiteral("cals/list%1/item%2.ics").arg(list).arg(item),
                           todomanTodo(QByteArray::number(list * 10 + item), "t" + QByteArray::number(item)));
        home.write(QStringLiteral("cals/list1/bad.ics"), "BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\n");
        VdirWatch watch(home.file(QStringLiteral("cals")), QStringLiteral("Norva reminders"), summaryDigest(),
                        clock);
        QSignalSpy spy(&watch, &VdirWatch::changed);
        watch.start();
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(watch.state().collections.size(), 3);
        QCOMPARE(watch.state().items.size(), 16);
        QCOMPARE(summaryOf(watch, home.file(QStringLiteral("cals/list2/item3.ics"))), QStringLiteral("t3"));
        QCOMPARE(log.lines(),
                 QStringList{QStringLiteral(
                     "Norva reminders: did not read list1/bad.ics (it ends before its calendar does)")});

        // Another program replaces one item the way todoman and vdirsyncer do: a new file moved in.
        const QString target = home.file(QStringLiteral("cals/list2/item3.ics"));
        home.write(QStringLiteral("cals/list2/.tmp"), todomanTodo("23", "changed"));
        QVERIFY(
            QFile::rename(home.file(QStringLiteral("cals/list2/.tmp")), target) ||
            (QFile::remove(target) && QFile::rename(home.file(QStringLiteral("cals/list2/.tmp")), target)));
        settle(clock, spy, 2);
        QVERIFY(!QTest::currentTestFailed());
        QCOMPARE(spy.at(1).at(0).toStringList(), QStringList{target});
        QCOMPARE(summaryOf(watch, target), QStringLiteral("changed"));
        QCOMPARE(log.count(QStringLiteral("bad.ics")), 1); // the bad file is not logged again

        // A deleted item and a new collection.
        QVERIFY(QFile::remove(home.file(QStringLiteral("cals/list0/item0.ics"))));
        settle(clock, spy, 3);
        QVERIFY(!QTest::currentTestFailed());
        QCOMPARE(spy.at(2).at(0).toStringList(),
                 QStringList{home.file(QStringLiteral("cals/list0/item0.ics"))});
        home.write(QStringLiteral("cals/list9/new.ics"), todomanTodo("new", "fresh"));
        QTRY_VERIFY(clock.pendingCount() > 0);
        clock.advance(VdirWatch::kSettle);
        QTRY_COMPARE(summaryOf(watch, home.file(QStringLiteral("cals/list9/new.ics"))),
                     QStringLiteral("fresh"));
        QCOMPARE(watch.state().collections.size(), 4);
        QCOMPARE(TempHome::read(home.file(QStringLiteral("cals/list1/bad.ics"))),
                 QByteArray("BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\n"));
    }

    void aRootThatAppearsLaterIsPickedUp()
    {
        TempHome home;
        ManualClock clock;
        VdirWatch watch(home.file(QStringLiteral("cals")), QStringLiteral("Norva reminders"), summaryDigest(),
                        clock);
        QSignalSpy spy(&watch, &VdirWatch::changed);
        watch.start();
        QTRY_COMPARE(spy.count(), 1);
        QVERIFY(!watch.state().rootReadable);
        QVERIFY(QDir().mkpath(home.file(QStringLiteral("cals/first"))));
        settle(clock, spy, 2);
        QVERIFY(!QTest::currentTestFailed());
        QVERIFY(watch.state().rootReadable);
        QCOMPARE(watch.state().collections.size(), 1);
    }
};

NORVA_TEST(VdirWatchTest)

#include "tst_Vdir.moc"
