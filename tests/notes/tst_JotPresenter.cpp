#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "TestMain.h"

#include "app/SettingsStore.h"
#include "notes/JotPresenter.h"
#include "notes/NoteTargetResolver.h"

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
        QuickNote older{QUuid::createUuid(), QStringLiteral("Groceries\nmilk"), {}, QDateTime::fromSecsSinceEpoch(10), {}};
        QuickNote newer{QUuid::createUuid(), QStringLiteral("  Groceries"), {}, QDateTime::fromSecsSinceEpoch(20), {}};
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
        QCOMPARE(settings.storedText(JotPresenter::modeKey), std::optional<QString>(QStringLiteral("append")));
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
};

NORVA_TEST(JotPresenterTest)
#include "tst_JotPresenter.moc"
