#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "notes/JotPresenter.h"
#include "notes/NoteTargetResolver.h"
#include "reminders/RemindersStore.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace norva;
using norva::test::ManualClock;
using R = NoteTargetResolver;

class JotPresenterTest : public QObject {
    Q_OBJECT
private slots:
    void appendedTextGoesToTheNamedNoteOrCategory_data()
    {
        QTest::addColumn<QString>("named");
        QTest::addColumn<int>("expected"); // 0 the note, 1 a new note in the category, 2 the general one
        QTest::newRow("a note by its first line") << "groceries" << 0;
        QTest::newRow("a category") << "Work" << 1;
        QTest::newRow("nothing named") << "  " << 2;
    }
    void appendedTextGoesToTheNamedNoteOrCategory()
    {
        QFETCH(QString, named);
        QFETCH(int, expected);
        QuickNote older{QUuid::createUuid(),
                        QStringLiteral("Groceries\nmilk"),
                        {},
                        QDateTime::fromSecsSinceEpoch(10),
                        {}};
        QuickNote newer{
            QUuid::createUuid(), QStringLiteral("  Groceries"), {}, QDateTime::fromSecsSinceEpoch(20), {}};
        const R::Resolution where = R::resolve(named, {older, newer});
        const QList<R::Resolution> answers = {R::AppendToNote{newer.id}, R::NewInCategory{named.trimmed()},
                                              R::NewInGeneral{}};
        QVERIFY(where == answers[expected]);
    }

    void aJotIsSavedWithAReceiptThatUndoes()
    {
        QTemporaryDir folder;
        ManualClock clock;
        test::MemoryPreferences preferences;
        SettingsStore settings(preferences);
        QuickNotesStore store(clock, folder.path());
        JotPresenter jot(store, clock, &settings);
        const QUuid list = store.add(QStringLiteral("Groceries\nmilk"));
        jot.setMode(JotPresenter::Mode::append);
        QCOMPARE(settings.storedText(JotPresenter::modeKey),
                 std::optional<QString>(QStringLiteral("append")));
        jot.open();
        QVERIFY(jot.submit(QStringLiteral("eggs"), QStringLiteral("Groceries")));
        QCOMPARE(store.find(list)->text, QStringLiteral("Groceries\nmilk\neggs"));
        QCOMPARE(jot.receipt(), (JotPresenter::Receipt{QStringLiteral("Added to \u201CGroceries\u201D"), true,
                                                       QStringLiteral("\u2713")}));
        QVERIFY(!store.isSavePending()); // on disk before the receipt shows
        jot.undo();
        QCOMPARE(store.find(list)->text, QStringLiteral("Groceries\nmilk"));
        QCOMPARE(jot.stage(), JotPresenter::Stage::saved);
        clock.advance(JotPresenter::kReceiptStay);
        QCOMPARE(jot.stage(), JotPresenter::Stage::closing);
        clock.advance(JotPresenter::kClosing);
        QCOMPARE(jot.stage(), JotPresenter::Stage::idle);

        jot.setMode(JotPresenter::Mode::newNote);
        jot.open();
        QVERIFY(!jot.submit(QStringLiteral("   ")));
        QVERIFY(jot.submit(QStringLiteral("Call Ana")));
        QCOMPARE(store.notes().size(), 2);
        jot.undo();
        QCOMPARE(store.notes().size(), 1);
    }

    void aLineIsFiledAsATodoDueAsItsWordsSay_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("dropReading");
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("due");
        QTest::addColumn<QString>("receipt");
        QTest::newRow("no due words")
            << "call the plumber" << false << "call the plumber" << false << "Filed as a to-do";
        QTest::newRow("a day and a time") << "call mum tomorrow at 5pm" << false << "call mum" << true
                                          << "Filed as a to-do, due Tomorrow 17:00";
        QTest::newRow("the reading dropped")
            << "read Tomorrow at 5pm" << true << "read Tomorrow at 5pm" << false << "Filed as a to-do";
    }
    void aLineIsFiledAsATodoDueAsItsWordsSay()
    {
        QFETCH(QString, typed);
        QFETCH(bool, dropReading);
        QFETCH(bool, due);
        QFETCH(QString, receipt);
        qputenv("TZ", "UTC"); // the receipt's clock time is the test clock's
        QTemporaryDir notesFolder, calendars;
        QDir(calendars.path()).mkpath(QStringLiteral("inbox"));
        ManualClock clock;
        test::MemoryPreferences preferences;
        SettingsStore settings(preferences);
        QuickNotesStore notes(clock, notesFolder.path());
        RemindersStore todos(calendars.path(), settings, clock);
        QSignalSpy loaded(&todos, &RemindersStore::changed);
        todos.start();
        QTRY_VERIFY(todos.access() == RemindersStore::Access::granted);

        JotPresenter jot(notes, clock, &settings);
        QVERIFY(!jot.todoChoice());
        jot.setModeWord(QStringLiteral("todo"));
        QCOMPARE(jot.mode(), JotPresenter::Mode::newNote); // not offered without the store
        jot.setTodos(&todos);
        jot.setModeWord(QStringLiteral("todo"));
        jot.open();
        jot.setDraft(typed); // read live, as the sheet shows it
        QCOMPARE(jot.reading().isEmpty(), !due && !dropReading);
        if (dropReading)
            jot.dropReading();
        QVERIFY(jot.submit(typed));
        QCOMPARE(jot.receipt().message, receipt);
        QCOMPARE(todos.reminders().size(), 1);
        const Reminder filed = todos.reminders().first();
        QTEST(filed.title, "title");
        QCOMPARE(filed.due.has_value(), due);
        QVERIFY(notes.notes().isEmpty());

        jot.undo();
        QVERIFY(todos.reminders().isEmpty());
        QCOMPARE(QDir(calendars.path() + QStringLiteral("/inbox")).entryList(QDir::Files), QStringList());
    }

    void aTodoThatCannotBeFiledKeepsTheWords()
    {
        QTemporaryDir notesFolder, noCalendars;
        ManualClock clock;
        test::MemoryPreferences preferences;
        SettingsStore settings(preferences);
        QuickNotesStore notes(clock, notesFolder.path());
        RemindersStore todos(noCalendars.path() + QStringLiteral("/missing"), settings, clock);
        todos.start();
        JotPresenter jot(notes, clock, &settings);
        jot.setTodos(&todos);
        jot.setMode(JotPresenter::Mode::todo);
        jot.open();
        QVERIFY(!jot.submit(QStringLiteral("buy stamps")));
        QCOMPARE(jot.stage(), JotPresenter::Stage::writing);
        QVERIFY(jot.message().endsWith(QStringLiteral("Your words are still here.")));
    }
};

NORVA_TEST(JotPresenterTest)
#include "tst_JotPresenter.moc"
