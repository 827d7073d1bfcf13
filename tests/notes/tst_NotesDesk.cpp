#include "ManualClock.h"
#include "TestMain.h"

#include "notes/NotesDesk.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;

class NotesDeskTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void daysReadAsAPersonSaysThem_data()
    {
        QTest::addColumn<QDateTime>("updated");
        QTest::addColumn<QString>("day");
        const QDate today(2026, 11, 18);
        QTest::newRow("today") << QDateTime(today, QTime(8, 0), Qt::UTC) << "Today";
        QTest::newRow("yesterday") << QDateTime(today.addDays(-1), QTime(23, 0), Qt::UTC) << "Yesterday";
        QTest::newRow("this year") << QDateTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC) << "2 Mar";
        QTest::newRow("last year") << QDateTime(QDate(2025, 12, 30), QTime(9, 0), Qt::UTC) << "30 Dec 2025";
    }
    void daysReadAsAPersonSaysThem()
    {
        QFETCH(QDateTime, updated);
        QTEST(NotesDesk::dayText(updated, QDate(2026, 11, 18)), "day");
    }

    void anUnchangedNoteIsNotBuiltAgain()
    {
        QTemporaryDir folder;
        ManualClock clock;
        QuickNotesStore store(clock, folder.path());
        NotesDesk desk(store, clock);
        const QUuid a = store.add(QStringLiteral("Alpha\nfirst words"));
        store.add(QStringLiteral("Beta"));
        QCOMPARE(desk.rowsBuilt(), 2);
        clock.advance(Seconds(60));
        store.setText(a, QStringLiteral("Alpha\nsecond words"));
        QCOMPARE(desk.rowsBuilt(), 3); // only Alpha again
        QCOMPARE(desk.rowList().first().name, QStringLiteral("Alpha"));
        QCOMPARE(desk.rowList().first().preview, QStringLiteral("second words"));
        clock.advance(Seconds(24 * 3600)); // a new day: every day word may change
        QCOMPARE(desk.rowsBuilt(), 5);
        QCOMPARE(desk.rowList().first().day, QStringLiteral("Yesterday"));
    }

    void aPendingNoteJoinsWithItsFirstWordsAndTheFilterNarrows()
    {
        QTemporaryDir folder;
        ManualClock clock;
        QuickNotesStore store(clock, folder.path());
        NotesDesk desk(store, clock);
        store.add(QStringLiteral("Groceries\nmilk"), QStringLiteral("Home"));
        desk.newNote(QStringLiteral("Work"));
        QVERIFY(desk.rowList().first().isPending);
        desk.edit(QStringLiteral("   "));
        QCOMPARE(store.notes().size(), 1); // nothing saved for blank words
        desk.edit(QStringLiteral("Standup notes"));
        QCOMPARE(store.notes().size(), 2);
        QCOMPARE(store.notes().last().category, QStringLiteral("Work"));
        QVERIFY(!desk.rowList().first().isPending);
        desk.setFilter(QStringLiteral("MILK"));
        QCOMPARE(desk.rowList().size(), 1);
        QCOMPARE(desk.rowList().first().name, QStringLiteral("Groceries"));
        desk.setFilter(QString());
        desk.select(desk.rowList().first().id);
        desk.removeSelected();
        QCOMPARE(store.notes().size(), 1);
        desk.undoRemove();
        QCOMPARE(store.notes().size(), 2);
    }
};

NORVA_TEST(NotesDeskTest)
#include "tst_NotesDesk.moc"
