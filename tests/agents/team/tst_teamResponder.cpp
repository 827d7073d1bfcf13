#include "JsonText.h"
#include "LogCapture.h"
#include "TableRows.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/team/TeamDenyResponder.h"
#include "agents/team/TeamRules.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace norva;

namespace {

const QList<TeamRule> kRules = {
    {"push", TeamAction::never, TeamSubjectKind::run, "git push*"},
    {"env", TeamAction::never, TeamSubjectKind::edit, "*.env"},
    {"status", TeamAction::always, TeamSubjectKind::run, "git status*"},
};

QByteArray bashPayload(const QString& command)
{
    return QJsonDocument(QJsonObject{{"tool_name", "Bash"},
                                     {"tool_input", QJsonObject{{"command", command}}},
                                     {"permission_mode", "acceptEdits"}})
        .toJson(QJsonDocument::Compact);
}

} // namespace

class TeamResponderTest : public QObject {
    Q_OBJECT
private slots:
    void checkNamesSplitIntoFourParts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key");
        test::textRow("claude pre", {"denycheck-claude-pre-4711.json", "claude-pre-4711"});
        test::textRow("codex perm", {"denycheck-codex-perm-1.json", "codex-perm-1"});
        test::textRow("copilot perm", {"denycheck-copilot-perm-99.json", "copilot-perm-99"});
        test::textRow("unknown agent", {"denycheck-gemini-pre-1.json", ""});
        test::textRow("unknown phase", {"denycheck-claude-post-1.json", ""});
        test::textRow("five parts", {"denycheck-claude-pre-1-2.json", ""});
        test::textRow("not a pid", {"denycheck-claude-pre-x1.json", ""});
        test::textRow("temporary name", {".dc-claude-pre-1", ""});
        test::textRow("no suffix", {"denycheck-claude-pre-1", ""});
    }
    void checkNamesSplitIntoFourParts()
    {
        QFETCH(QString, name);
        const auto parsed = TeamDenyResponder::parseName(name);
        QTEST(parsed ? parsed->key() : QString(), "key");
    }

    void answersEachCheckInItsAgentsDialect_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("expectedPath"); // where the deny message sits, empty for no objection
        QTest::newRow("claude pre deny") << "claude-pre-10" << bashPayload("git status && git push")
                                         << "hookSpecificOutput/permissionDecisionReason";
        QTest::newRow("codex pre deny")
            << "codex-pre-11"
            << j("{'tool_name':'local_shell','tool_input':{'command':['bash','-lc','git push']}}")
            << "hookSpecificOutput/permissionDecisionReason";
        QTest::newRow("codex perm deny")
            << "codex-perm-12" << j("{'tool_name':'shell','tool_input':{'command':['git','push']}}")
            << "hookSpecificOutput/decision/message";
        QTest::newRow("copilot perm deny with text arguments")
            << "copilot-perm-13"
            << QJsonDocument(
                   QJsonObject{{"toolName", "bash"}, {"toolInput", "{\"command\":\"git push -f\"}"}})
                   .toJson()
            << "message";
        QTest::newRow("copilot perm deny with object")
            << "copilot-perm-14" << j("{'toolName':'bash','toolInput':{'command':'git push'}}") << "message";
        QTest::newRow("edit deny") << "claude-pre-15"
                                   << j("{'tool_name':'Write','tool_input':{'file_path':'prod.env'}}")
                                   << "hookSpecificOutput/permissionDecisionReason";
        QTest::newRow("harmless") << "claude-pre-16" << bashPayload("git status") << "";
        QTest::newRow("always rule is not applied") << "claude-pre-17" << bashPayload("git status -s") << "";
        QTest::newRow("unreadable payload") << "claude-pre-18" << QByteArray("{not json") << "";
        QTest::newRow("question") << "claude-pre-19" << j("{'tool_name':'AskUserQuestion'}") << "";
    }
    void answersEachCheckInItsAgentsDialect()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, payload);
        QFETCH(QString, expectedPath);
        test::TempHome home;
        const QString folder = home.file("approvals");
        home.write("approvals/denycheck-" + key + ".json", payload);
        TeamDenyResponder responder;
        responder.setRules(kRules);
        QVERIFY(responder.start(folder));
        const QString answer = folder + "/denyresp-" + key;
        QVERIFY(QFile::exists(answer));
        if (expectedPath.isEmpty()) {
            QCOMPARE(QFileInfo(answer).size(), 0);
            return;
        }
        QJsonValue value = readJson(answer);
        for (const QString& step : expectedPath.split('/'))
            value = value.toObject().value(step);
        QVERIFY2(value.toString().startsWith("Denied by your team's rule: never "),
                 qPrintable(value.toString()));
    }

    void neverAnswersTheSameCheckTwice()
    {
        test::TempHome home;
        const QString folder = home.file("approvals");
        home.write("approvals/denycheck-claude-pre-5.json", bashPayload("git push"));
        TeamDenyResponder responder;
        responder.setRules(kRules);
        QVERIFY(responder.start(folder));
        QCOMPARE(responder.answerAll(), 0); // answered at start already
        // The hook removes the answer first, then the check; a scan in between must not answer again.
        QVERIFY(QFile::remove(folder + "/denyresp-claude-pre-5"));
        QCOMPARE(responder.answerAll(), 0);
        QVERIFY(!QFile::exists(folder + "/denyresp-claude-pre-5"));
        // Once the check is gone, the same key (a reused process id) is a new check.
        QVERIFY(QFile::remove(folder + "/denycheck-claude-pre-5.json"));
        QCOMPARE(responder.answerAll(), 0);
        home.write("approvals/denycheck-claude-pre-5.json", bashPayload("ls"));
        QCOMPARE(responder.answerAll(), 1);
    }

    void stoppedResponderLeavesChecksAlone()
    {
        test::TempHome home;
        const QString folder = home.file("approvals");
        QDir().mkpath(folder);
        TeamDenyResponder responder;
        responder.setRules(kRules);
        QVERIFY(responder.start(folder));
        responder.stop();
        home.write("approvals/denycheck-claude-pre-6.json", bashPayload("git push"));
        QCOMPARE(responder.answerAll(), 0);
        QTest::qWait(50);
        QVERIFY(!QFile::exists(folder + "/denyresp-claude-pre-6"));
    }

    void deniedCallIsLoggedWithItsRule()
    {
        test::LogCapture log;
        const QByteArray body = TeamDenyResponder::answerFor(
            {CodingAgent::codex, HookPhase::permissionRequest, "3"}, bashPayload("git push"), kRules);
        QVERIFY(!body.isEmpty());
        QCOMPARE(log.lines(), QStringList{"Norva team: denied codex's Bash call (never run git push*)"});
    }

    void missingFolderIsLoggedAndNotWatched()
    {
        test::TempHome home;
        test::LogCapture log;
        TeamDenyResponder responder;
        QVERIFY(!responder.start(home.file("nowhere")));
        QVERIFY(!responder.isStarted());
        QCOMPARE(log.count("Norva team: never-allow checks in "), 1);
    }
};
NORVA_TEST(TeamResponderTest)
#include "tst_teamResponder.moc"
