#include "ExchangeCore.h"
#include "LogCapture.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "activities/LiveActivityCoordinator.h"
#include "agents/AgentPromptActivities.h"
#include "agents/AgentPromptsManager.h"
#include "agents/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QtTest>

using namespace norva;

namespace {

// The exchange on a manual clock at the real now, publishing to a real coordinator.
struct ClockFirst {
    test::ManualClock clock{QDateTime::currentDateTimeUtc()};
};
struct Published : ClockFirst, test::ExchangeCore {
    Published() : test::ExchangeCore(clock), coordinator(clock), activities(*manager, coordinator)
    {
        manager->start();
    }
    LiveActivityCoordinator coordinator;
    AgentPromptActivities activities;
};

} // namespace

// A waiting prompt on the closed notch: published as an agentPrompt activity that wants the Agents
// page, answered through the coordinator's actions, and gone once answered.
class PromptActivitiesTest : public QObject {
    Q_OBJECT
private slots:
    void promptBecomesAnActivityAndLeavesWhenAnswered()
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
        QCOMPARE(live->urgentTab, std::optional<QString>("agents"));
        QCOMPARE(coordinator.urgentTab(), std::optional<QString>("agents"));

        QCOMPARE(coordinator.perform("deny", "agent-prompt-codex-s-5"),
                 LiveActivityCoordinator::Outcome::done);
        QVERIFY(coordinator.find("agent-prompt-codex-s-5") == nullptr);
        QVERIFY(folder.read("resp-codex-s-5")->contains("\"deny\""));
        test::LogCapture log;
        QCOMPARE(coordinator.perform("allow", "agent-prompt-codex-s-5"),
                 LiveActivityCoordinator::Outcome::notLive);
    }

    void promptThatLeavesOnItsOwnTakesItsActivity()
    {
        test::TempHome home;
        Published published;
        LiveActivityCoordinator& coordinator = published.coordinator;
        ApprovalsFolder folder(Paths::approvalsFolder());
        folder.write("pending-toolu_8.json", R"({"tool_name":"Bash","tool_input":{"command":"ls"}})");
        QTRY_VERIFY_WITH_TIMEOUT(coordinator.find("agent-prompt-toolu_8") != nullptr, 5000);
        // The hook gave up (stale heartbeat) or the session ended: the file goes, and so does the activity.
        folder.remove("pending-toolu_8.json");
        QTRY_VERIFY_WITH_TIMEOUT(coordinator.find("agent-prompt-toolu_8") == nullptr, 5000);
        QCOMPARE(coordinator.perform("allow", "agent-prompt-toolu_8"),
                 LiveActivityCoordinator::Outcome::notLive);
    }
};
NORVA_TEST(PromptActivitiesTest)
#include "tst_promptactivities.moc"
