#include "ClipboardRig.h"
#include "QmlViews.h"
#include "TestMain.h"

#include "app/QmlInstances.h"
#include "clipboard/ClipboardPageModel.h"

#include <QQuickWindow>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

// The clipboard page over a real history of two copies ("hello", then "apt install
// debian-keyring") from a stand-in clipboard, in a temporary home. Its model outlives the page,
// which is made anew at each opening, and filters its rows by the query.
struct PageRig : ClipboardRig {
    std::unique_ptr<ClipboardPageModel> model;
    QmlViews views;

    PageRig()
    {
        start();
        copyText(QStringLiteral("hello"));
        copyText(QStringLiteral("apt install debian-keyring"));
        model = std::make_unique<ClipboardPageModel>(*manager);
        QmlInstances::offer(model.get());
    }
};

QQuickItem* searchBoxOf(QQuickItem* page)
{
    QList<QQuickItem*> found;
    std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
        if (QByteArray(item->metaObject()->className()).startsWith("QQuickTextInput"))
            found << item;
        for (QQuickItem* child : item->childItems())
            walk(child);
    };
    walk(page);
    return found.value(0);
}

} // namespace

class ClipboardPageTest : public QObject {
    Q_OBJECT
private slots:
    // Closing and opening again makes the page anew: the search box and the filter stay in step.
    void reopenedPageShowsTheQueryThatFilters()
    {
        PageRig rig;
        ClipboardPageModel& model = *rig.model;
        QmlViews& views = rig.views;
        QCOMPARE(model.rows()->count(), 2);

        auto page = views.create(QStringLiteral("ClipboardPage.qml"), {});
        QVERIFY(page);
        QQuickItem* box = searchBoxOf(page.get());
        QVERIFY(box);
        box->setProperty("text", QStringLiteral("debian"));
        QCOMPARE(model.query(), QStringLiteral("debian"));
        page.reset(); // the notch closed

        auto reopened = views.create(QStringLiteral("ClipboardPage.qml"), {});
        QVERIFY(reopened);
        box = searchBoxOf(reopened.get());
        QCOMPARE(box->property("text").toString(), QStringLiteral("debian"));
        QCOMPARE(model.rows()->count(), 1);

        box->setProperty("text", QString());
        QCOMPARE(model.query(), QString());
        QCOMPARE(model.rows()->count(), 2);
    }

    // A new copy and a pin change the list under an open page without making its rows anew: the rows
    // shown stay the same items and read their new values.
    void changesKeepTheRowsAlreadyShown()
    {
        PageRig rig;
        QQuickWindow window;
        auto page = rig.views.showIn(window, QStringLiteral("ClipboardPage.qml"), QSizeF(700, 400));
        QVERIFY(page);
        const QList<QQuickItem*> shown = QmlViews::made(page.get(), QStringLiteral("ClipboardRow"));
        QCOMPARE(shown.size(), 2);
        const QString hello = rig.model->rows()->get(1).value(QStringLiteral("id")).toString();

        rig.copyText(QStringLiteral("a third copy"));
        rig.model->setPinned(hello, true);
        QCOMPARE(rig.model->rows()->count(), 3);
        QTRY_COMPARE(QmlViews::made(page.get(), QStringLiteral("ClipboardRow")).size(),
                     3); // the list's next layout
        const QList<QQuickItem*> after = QmlViews::made(page.get(), QStringLiteral("ClipboardRow"));
        for (QQuickItem* row : shown)
            QVERIFY(after.contains(row));
        const QVariantMap helloRow = shown.at(1)->property("entry").toMap();
        QCOMPARE(helloRow.value(QStringLiteral("preview")).toString(), QStringLiteral("hello"));
        QVERIFY(helloRow.value(QStringLiteral("pinned")).toBool());
    }

    // From the keyboard alone: Tab walks the search box, the button and each row and its actions,
    // the arrows walk the same way, and Space presses what has the ring.
    void everyControlIsReachedAndPressedFromTheKeyboard()
    {
        PageRig rig;
        QmlViews& views = rig.views;
        QQuickWindow window;
        window.resize(700, 400);
        auto page = views.showIn(window, QStringLiteral("ClipboardPage.qml"), QSizeF(700, 400));
        QVERIFY(page);
        window.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        searchBoxOf(page.get())->forceActiveFocus();

        QList<QQuickItem*> reached;
        for (int press = 0; press < 20 && !reached.contains(window.activeFocusItem()); ++press) {
            reached << window.activeFocusItem();
            QTest::keyClick(&window, Qt::Key_Tab);
        }
        const QList<QQuickItem*> rings = QmlViews::made(page.get(), QStringLiteral("FocusRing"));
        QVERIFY(rings.size() >= 7); // clear, and per row the row, Pin and Remove
        for (QQuickItem* ring : rings)
            QVERIFY2(reached.contains(ring), qPrintable(ring->parentItem()->objectName()));

        QQuickItem* firstRow = nullptr;
        for (QQuickItem* ring : rings) {
            if (QByteArray(ring->parentItem()->metaObject()->className()).startsWith("ClipboardRow"))
                firstRow = firstRow ? firstRow : ring;
        }
        QVERIFY(firstRow);
        firstRow->forceActiveFocus();
        QTest::keyClick(&window, Qt::Key_Down);
        QCOMPARE(window.activeFocusItem(), firstRow->nextItemInFocusChain(true));
        QTest::keyClick(&window, Qt::Key_Up);
        QCOMPARE(window.activeFocusItem(), firstRow);
        QTest::keyClick(&window, Qt::Key_Space);
        QCOMPARE(rig.clipboard.m_puts, 1); // the newest row went back on the clipboard
        QCOMPARE(rig.clipboard.text(), QStringLiteral("apt install debian-keyring"));
    }
};

NORVA_TEST(ClipboardPageTest)
#include "tst_clipboardPage.moc"
