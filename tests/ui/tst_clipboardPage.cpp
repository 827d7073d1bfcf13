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
        QCOMPARE(model.rows().size(), 2);

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
        QCOMPARE(model.rows().size(), 1);

        box->setProperty("text", QString());
        QCOMPARE(model.query(), QString());
        QCOMPARE(model.rows().size(), 2);
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
