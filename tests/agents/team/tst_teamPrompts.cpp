#include "ExchangeCore.h"
#include "LogCapture.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/prompts/AgentPromptsManager.h"
#include "agents/team/TeamPolicy.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

using namespace norva;

namespace {

QByteArray bash(const QString& id, const QString& command)
{
    return QJsonDocument(QJsonObject{{"session_id", "s1"},
                                     {"tool_name", "Bash"},
                                     {"tool_use_id", id},
                                     {"tool_input", QJsonObject{{"command", command}}}})
        .toJson(QJsonDocument::Compact);
}

// A running Norva's prompt manager with the team's rules answering before a card shows.
struct Core : test::ManualExchangeCore {
    QString rulesFile = Paths::dataFolder() + "/team-rules.json";
    TeamPolicy policy{settings, clock, Paths::approvalsFolder(), rulesFile, QString()};

    Core()
    {
        QDir().mkpath(Paths::dataFolder());
        QFile out(rulesFile);
        out.open(QIODevice::WriteOnly);
        out.write(R"({"rules":[{"id":"st","action":"always","kind":"run","pattern":"git status*"},
                               {"id":"np","action":"never","kind":"run","pattern":"git push*"}]})");
        out.close();
        policy.start();
        manager->setTeamAnswer([this](const PromptCard& card) {
            return policy.answerFor(CodingAgents::word(card.agent), card.tool, card.input, card.isQuestion);
        });
        manager->start();
    }
};

} // namespace

class TeamPromptsTest : public QObject {
    Q_OBJECT
private slots:
    void alwaysRuleAnswersThePromptWithItsReasonAndNoCardShows()
    {
        test::TempHome home;
        test::LogCapture log;
        Core core;
        core.folder().write("pending-toolu_9.json", bash("toolu_9", "git status --short"));
        core.folder().write("pending-toolu_10.json", bash("toolu_10", "git status; rm -rf build"));
        QTRY_COMPARE_WITH_TIMEOUT(core.manager->prompts().size(), 1, 5000);
        QCOMPARE(core.manager->prompts().first().id, QStringLiteral("toolu_10")); // a chain is never allowed
        const auto answer = core.folder().read("resp-toolu_9");
        QVERIFY(answer);
        const QJsonObject body =
            QJsonDocument::fromJson(*answer).object().value("hookSpecificOutput").toObject();
        QCOMPARE(body.value("permissionDecision").toString(), QStringLiteral("allow"));
        QCOMPARE(body.value("permissionDecisionReason").toString(),
                 QStringLiteral("Allowed by your team's rule: always run git status*"));
        QVERIFY(!core.folder().exists("resp-toolu_10"));
        QCOMPARE(core.alerts.chimes, 1); // only the prompt the person must answer
        QCOMPARE(log.count("Norva team: allowed claude's Bash call (always run git status*)"), 1);

        // Later scans, before the hook takes its answer, neither show it nor answer it again.
        core.manager->scanPending();
        core.clock.advance(Seconds(5));
        QTest::qWait(100);
        QCOMPARE(core.manager->prompts().size(), 1);
        QCOMPARE(log.count("Norva team: allowed"), 1);
    }

    // A never rule denies a prompt that reached the notch in any mode of any agent: the hook gets the
    // team's deny body at once and no card (with its Allow) ever shows.
    void neverRuleDeniesBeforeACardShows_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("decisionPath"); // where the deny sits in the body
        QTest::newRow("claude permission request")
            << "claude-s1-4242"
            << QByteArray(R"({"hook_event_name":"PermissionRequest","tool_name":"Bash",)"
                          R"("tool_input":{"command":"git status && git push origin main"}})")
            << "hookSpecificOutput/decision";
        QTest::newRow("codex")
            << "codex-s2-77"
            << QByteArray(R"({"tool_name":"shell","tool_input":{"command":["bash","-lc","git push"]}})")
            << "hookSpecificOutput/decision";
        QTest::newRow("copilot")
            << "copilot-s3-78"
            << QByteArray(R"({"sessionId":"s3","toolName":"bash","toolInput":{"command":"git push -f"}})")
            << "";
    }
    void neverRuleDeniesBeforeACardShows()
    {
        QFETCH(QString, id);
        QFETCH(QByteArray, payload);
        QFETCH(QString, decisionPath);
        test::TempHome home;
        test::LogCapture log;
        Core core;
        QSignalSpy denied(core.manager.get(), &AgentPromptsManager::promptDeniedByTeam);
        core.folder().write("pending-" + id + ".json", payload);
        QTRY_COMPARE_WITH_TIMEOUT(denied.size(), 1, 5000);
        QCOMPARE(denied.at(0).at(1).toString(),
                 QStringLiteral("Denied by your team's rule: never run git push*"));
        QVERIFY(core.manager->prompts().isEmpty());
        QCOMPARE(core.alerts.chimes, 0);
        const auto answer = core.folder().read("resp-" + id);
        QVERIFY(answer);
        QJsonObject decision = QJsonDocument::fromJson(*answer).object();
        for (const QString& key : decisionPath.split('/', Qt::SkipEmptyParts))
            decision = decision.value(key).toObject();
        QCOMPARE(decision.value("behavior").toString(), QStringLiteral("deny"));
        QCOMPARE(decision.value("message").toString(),
                 QStringLiteral("Denied by your team's rule: never run git push*"));

        core.manager->scanPending();
        QTest::qWait(100);
        QCOMPARE(denied.size(), 1); // answered once
        QVERIFY(core.manager->prompts().isEmpty());
    }
};
NORVA_TEST(TeamPromptsTest)
#include "tst_teamPrompts.moc"
