#include "QmlViews.h"
#include "TestMain.h"

#include <QQmlContext>
#include <QQuickWindow>
#include <QtTest>

using namespace norva;

namespace {

// The Agents page's model as the page sees it: the cards, and the answers it was given.
class FakeAgentsPage : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList cards READ cards NOTIFY cardsChanged)
public:
    QVariantList cards() const { return m_cards; }
    void add(const QString& id, const QString& command)
    {
        m_cards << QVariantMap{{"id", id},        {"agent", "Claude Code"}, {"isQuestion", false},
                               {"tool", "Bash"},  {"subject", command},     {"writes", ""},
                               {"folder", "shop"}};
        emit cardsChanged();
    }
    Q_INVOKABLE bool allow(const QString& id) { return take(id, "allow"); }
    Q_INVOKABLE bool deny(const QString& id) { return take(id, "deny"); }
    Q_INVOKABLE bool answerInTerminal(const QString& id) { return take(id, "terminal"); }
    Q_INVOKABLE void showTerminal(const QString&) {}
    QStringList answers;

signals:
    void cardsChanged();

private:
    bool take(const QString& id, const QString& how)
    {
        answers << how + ' ' + id;
        m_cards.removeIf([&id](const QVariant& card) { return card.toMap().value("id") == id; });
        emit cardsChanged();
        return true;
    }
    QVariantList m_cards;
};

QQuickItem* cardOf(QQuickItem* page, const QString& command)
{
    for (QQuickItem* card : test::QmlViews::made(page, QStringLiteral("AgentPromptCard")))
        if (card->property("card").toMap().value("subject") == command)
            return card;
    return nullptr;
}

QQuickItem* allowButtonOf(QQuickItem* page, const QString& command)
{
    QQuickItem* card = cardOf(page, command);
    if (!card)
        return nullptr;
    for (QQuickItem* button : test::QmlViews::made(card, QStringLiteral("AgentAnswerButton")))
        if (button->property("label") == QStringLiteral("Allow"))
            return button;
    return nullptr;
}

} // namespace

// A double click on Allow answers one card: the second click lands on the gap the answered card
// left, and the next card's buttons ignore clicks meanwhile.
class AgentsPageTest : public QObject {
    Q_OBJECT
private slots:
    void doubleClickAnswersOneCard()
    {
        test::QmlViews views;
        FakeAgentsPage model;
        model.add("first", "make deploy");
        model.add("second", "rm -rf build");
        views.engine().rootContext()->setContextProperty("agentsPage", &model);
        views.engine().rootContext()->setContextProperty(
            "agentSettings", QVariantMap{{"showClaudeUsage", false}, {"answerPromptsOnNotch", true}});
        QQuickWindow window;
        window.resize(640, 600);
        auto page = views.create(QStringLiteral("AgentsPage.qml"), {});
        QVERIFY(page);
        page->setParentItem(window.contentItem());
        page->setSize(window.size());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QQuickItem* first = allowButtonOf(page.get(), "make deploy");
        QVERIFY(first);
        const QPoint where = first->mapToScene(QPointF(first->width() / 2, first->height() / 2)).toPoint();
        QQuickItem* second = allowButtonOf(page.get(), "rm -rf build");
        QVERIFY(second);
        // Where the next card starts: a card made again lays its own texts out a moment later, so
        // its buttons may still move within it, but the card itself must not slide up.
        const QPointF secondBefore = cardOf(page.get(), "rm -rf build")->mapToScene(QPointF(0, 0));

        QTest::mouseClick(&window, Qt::LeftButton, {}, where);
        QTRY_COMPARE(model.answers, QStringList{"allow first"});
        second = allowButtonOf(page.get(), "rm -rf build");
        QVERIFY(second);
        QCOMPARE(cardOf(page.get(), "rm -rf build")->mapToScene(QPointF(0, 0)), secondBefore); // no slide
        QTest::mouseClick(&window, Qt::LeftButton, {}, where);
        QTest::mouseClick(&window, Qt::LeftButton, {}, second->mapToScene(QPointF(4, 4)).toPoint());
        QCoreApplication::processEvents();
        QCOMPARE(model.answers, QStringList{"allow first"}); // neither the gap nor the guarded card answered
    }

    // A third card does not fit the usual page: the page asks for the room its cards take (the
    // panel grows to it where the display allows), and while it has less, the list shows that it
    // scrolls; given the room, the sign goes.
    void moreCardsThanFitShowThatThePageScrolls()
    {
        test::QmlViews views;
        FakeAgentsPage model;
        model.add("first", "make deploy");
        model.add("second", "rm -rf build");
        model.add("third", "npm publish --access public");
        views.engine().rootContext()->setContextProperty("agentsPage", &model);
        views.engine().rootContext()->setContextProperty(
            "agentSettings", QVariantMap{{"showClaudeUsage", false}, {"answerPromptsOnNotch", true}});
        QQuickWindow window;
        window.resize(720, 700);
        auto page = views.create(QStringLiteral("AgentsPage.qml"), {});
        QVERIFY(page);
        page->setParentItem(window.contentItem());
        page->setSize(QSizeF(720, 250)); // the usual page's body
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        const QList<QQuickItem*> cues = test::QmlViews::made(page.get(), QStringLiteral("ScrollCue"));
        QCOMPARE(cues.size(), 1);
        QTRY_VERIFY(page->implicitHeight() > 250);
        QVERIFY(cues.first()->isVisible());

        page->setHeight(page->implicitHeight());
        QTRY_VERIFY(!cues.first()->isVisible());
    }
};

NORVA_TEST(AgentsPageTest)
#include "tst_agentsPage.moc"
