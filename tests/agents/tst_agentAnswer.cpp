#include "JsonText.h"
#include "TestMain.h"

#include "agents/prompts/ApprovalExchange.h"
#include "agents/team/TeamDenyResponder.h"
#include "agents/team/TeamEnforcement.h"

#include <QJsonDocument>
#include <QtTest>

using namespace norva;

// Every body an agent reads from a hook, by agent and phase: the notch's answers to a prompt and the
// team's deny bodies, which must speak the same dialect.
class AgentAnswerTest : public QObject {
    Q_OBJECT

private slots:
    void bodyPerAgentPhaseAndAnswer_data()
    {
        // The waiting hook, which names its agent and phase: a prompt's id, or a never-allow check's key.
        // Then the answer: allow, trusted, deny, team allow, team deny.
        QTest::addColumn<QString>("hookAndAnswer");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray team = "Denied by your team's rule: never run git push*";
        const QByteArray notch = "Denied from the Norva notch";
        // The three envelopes: Claude Code's and Codex's PreToolUse, their PermissionRequest, Copilot's.
        const auto pre = [](const QByteArray& decision, const QByteArray& reason) {
            return j("{'hookSpecificOutput':{'hookEventName':'PreToolUse','permissionDecision':'") +
                   decision + j("','permissionDecisionReason':'") + reason + j("'}}");
        };
        const auto bare = [](const QByteArray& behavior, const QByteArray& message = {}) {
            return j("{'behavior':'") + behavior + j("'") +
                   (message.isEmpty() ? QByteArray() : j(",'message':'") + message + j("'")) + "}";
        };
        const auto perm = [&bare](const QByteArray& behavior, const QByteArray& message = {}) {
            return j("{'hookSpecificOutput':{'hookEventName':'PermissionRequest','decision':") +
                   bare(behavior, message) + "}}";
        };
        // Claude Code's PreToolUse hook (tool-use ids), and every agent's check before a tool runs.
        QTest::newRow("claude pre allow") << "toolu_1 allow" << pre("allow", "Approved from the Norva notch");
        QTest::newRow("claude pre trusted")
            << "toolu_1 trusted" << pre("allow", "Auto-approved from the Norva notch (session trusted)");
        QTest::newRow("claude pre deny") << "toolu_1 deny" << pre("deny", notch);
        QTest::newRow("claude pre team deny") << "claude-pre-3 team deny" << pre("deny", team);
        QTest::newRow("codex pre team deny") << "codex-pre-3 team deny" << pre("deny", team);
        // Permission requests: Codex, and Claude Code's PermissionRequest hook ("claude-" ids).
        QTest::newRow("claude perm allow") << "claude-7 allow" << perm("allow");
        QTest::newRow("claude perm deny") << "claude-7 deny" << perm("deny", notch);
        QTest::newRow("codex allow") << "codex-s-7 allow" << perm("allow");
        QTest::newRow("codex team allow carries no message") << "codex-s-7 team allow" << perm("allow");
        QTest::newRow("codex deny") << "codex-s-7 deny" << perm("deny", notch);
        QTest::newRow("codex perm team deny") << "codex-perm-3 team deny" << perm("deny", team);
        // Copilot CLI reads the bare decision.
        QTest::newRow("copilot allow") << "copilot-s-7 allow" << bare("allow");
        QTest::newRow("copilot deny") << "copilot-s-7 deny" << bare("deny", notch);
        QTest::newRow("copilot team deny") << "copilot-perm-3 team deny" << bare("deny", team);
    }
    void bodyPerAgentPhaseAndAnswer()
    {
        QFETCH(QString, hookAndAnswer);
        const QString hook = hookAndAnswer.section(QLatin1Char(' '), 0, 0);
        const QString answer = hookAndAnswer.section(QLatin1Char(' '), 1);
        QFETCH(QByteArray, expected);
        using D = ApprovalExchange::Decision;
        QJsonObject body;
        if (answer == "team deny") {
            const auto check = TeamDenyResponder::parseName("denycheck-" + hook + ".json");
            QVERIFY(check);
            const TeamRule never{"n", TeamAction::never, TeamSubjectKind::run, "git push*"};
            body = QJsonDocument::fromJson(TeamEnforcement::denyJSON(check->agent, check->phase, never))
                       .object();
        } else if (answer == "team allow") {
            body =
                ApprovalExchange::decisionBody(hook, D::allow, "Allowed by your team's rule: always run ls");
        } else {
            body = ApprovalExchange::decisionBody(hook, answer == "deny"      ? D::deny
                                                        : answer == "trusted" ? D::allowTrusted
                                                                              : D::allow);
        }
        QCOMPARE(body, QJsonDocument::fromJson(expected).object());
    }
};
NORVA_TEST(AgentAnswerTest)
#include "tst_agentAnswer.moc"
