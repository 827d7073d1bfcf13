#include "ManualClock.h"
#include "MemoryPreferences.h"
#include "QmlViews.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/AgentSettings.h"
#include "agents/ApprovalsFolder.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/QmlInstances.h"
#include "app/SettingsStore.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QQuickWindow>
#include <QtTest>

using namespace norva;
using namespace norva::test;

namespace {

// The Agents page over Norva's real prompts, in a temporary home: each card is a hook's pending
// prompt in the approvals folder, and an answer is the response file the hook would read.
struct PageRig {
    TempHome home;
    ManualClock clock{QDateTime::currentDateTimeUtc()}; // the hooks' files carry real times
    MemoryPreferences preferences;
    SettingsStore store{preferences};
    AgentSettings settings{store};
    NoPromptAlerts alerts;
    AgentPromptsManager prompts{clock, store, alerts, Paths::approvalsFolder()};
    AgentsPageModel model{prompts};
    ApprovalsFolder folder{Paths::approvalsFolder()};
    QmlViews views;

    PageRig()
    {
        settings.setAnswerPromptsOnNotch(true);
        prompts.start();
        QmlInstances::offer(&settings);
        QmlInstances::offer(&model);
    }
    // A hook asks to run `command`; the card shows once Norva has seen the file.
    void ask(const QString& id, const QString& command)
    {
        const QJsonObject payload{{"session_id", "s1"},
                                  {"cwd", "/work/shop"},
                                  {"tool_name", "Bash"},
                                  {"tool_input", QJsonObject{{"command", command}}},
                                  {"tool_use_id", id}};
        folder.write(QStringLiteral("pending-") + id + QStringLiteral(".json"),
                     QJsonDocument(payload).toJson(QJsonDocument::Compact));
        prompts.scanPending();
    }
    bool answered(const QString& id) const { return folder.exists(QStringLiteral("resp-") + id); }
};

QQuickItem* cardOf(QQuickItem* page, const QString& command)
{
    for (QQuickItem* card : QmlViews::made(page, QStringLiteral("AgentPromptCard")))
        if (card->property("card").toMap().value("subject") == command)
            return card;
    return nullptr;
}

QQuickItem* allowButtonOf(QQuickItem* page, const QString& command)
{
    QQuickItem* card = cardOf(page, command);
    if (!card)
        return nullptr;
    for (QQuickItem* button : QmlViews::made(card, QStringLiteral("AgentAnswerButton")))
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
        PageRig rig;
        rig.ask("first", "make deploy");
        rig.ask("second", "rm -rf build");
        QTRY_COMPARE(rig.model.count(), 2);
        QmlViews& views = rig.views;
        QQuickWindow window;
        window.resize(640, 600);
        auto page = views.showIn(window, QStringLiteral("AgentsPage.qml"), window.size());
        QVERIFY(page);
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        QQuickItem* first = allowButtonOf(page.get(), "make deploy");
        QVERIFY(first);
        const QPoint where = first->mapToScene(QPointF(first->width() / 2, first->height() / 2)).toPoint();
        QQuickItem* second = allowButtonOf(page.get(), "rm -rf build");
        QVERIFY(second);
        const QPointF secondBefore = second->mapToScene(QPointF(0, 0));

        QTest::mouseClick(&window, Qt::LeftButton, {}, where);
        QTRY_VERIFY(rig.answered("first"));
        QSignalSpy drawn(&window, &QQuickWindow::frameSwapped);
        QVERIFY(drawn.wait()); // a frame laid out without the answered card
        QCOMPARE(allowButtonOf(page.get(), "rm -rf build"), second); // the next card is kept, not made anew
        QCOMPARE(second->mapToScene(QPointF(0, 0)), secondBefore);   // and does not slide up
        QTest::mouseClick(&window, Qt::LeftButton, {}, where);
        QTest::mouseClick(&window, Qt::LeftButton, {}, second->mapToScene(QPointF(4, 4)).toPoint());
        QCoreApplication::processEvents();
        QVERIFY(!rig.answered("second")); // neither the gap nor the guarded card answered
    }

    // A third card does not fit the usual page: the page asks for the room its cards take (the
    // panel grows to it where the display allows), and while it has less, the list shows that it
    // scrolls; given the room, the sign goes.
    void moreCardsThanFitShowThatThePageScrolls()
    {
        PageRig rig;
        rig.ask("first", "make deploy");
        rig.ask("second", "rm -rf build");
        rig.ask("third", "npm publish --access public");
        QTRY_COMPARE(rig.model.count(), 3);
        QmlViews& views = rig.views;
        QQuickWindow window;
        window.resize(720, 700);
        // The page at the usual body's height.
        auto page = views.showIn(window, QStringLiteral("AgentsPage.qml"), QSizeF(720, 250));
        QVERIFY(page);
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        const QList<QQuickItem*> cues = QmlViews::made(page.get(), QStringLiteral("ScrollCue"));
        QCOMPARE(cues.size(), 1);
        QTRY_VERIFY(page->implicitHeight() > 250);
        QVERIFY(cues.first()->isVisible());

        page->setHeight(page->implicitHeight());
        QTRY_VERIFY(!cues.first()->isVisible());
    }
};

NORVA_TEST(AgentsPageTest)
#include "tst_agentsPage.moc"
