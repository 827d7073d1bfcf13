#include "QmlViews.h"
#include "TestMain.h"

#include <QQmlContext>
#include <QQuickWindow>
#include <QtTest>

using namespace norva;

namespace {

// The clipboard page's model as the page sees it: it outlives the page, which is made anew at
// each opening, and filters its rows by the query.
class FakeClipboardPage : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QVariantList rows READ rows NOTIFY queryChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY queryChanged)
    Q_PROPERTY(bool historyOn READ historyOn CONSTANT)
    Q_PROPERTY(QString footer READ footer CONSTANT)
    Q_PROPERTY(QString notice READ notice CONSTANT)
public:
    QString query() const { return m_query; }
    void setQuery(const QString& query)
    {
        if (query == m_query)
            return;
        m_query = query;
        emit queryChanged();
    }
    QVariantList rows() const
    {
        QVariantList rows;
        for (const QString& text : {QStringLiteral("apt install debian-keyring"), QStringLiteral("hello")})
            if (text.contains(m_query))
                rows << QVariantMap{{"id", text}, {"kind", "text"},      {"preview", text}, {"pinned", false},
                                    {"app", ""},  {"date", QDateTime()}, {"copied", false}};
        return rows;
    }
    QString emptyText() const { return rows().isEmpty() ? QStringLiteral("Nothing matches") : QString(); }
    bool historyOn() const { return true; }
    QString footer() const { return {}; }
    QString notice() const { return {}; }
    Q_INVOKABLE void copy(const QString& id) { copied << id; }
    QStringList copied;
    Q_INVOKABLE void setPinned(const QString&, bool) {}
    Q_INVOKABLE void remove(const QString&) {}
    Q_INVOKABLE void clearAllButPinned() {}
    Q_INVOKABLE void dismissNotice() {}

signals:
    void queryChanged();

private:
    QString m_query;
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
        test::QmlViews views;
        FakeClipboardPage model;
        views.engine().rootContext()->setContextProperty(QStringLiteral("clipboardPage"), &model);

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
        test::QmlViews views;
        FakeClipboardPage model;
        views.engine().rootContext()->setContextProperty(QStringLiteral("clipboardPage"), &model);
        QQuickWindow window;
        window.resize(700, 400);
        auto page = views.create(QStringLiteral("ClipboardPage.qml"), {});
        QVERIFY(page);
        page->setParentItem(window.contentItem());
        page->setSize(QSizeF(700, 400));
        window.show();
        window.requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        searchBoxOf(page.get())->forceActiveFocus();

        QList<QQuickItem*> reached;
        for (int press = 0; press < 20 && !reached.contains(window.activeFocusItem()); ++press) {
            reached << window.activeFocusItem();
            QTest::keyClick(&window, Qt::Key_Tab);
        }
        const QList<QQuickItem*> rings = test::QmlViews::made(page.get(), QStringLiteral("FocusRing"));
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
        QCOMPARE(model.copied, QStringList{QStringLiteral("apt install debian-keyring")});
    }
};

NORVA_TEST(ClipboardPageTest)
#include "tst_clipboardPage.moc"
