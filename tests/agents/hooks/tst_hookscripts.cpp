#include "HookRunner.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/prompts/ApprovalExchange.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace norva;
using test::HookRunner;

namespace {

const QByteArray denyBody =
    R"({"hookSpecificOutput":{"hookEventName":"PreToolUse","permissionDecision":"deny","permissionDecisionReason":"Denied by your team's rule: never run git push*"}})";

// Claude Code's payloads as 2.1.330 sends them (recorded from a real session), key for key.
QByteArray claudePayload(const QString& tool, const QString& mode, const QString& id,
                         const QString& session = "s-1")
{
    return QStringLiteral(
               R"({"session_id":"%4","transcript_path":"/tmp/t.jsonl","cwd":"/work/app","prompt_id":"32b2e892-1542-4194-b7c4-0890f0e67016","permission_mode":"%2","effort":{"level":"medium"},"hook_event_name":"PreToolUse","tool_name":"%1","tool_input":{"command":"git push","description":"Push"},"tool_use_id":"%3"})")
        .arg(tool, mode, id, session)
        .toUtf8();
}

QByteArray claudePermissionPayload(const QString& mode = "default", const QString& session = "s-1")
{
    return QStringLiteral(
               R"({"session_id":"%2","transcript_path":"/tmp/t.jsonl","cwd":"/work/app","prompt_id":"32b2e892-1542-4194-b7c4-0890f0e67016","permission_mode":"%1","effort":{"level":"medium"},"hook_event_name":"PermissionRequest","tool_name":"Bash","tool_input":{"command":"touch made-by-claude","description":"run it"},"permission_suggestions":[{"type":"addDirectories","directories":["/work/app"],"destination":"session"},{"type":"setMode","mode":"acceptEdits","destination":"session"}]})")
        .arg(mode, session)
        .toUtf8();
}

QByteArray codexPayload(const QString& event, const QString& mode = "default",
                        const QString& session = "cx-1")
{
    return QStringLiteral(
               R"({"session_id":"%3","transcript_path":"/tmp/c.jsonl","cwd":"/work/app","hook_event_name":"%1","permission_mode":"%2","tool_name":"shell","tool_input":{"command":["bash","-lc","ls"]}})")
        .arg(event, mode, session)
        .toUtf8();
}

QByteArray copilotPayload(const QString& session = "cp-1", const QString& prompt = "list files")
{
    return QStringLiteral(
               R"({"sessionId":"%1","cwd":"/work/app","toolName":"bash","toolInput":{"command":"ls","description":"%2"}})")
        .arg(session, prompt)
        .toUtf8();
}

// One agent's call to a hook: the script with its arguments and payload, what the agent reads
// when Norva leaves the prompt to it, and the name a waiting hook gives its pending file.
struct AgentCall {
    QString script;
    QStringList args;
    QByteArray payload;
    QByteArray handBack;
    QString pendingPrefix; // empty: the call never waits for the notch
};

// Every agent's calls by name; `waiting` keeps those that wait for the notch's answer.
QList<std::pair<const char*, AgentCall>> agentCalls(bool waiting = false)
{
    QList<std::pair<const char*, AgentCall>> calls = {
        {"claude permission",
         {"permissionrequest.sh", {}, claudePermissionPayload(), {}, "pending-claude-s-1-"}},
        {"claude tool call", {"pretooluse.sh", {}, claudePayload("Bash", "default", "t4"), {}, {}}},
        {"claude question",
         {"pretooluse.sh", {"question"}, claudePayload("AskUserQuestion", "default", "t5"), {}, {}}},
        {"codex", {"codex-hook.sh", {}, codexPayload("PermissionRequest"), "{}", "pending-codex-cx-1-"}},
        {"copilot",
         {"copilot-hook.sh", {"permissionRequest"}, copilotPayload(), {}, "pending-copilot-cp-1-"}},
    };
    if (waiting)
        calls.removeIf([](const auto& call) { return call.second.pendingPrefix.isEmpty(); });
    return calls;
}

} // namespace

Q_DECLARE_METATYPE(AgentCall)

// The hook scripts, run for real with sh on real payloads: liveness, the wait and its answers, the
// never-allow check, questions, session ends, the identity record and Copilot's autonomy test.
class HookScriptsTest : public QObject {
    Q_OBJECT
private slots:
    void heartbeatAgeDecidesLiveness_data()
    {
        QTest::addColumn<int>("age");
        QTest::addColumn<bool>("alive");
        QTest::newRow("fresh") << 0 << true;
        QTest::newRow("exactly 30 s") << 30 << true;
        QTest::newRow("31 s") << 31 << false;
        QTest::newRow("missing") << -1 << false;
    }
    void heartbeatAgeDecidesLiveness()
    {
        QFETCH(int, age);
        QFETCH(bool, alive);
        test::TempHome home;
        HookRunner hooks(home);
        if (age >= 0)
            hooks.age("heartbeat", age);
        // A question goes to the notch only while Norva is alive.
        const auto result =
            hooks.run("pretooluse.sh", claudePayload("AskUserQuestion", "default", "t1"), {"question"});
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QByteArray());
        QCOMPARE(hooks.exists("pending-t1.json"), alive);
    }

    // A heartbeat found stale is remembered (".stale"), so later calls start no process to read it;
    // the next beat of Norva makes the hooks ask the notch again.
    void staleHeartbeatIsRememberedUntilNorvaBeatsAgain()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.age("heartbeat", 60);
        const QByteArray question = claudePayload("AskUserQuestion", "default", "t20");
        QCOMPARE(hooks.run("pretooluse.sh", question, {"question"}).out, QByteArray());
        QVERIFY(hooks.exists(".stale"));
        hooks.age(".stale", 5);
        QCOMPARE(hooks.run("permissionrequest.sh", claudePermissionPayload()).out, QByteArray());
        QVERIFY(hooks.names("pending-").isEmpty());
        hooks.freshHeartbeat(); // Norva beats again, after the stale one was seen
        hooks.run("pretooluse.sh", question, {"question"});
        QVERIFY(hooks.exists("pending-t20.json"));
    }

    // A waiting hook hands the prompt back to the agent's own flow, in that agent's way, when Norva
    // answers empty (the person chose the terminal) or stops beating.
    void waitingHookHandsBackInEachAgentsWay_data()
    {
        QTest::addColumn<AgentCall>("call");
        QTest::addColumn<bool>("heartbeatStops"); // else Norva answers empty
        for (const bool stops : {false, true}) {
            for (const auto& [name, call] : agentCalls(/*waiting*/ true))
                QTest::addRow("%s, %s", name, stops ? "heartbeat stops" : "empty answer") << call << stops;
        }
    }
    void waitingHookHandsBackInEachAgentsWay()
    {
        QFETCH(AgentCall, call);
        QFETCH(bool, heartbeatStops);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.setEnv("NORVA_COPILOT_ARGS", " ");
        hooks.freshHeartbeat();
        auto process = hooks.start(call.script, call.payload, call.args);
        const QString pending = hooks.waitFor(call.pendingPrefix, ".json");
        QVERIFY(!pending.isEmpty());
        const QString id = pending.mid(8, pending.size() - 8 - 5);
        QTRY_VERIFY(hooks.exists("alive-" + id));
        if (heartbeatStops) {
            hooks.age("heartbeat", 25); // still trusted: the hook keeps waiting
            QVERIFY(!process->waitForFinished(400));
            hooks.age("heartbeat", 31); // Norva stopped beating 31 s ago
        } else {
            hooks.answer("resp-" + id, QByteArray());
        }
        const auto result = HookRunner::finish(*process, heartbeatStops ? 5000 : 20000);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out.trimmed(), call.handBack);
        QVERIFY(hooks.names("pending-").isEmpty());
        QVERIFY(hooks.names("alive-").isEmpty());
        QVERIFY(hooks.names("resp-").isEmpty());
    }

    void noNorvaOrNotchOffMeansNoFilesAndAnImmediateAnswer_data()
    {
        QTest::addColumn<bool>("notchOff"); // Norva alive with the notch's answering off; else no Norva
        QTest::addColumn<AgentCall>("call");
        for (const bool notchOff : {false, true}) {
            for (const auto& [name, call] : agentCalls())
                QTest::addRow("%s, %s", name, notchOff ? "notch off" : "no Norva") << notchOff << call;
        }
    }
    void noNorvaOrNotchOffMeansNoFilesAndAnImmediateAnswer()
    {
        QFETCH(bool, notchOff);
        QFETCH(AgentCall, call);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.setEnv("NORVA_COPILOT_ARGS", " ");
        if (notchOff) {
            hooks.freshHeartbeat();
            hooks.answer("notch-off", QByteArray());
        }
        const auto result = hooks.run(call.script, call.payload, call.args);
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out.trimmed(), call.handBack);
        QVERIFY(hooks.names("pending-").isEmpty());
        QVERIFY(hooks.names("alive-").isEmpty());
    }

    // With Norva alive, a tool call is never held: Claude Code's own rules decide, and only its
    // permission dialog comes to the notch (through permissionrequest.sh). Without team rules the
    // hook touches nothing.
    void toolCallsAreLeftToClaude_data()
    {
        QTest::addColumn<QString>("mode");
        for (const char* mode : {"default", "acceptEdits", "plan"})
            QTest::newRow(mode) << QString::fromLatin1(mode);
    }
    void toolCallsAreLeftToClaude()
    {
        QFETCH(QString, mode);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        const auto result = hooks.run("pretooluse.sh", claudePayload("Bash", mode, "t11"));
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.out, QByteArray());
        QStringList left = QDir(hooks.folder()).entryList(QDir::Files | QDir::Hidden);
        left.removeIf([](const QString& name) { return name.endsWith(".sh"); }); // the installed scripts
        QCOMPARE(left, QStringList{"heartbeat"});
    }

    void neverRulesAreCheckedInEveryMode()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        hooks.answer("team-deny-active", QByteArray());
        auto process = hooks.start("pretooluse.sh", claudePayload("Bash", "acceptEdits", "t6"));
        const QString check = hooks.waitFor("denycheck-claude-pre-", ".json");
        QVERIFY(!check.isEmpty());
        QCOMPARE(test::TempHome::read(hooks.file(check)), claudePayload("Bash", "acceptEdits", "t6"));
        const QString key = check.mid(QStringLiteral("denycheck-").size()).chopped(5);
        hooks.answer("denyresp-" + key, denyBody);
        const auto result = HookRunner::finish(*process);
        QCOMPARE(result.out.trimmed(), denyBody);
        QVERIFY(hooks.names("pending-").isEmpty());
        QVERIFY(hooks.names("denycheck-").isEmpty());
        QVERIFY(hooks.names("denyresp-").isEmpty());

        // No objection: an empty answer lets the call go on to Claude Code's own rules.
        process = hooks.start("pretooluse.sh", claudePayload("Bash", "bypassPermissions", "t7"));
        const QString second = hooks.waitFor("denycheck-claude-pre-", ".json");
        hooks.answer("denyresp-" + second.mid(10).chopped(5), QByteArray());
        const auto passed = HookRunner::finish(*process);
        QCOMPARE(passed.out, QByteArray());
        QCOMPARE(passed.exitCode, 0);
        QVERIFY(hooks.names("pending-").isEmpty());
    }

    // A check nobody answers in time, or no wait at all, is no objection, and leaves no file behind.
    void unansweredCheckMeansNoObjection_data()
    {
        QTest::addColumn<QByteArray>("wait");
        QTest::newRow("no wait") << QByteArray("0");
        QTest::newRow("4 s without an answer") << QByteArray("4");
    }
    void unansweredCheckMeansNoObjection()
    {
        QFETCH(QByteArray, wait);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        hooks.answer("team-deny-active", QByteArray());
        hooks.setEnv("NORVA_DENY_WAIT", wait);
        const auto result = hooks.run("codex-hook.sh", codexPayload("PreToolUse", "bypassPermissions"));
        QCOMPARE(result.out, QByteArray());
        QVERIFY(hooks.names("denycheck-").isEmpty());
        QVERIFY(hooks.names(".dc-").isEmpty());
    }

    void codexBypassIsAllowedAfterTheCheck()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        const auto result =
            hooks.run("codex-hook.sh", codexPayload("PermissionRequest", "bypassPermissions"));
        // The script's own allow speaks the dialect of Norva's answers.
        QCOMPARE(QJsonDocument::fromJson(result.out).object(),
                 ApprovalExchange::decisionBody("codex-cx-1", ApprovalExchange::Decision::allow));
        QVERIFY(hooks.names("pending-").isEmpty());
    }

    void questionLeavesPendingAndPidThenPostToolUseClears()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        const QByteArray question = claudePayload("AskUserQuestion", "default", "q1");
        const auto result = hooks.run("pretooluse.sh", question, {"question"});
        QCOMPARE(result.out, QByteArray());
        QCOMPARE(test::TempHome::read(hooks.file("pending-q1.json")), question);
        QVERIFY(hooks.exists("pending-q1.pid"));
        QVERIFY(!hooks.exists("alive-q1"));
        QCOMPARE(hooks.run("posttooluse.sh", question).exitCode, 0);
        QVERIFY(!hooks.exists("pending-q1.json"));
        QVERIFY(!hooks.exists("pending-q1.pid"));
    }

    void sessionEndRemovesOnlyThatSessionsFiles_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("agent");
        QTest::newRow("codex Stop") << "codex-hook.sh" << QStringList()
                                    << codexPayload("Stop", "default", "S1") << "codex";
        QTest::newRow("copilot sessionEnd")
            << "copilot-hook.sh" << QStringList{"sessionEnd"} << copilotPayload("S1") << "copilot";
        QTest::newRow("copilot, the first line that names a session")
            << "copilot-hook.sh" << QStringList{"sessionEnd"}
            << QByteArray("{\"sessionId\":\"S1\",\n\"sessionId\":\"S2\"}") << "copilot";
    }
    void sessionEndRemovesOnlyThatSessionsFiles()
    {
        QFETCH(QString, script);
        QFETCH(QStringList, args);
        QFETCH(QByteArray, payload);
        QFETCH(QString, agent);
        test::TempHome home;
        HookRunner hooks(home);
        for (const char* name :
             {"pending-%1-S1-11.json", "alive-%1-S1-11", "pending-%1-S2-12.json", "alive-%1-S2-12"})
            hooks.answer(QString::fromLatin1(name).arg(agent), "{}");
        hooks.answer("pending-S1.json", "{}");
        QCOMPARE(hooks.run(script, payload, args).exitCode, 0);
        QVERIFY(!hooks.exists(QStringLiteral("pending-%1-S1-11.json").arg(agent)));
        QVERIFY(!hooks.exists(QStringLiteral("alive-%1-S1-11").arg(agent)));
        QVERIFY(hooks.exists(QStringLiteral("pending-%1-S2-12.json").arg(agent)));
        QVERIFY(hooks.exists(QStringLiteral("alive-%1-S2-12").arg(agent)));
        QVERIFY(hooks.exists("pending-S1.json"));
    }

    void copilotAutonomyKeepsCopilotsOwnRules_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<bool>("card");
        QTest::newRow("--allow-tool=shell") << "copilot --allow-tool=shell" << QStringLiteral("ls") << false;
        QTest::newRow("--allow-tool shell") << "copilot --allow-tool shell" << QStringLiteral("ls") << false;
        QTest::newRow("--yolo") << "copilot --yolo" << QStringLiteral("ls") << false;
        QTest::newRow("--allow-all-paths") << "copilot --allow-all-paths" << QStringLiteral("ls") << false;
        QTest::newRow("--allow-all at the end") << "copilot --allow-all" << QStringLiteral("ls") << false;
        QTest::newRow("/yolo typed inside") << "copilot" << QStringLiteral("/yolo") << true;
        QTest::newRow("similar flag") << "copilot --allow-toolbox" << QStringLiteral("ls") << true;
    }
    void copilotAutonomyKeepsCopilotsOwnRules()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, prompt);
        QFETCH(bool, card);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        hooks.setEnv("NORVA_COPILOT_ARGS", arguments);
        auto process = hooks.start("copilot-hook.sh", copilotPayload("cp-2", prompt), {"permissionRequest"});
        if (card) {
            const QString pending = hooks.waitFor("pending-copilot-cp-2-", ".json");
            QVERIFY(!pending.isEmpty());
            hooks.answer("resp-" + pending.mid(8).chopped(5), R"({"behavior":"allow"})");
        }
        const auto result = HookRunner::finish(*process);
        QCOMPARE(result.out.trimmed(), card ? QByteArray(R"({"behavior":"allow"})") : QByteArray());
        QVERIFY(hooks.names("pending-").isEmpty());
        // The jump-back record is made even when Copilot decides alone.
        QVERIFY(hooks.exists("term-cp-2.json"));
    }

    void copilotAutonomyIsReadFromTheAncestors()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        // The hook's parent carries the flag on its command line, as a copilot started with it would.
        auto process = hooks.start("copilot-hook.sh", copilotPayload("cp-3"), {"permissionRequest"},
                                   {"/bin/sh", "-c", "\"$@\"; exit $?", "copilot", "--allow-all-tools"});
        // The wrapper passes the script and its arguments after the flag; sh sees them as "$@".
        const auto result = HookRunner::finish(*process);
        QCOMPARE(result.out, QByteArray());
        QVERIFY(hooks.names("pending-").isEmpty());
    }

    void copilotPendingCarriesTheTranscriptPath()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        hooks.setEnv("NORVA_COPILOT_ARGS", " ");
        hooks.setEnv("COPILOT_HOME", home.file("cp home"));
        const QByteArray payload = copilotPayload("cp-4");
        auto process = hooks.start("copilot-hook.sh", payload, {"permissionRequest"});
        const QString pending = hooks.waitFor("pending-copilot-cp-4-", ".json");
        QVERIFY(!pending.isEmpty());
        const QByteArray text = test::TempHome::read(hooks.file(pending));
        const QByteArray transcript = home.file("cp home/session-state/cp-4/events.jsonl").toUtf8();
        QCOMPARE(text, "{\"transcript_path\":\"" + transcript + "\"," + payload.mid(1));
        QCOMPARE(QJsonDocument::fromJson(text).object().value("toolName").toString(), QStringLiteral("bash"));
        hooks.answer("resp-" + pending.mid(8).chopped(5), QByteArray());
        QCOMPARE(HookRunner::finish(*process).out, QByteArray());
    }

    void identityRecordNamesTheTerminal_data()
    {
        QTest::addColumn<QString>("terminal");
        for (const char* name : {"gnome-terminal-server", "konsole", "kitty", "alacritty", "wezterm-gui",
                                 "foot", "xterm", "tilix", "ghostty"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void identityRecordNamesTheTerminal()
    {
        QFETCH(QString, terminal);
        test::TempHome home;
        HookRunner hooks(home);
        // A stand-in terminal: the shell under the terminal's name, running the hook as its child.
        const QString fake = home.file("terminals/" + terminal);
        QDir().mkpath(home.file("terminals"));
        QVERIFY(QFile::link("/bin/dash", fake));
        auto process = hooks.start("codex-hook.sh", codexPayload("SessionStart", "default", "ts-1"), {},
                                   {fake, "-c", "\"$@\"; exit $?", "terminal"});
        const qint64 terminalPid = process->processId();
        QCOMPARE(HookRunner::finish(*process).exitCode, 0);
        const QByteArray record = test::TempHome::read(hooks.file("term-ts-1.json"));
        const QJsonObject identity = QJsonDocument::fromJson(record).object();
        QCOMPARE(identity.keys().size(), 8);
        QVERIFY(record.startsWith("{\"transcript_path\":\"/tmp/c.jsonl\",\"cwd\":\"/work/app\",\"tty\":"));
        QCOMPARE(identity.value("term_pid").toString(), QString::number(terminalPid));
    }

    void identityIsRefreshedOnlyWhenOld()
    {
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        hooks.answer("term-s-9.json", "old");
        hooks.age("term-s-9.json", 200);
        hooks.run("pretooluse.sh", claudePayload("AskUserQuestion", "default", "t11", "s-9"), {"question"});
        QCOMPARE(test::TempHome::read(hooks.file("term-s-9.json")), QByteArray("old"));
        hooks.age("term-s-9.json", 301);
        hooks.run("pretooluse.sh", claudePayload("Bash", "default", "t12", "s-9"));
        QCOMPARE(test::TempHome::read(hooks.file("term-s-9.json")),
                 QByteArray("old")); // a tool call leaves it
        hooks.run("pretooluse.sh", claudePayload("AskUserQuestion", "default", "t13", "s-9"), {"question"});
        const QJsonObject identity =
            QJsonDocument::fromJson(test::TempHome::read(hooks.file("term-s-9.json"))).object();
        QCOMPARE(identity.value("cwd").toString(), QStringLiteral("/work/app"));
        QCOMPARE(identity.value("transcript_path").toString(), QStringLiteral("/tmp/t.jsonl"));
    }

    // The id names the question's file: the last "tool_use_id" on a line wins (a tool input may
    // repeat the key), and one that would leave the folder makes no file at all.
    void questionFileIsNamedByItsId_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QString>("pending"); // empty: no file
        QTest::newRow("the last id on the line")
            << QByteArray(
                   R"({"tool_name":"AskUserQuestion","tool_use_id":"first","tool_input":{"tool_use_id":"last"}})")
            << "pending-last.json";
        QTest::newRow("a slash in the id")
            << claudePayload("AskUserQuestion", "default", "../../escape") << QString();
    }
    void questionFileIsNamedByItsId()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QString, pending);
        test::TempHome home;
        HookRunner hooks(home);
        hooks.freshHeartbeat();
        QCOMPARE(hooks.run("pretooluse.sh", payload, {"question"}).out, QByteArray());
        QCOMPARE(hooks.names("pending-").filter(".json"),
                 pending.isEmpty() ? QStringList() : QStringList{pending});
        QVERIFY(!QFile::exists(home.file(".local/share/escape.json")));
    }
};
NORVA_TEST(HookScriptsTest)
#include "tst_hookscripts.moc"
