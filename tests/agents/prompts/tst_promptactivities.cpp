#include "ExchangeCore.h"
#include "TempHome.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "agents/prompts/AgentPromptActivities.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QtTest>

using namespace norva;

namespace {

// The exchange on a manual clock at the real now, publishing to a real coordinator.
struct Published : test::ManualExchangeCore {
    Published() : coordinator(clock), activities(*manager, coordinator, settings, [this] { ++pageOpenings; })
    {
        manager->start();
    }
    LiveActivityCoordinator coordinator;
    int pageOpenings = 0;
    AgentPromptActivities activities;
};

} // namespace

// A waiting prompt on the closed notch: published as an agentPrompt activity, answered through the
// coordinator's actions, and gone once answered or once its file goes.
class PromptActivitiesTest : public QObject {
    Q_OBJECT
private slots:
    void promptBecomesAnActivityAndLeavesWhenAnsweredOrGone()
    {
        test::TempHome home;
        Published published;
        LiveActivityCoordinator& coordinator = published.coordinator;
        ApprovalsFolder folder(Paths::approvalsFolder());
        folder.write("pending-codex-s-5.json",
                     R"({"tool_name":"shell","tool_input":{"command":"make deploy"}})");
        QTRY_VERIFY_WITH_TIMEOUT(coordinator.find("agent-prompt-codex-s-5") != nullptr, 5000);
        const LiveActivity* live = coordinator.find("agent-prompt-codex-s-5");
        QCOMPARE(live->content.kind(), ActivityContent::Kind::agentPrompt);
        QCOMPARE(live->text.title, QStringLiteral("Codex"));
        QCOMPARE(live->text.detail, QStringLiteral("make deploy"));
        QVERIFY(live->onTap);
        live->onTap();
        QCOMPARE(published.pageOpenings, 1);

        QCOMPARE(coordinator.perform("deny", "agent-prompt-codex-s-5"),
                 LiveActivityCoordinator::Outcome::done);
        QVERIFY(coordinator.find("agent-prompt-codex-s-5") == nullptr);
        QVERIFY(folder.read("resp-codex-s-5")->contains("\"deny\""));
        QCOMPARE(coordinator.perform("allow", "agent-prompt-codex-s-5"),
                 LiveActivityCoordinator::Outcome::notLive);

        // The hook gave up (stale heartbeat) or the session ended: the file goes, and so does the activity.
        folder.write("pending-toolu_8.json", R"({"tool_name":"Bash","tool_input":{"command":"ls"}})");
        QTRY_VERIFY_WITH_TIMEOUT(coordinator.find("agent-prompt-toolu_8") != nullptr, 5000);
        folder.remove("pending-toolu_8.json");
        QTRY_VERIFY_WITH_TIMEOUT(coordinator.find("agent-prompt-toolu_8") == nullptr, 5000);
    }

    // A call the team denied shows as a short notice that leaves by itself, never as a question.
    void teamDenialIsAShortNotice()
    {
        test::TempHome home;
        Published published;
        PromptCard card;
        card.id = QStringLiteral("claude-s-9");
        card.tool = QStringLiteral("Bash");
        emit published.manager->promptDeniedByTeam(card, "Denied by your team's rule: never run git push*");
        const LiveActivity* live = published.coordinator.find("agent-team-denied-claude-s-9");
        QVERIFY(live);
        QCOMPARE(live->content.kind(), ActivityContent::Kind::teamNotice);
        QCOMPARE(live->text.title, QStringLiteral("Denied by the team"));
        QCOMPARE(live->text.detail, QStringLiteral("Denied by your team's rule: never run git push*"));
        QVERIFY(published.coordinator.find("agent-prompt-claude-s-9") == nullptr);
        published.clock.advance(Seconds(5));
        QVERIFY(published.coordinator.find("agent-team-denied-claude-s-9") == nullptr);
    }

    // Only a question opens the notch by itself, and only when the person switched that on.
    void onlyAnAllowedQuestionWantsThePageOpened_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QVariant>("openQuestions");
        QTest::addColumn<bool>("wantsPage");
        const QByteArray command = R"({"tool_name":"Bash","tool_input":{"command":"ls"}})";
        const QByteArray question =
            R"({"tool_name":"AskUserQuestion","tool_input":{"questions":[{"question":"Which branch?",)"
            R"("options":[{"label":"main"},{"label":"dev"}]}]}})";
        QTest::newRow("command, questions switch on") << command << QVariant(true) << false;
        QTest::newRow("question, switch absent") << question << QVariant() << false;
        QTest::newRow("question, switch off") << question << QVariant(false) << false;
        QTest::newRow("question, switch on") << question << QVariant(true) << true;
    }
    void onlyAnAllowedQuestionWantsThePageOpened()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QVariant, openQuestions);
        QFETCH(bool, wantsPage);
        test::TempHome home;
        Published published;
        if (openQuestions.isValid())
            published.prefs.setValue(QStringLiteral("agents.openQuestions.v1"), openQuestions);
        ApprovalsFolder(Paths::approvalsFolder()).write("pending-toolu_3.json", payload);
        QTRY_VERIFY_WITH_TIMEOUT(published.coordinator.find("agent-prompt-toolu_3") != nullptr, 5000);
        const auto expected = wantsPage ? std::optional<QString>("agents") : std::nullopt;
        QCOMPARE(published.coordinator.find("agent-prompt-toolu_3")->urgentTab, expected);
        QCOMPARE(published.coordinator.urgentTab(), expected);
    }
};
NORVA_TEST(PromptActivitiesTest)
#include "tst_promptactivities.moc"
