#include "LogCapture.h"
#include "ManualClock.h"
#include "TestMain.h"

#include "reminders/RemindersModule.h"
#include "reminders/TodosPageModel.h"

#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

Reminder todo(const char* id, const char* title, const char* list)
{
    Reminder r;
    r.id = QString::fromLatin1(id);
    r.title = QString::fromLatin1(title);
    r.listId = QString::fromLatin1(list);
    r.listName = r.listId;
    return r;
}

QStringList titles(const RowsModel* rows)
{
    QStringList t;
    for (const QVariant& row : rows->rows())
        t.append(row.toMap().value(QStringLiteral("title")).toString());
    return t;
}

} // namespace

class TodosPageModelTest : public QObject {
    Q_OBJECT

private slots:
    void theAddFieldReadsTheDueAndMarksTheWordsRead()
    {
        ManualClock clock;
        auto store = RemindersStore::stated({}, {}, clock);
        TodosPageModel page(*store, clock);
        page.setDraft(QStringLiteral("call mum tomorrow at 5pm"));
        QVERIFY(page.reading().startsWith(QStringLiteral("Tomorrow ")));
        QVariantList expected;
        for (const auto& [start, length] : {std::pair{9, 8}, std::pair{18, 2}, std::pair{21, 3}})
            expected.append(
                QVariantMap{{QStringLiteral("start"), start}, {QStringLiteral("length"), length}});
        QCOMPARE(page.readSpans(), expected);
        // One click keeps the words as the title: no reading until the field is emptied.
        page.dropReading();
        QVERIFY(page.reading().isEmpty());
        QVERIFY(page.readSpans().isEmpty());
        page.setDraft(QStringLiteral("call mum tomorrow at 5pm!"));
        QVERIFY(page.reading().isEmpty());
        page.setDraft(QString());
        page.setDraft(QStringLiteral("pay rent tomorrow"));
        QCOMPARE(page.reading(), QStringLiteral("Tomorrow"));
    }

    void aRefusedAddKeepsTheWordsAndSaysSoCalmly()
    {
        ManualClock clock;
        LogCapture log;
        auto store = RemindersStore::stated({}, {}, clock);
        TodosPageModel page(*store, clock);
        page.setDraft(QStringLiteral("buy milk"));
        QVERIFY(!page.add());
        QCOMPARE(page.draft(), QStringLiteral("buy milk"));
        QCOMPARE(page.message(),
                 QStringLiteral("Reminders didn't take the to-do. Your words are still here."));
    }

    void smartListsShowTheirToDos()
    {
        ManualClock clock; // 2026-11-18 10:00 UTC
        QList<Reminder> all{todo("a", "undated", "l"), todo("b", "tomorrow", "l"), todo("c", "overdue", "m"),
                            todo("d", "done", "m")};
        all[1].due = clock.now().addDays(1);
        all[2].due = clock.now().addSecs(-7200);
        all[2].dueHasTime = true;
        all[3].completed = true;
        auto store = RemindersStore::stated({{QStringLiteral("l"), QStringLiteral("L"), {}, {}},
                                             {QStringLiteral("m"), QStringLiteral("M"), {}, {}}},
                                            all, clock);
        TodosPageModel page(*store, clock);
        QCOMPARE(titles(page.rows()), QStringList{QStringLiteral("overdue")});
        QCOMPARE(page.rows()->get(0).value(QStringLiteral("dueState")).toString(), QStringLiteral("overdue"));
        page.setCurrentView(QStringLiteral("scheduled"));
        QCOMPARE(titles(page.rows()), (QStringList{QStringLiteral("overdue"), QStringLiteral("tomorrow")}));
        page.setCurrentView(QStringLiteral("all"));
        QCOMPARE(titles(page.rows()).size(), 3);
        page.setShowCompleted(true);
        QCOMPARE(titles(page.rows()).last(), QStringLiteral("done"));
        page.setCurrentView(QStringLiteral("m"));
        QVERIFY(page.currentIsList());
        QCOMPARE(page.currentTitle(), QStringLiteral("M"));
        page.reorder(1, 0);
        QCOMPARE(titles(page.rows()), (QStringList{QStringLiteral("overdue"), QStringLiteral("done")}));
        page.setShowCompleted(false);
        QCOMPARE(titles(page.tileRows()), QStringList{QStringLiteral("overdue")});
        // The tile shows the first few of what is due and counts the rest.
        QList<Reminder> due;
        for (const char* id : {"e", "f", "g", "h"}) {
            due << todo(id, id, "l");
            due.last().due = clock.now().addSecs(-60);
        }
        auto crowded =
            RemindersStore::stated({{QStringLiteral("l"), QStringLiteral("L"), {}, {}}}, due, clock);
        TodosPageModel tile(*crowded, clock);
        QCOMPARE(tile.tileRows()->count(), TodosPageModel::kTileRows);
        QCOMPARE(tile.dueCount(), 4);
        QCOMPARE(tile.dueTitles().size(), 4);
    }

    void theDemoShowsStatedToDosAndNeverWrites()
    {
        ManualClock clock;
        LogCapture log;
        auto store = RemindersModule::demoStore(clock);
        QVERIFY(store->isReadOnly());
        QVERIFY(store->reminders().size() >= 5);
        QVERIFY(!store->toggle(store->reminders().first().id));
        QCOMPARE(log.count(QStringLiteral("never writes this computer's own")), 1);
    }
};

NORVA_TEST(TodosPageModelTest)

#include "tst_TodosPageModel.moc"
