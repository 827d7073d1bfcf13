#include "QmlViews.h"
#include "TestMain.h"

#include "app/QmlInstances.h"
#include "reminders/RemindersStore.h"
#include "reminders/TodosPageModel.h"

#include <QQuickWindow>
#include <QtTest>

using namespace norva;
using namespace norva::test;

class TodosPageTest : public QObject {
    Q_OBJECT
private slots:
    // The day turning and a done to-do joining the list change it under an open page without making
    // its rows anew: the rows shown stay the same items and read their new words.
    void changesKeepTheRowsAlreadyShown()
    {
        ManualClock clock; // 2026-11-18 10:00 UTC
        const QString l = QStringLiteral("l");
        auto todo = [&](const char* id, const char* title) {
            Reminder made;
            made.id = QString::fromLatin1(id);
            made.title = QString::fromLatin1(title);
            made.listId = l;
            return made;
        };
        Reminder overdue = todo("a", "overdue"), tomorrow = todo("b", "tomorrow"), done = todo("c", "done");
        overdue.due = clock.now().addSecs(-7200);
        overdue.dueHasTime = true;
        tomorrow.due = clock.now().addDays(1);
        done.completed = true;
        auto store =
            RemindersStore::stated({{l, QStringLiteral("L"), {}, {}}}, {overdue, tomorrow, done}, clock);
        TodosPageModel model(*store, clock);
        model.setCurrentView(QStringLiteral("all"));
        QmlViews views;
        QmlInstances::offer(&model);
        QQuickWindow window;
        auto page = views.showIn(window, QStringLiteral("TodosPage.qml"), QSizeF(700, 400));
        QVERIFY(page);
        QTRY_COMPARE(QmlViews::made(page.get(), QStringLiteral("TodoRow")).size(), 2); // once laid out
        const QList<QQuickItem*> shown = QmlViews::made(page.get(), QStringLiteral("TodoRow"));

        clock.advance(Seconds(24 * 3600));
        model.setShowCompleted(true);
        QTRY_COMPARE(QmlViews::made(page.get(), QStringLiteral("TodoRow")).size(), 3);
        const QList<QQuickItem*> after = QmlViews::made(page.get(), QStringLiteral("TodoRow"));
        for (QQuickItem* row : shown)
            QVERIFY(after.contains(row));
        QCOMPARE(shown.at(1)->property("todo").toMap().value(QStringLiteral("dueText")).toString(),
                 QStringLiteral("Today"));
    }
};

NORVA_TEST(TodosPageTest)
#include "tst_todosPage.moc"
