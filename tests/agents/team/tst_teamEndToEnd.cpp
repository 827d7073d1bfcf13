#include "HookRunner.h"
#include "ManualClock.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/ApprovalsFolder.h"
#include "agents/team/TeamPolicy.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

using namespace norva;

namespace {

QByteArray payload(const QString& command, const QString& mode)
{
    return QJsonDocument(QJsonObject{{"session_id", "s-e2e"},
                                     {"transcript_path", "/tmp/t.jsonl"},
                                     {"cwd", "/tmp"},
                                     {"hook_event_name", "PreToolUse"},
                                     {"tool_name", "Bash"},
                                     {"tool_use_id", "toolu_e2e"},
                                     {"permission_mode", mode},
                                     {"tool_input", QJsonObject{{"command", command}}}})
        .toJson(QJsonDocument::Compact);
}

// Runs the installed hook as Claude Code does, the payload on standard input. The event loop keeps
// turning meanwhile, as it does in the running Norva.
test::HookRunner::Result runHook(test::HookRunner& hooks, const QByteArray& input)
{
    const auto sh = hooks.start(QStringLiteral("pretooluse.sh"), input);
    const QDeadlineTimer deadline(20000);
    while (sh->state() != QProcess::NotRunning && !deadline.hasExpired())
        QTest::qWait(5);
    return test::HookRunner::finish(*sh);
}

} // namespace

// The whole path of a never rule: Claude Code's real hook in "acceptEdits" mode, the deny-check
// files, and Norva's responder answering them.
class TeamEndToEndTest : public QObject {
    Q_OBJECT
private slots:
    void neverRuleDeniesAHookWhileNorvaRunsAndStepsAsideWhenItDoesNot()
    {
        test::TempHome home;
        test::ManualClock clock;
        PreferencesFile preferences(home.file("config/preferences.toml"));
        SettingsStore settings(preferences);
        test::HookRunner hooks(home);
        const ApprovalsFolder folder(hooks.folder());
        home.write("data/Norva/team-rules.json",
                   R"({"rules":[{"id":"no-push","action":"never","kind":"run","pattern":"git push*"}]})");

        auto policy = std::make_unique<TeamPolicy>(settings, clock, folder.path(),
                                                   home.file("data/Norva/team-rules.json"), QString());
        policy->start();
        QVERIFY(folder.exists("team-deny-active"));
        hooks.freshHeartbeat();
        // A fresh identity record, so the hook spends its time on the check alone.
        QVERIFY(folder.write("term-s-e2e.json", "{}"));

        const auto denied = runHook(hooks, payload("git status && git push origin main", "acceptEdits"));
        QCOMPARE(denied.exitCode, 0);
        const QJsonObject body =
            QJsonDocument::fromJson(denied.out).object().value("hookSpecificOutput").toObject();
        QCOMPARE(body.value("permissionDecision").toString(), QStringLiteral("deny"));
        QCOMPARE(body.value("permissionDecisionReason").toString(),
                 QStringLiteral("Denied by your team's rule: never run git push*"));
        // The hook waits 40 rounds of 0.025 s and then lets the call pass: a deny printed at all is a
        // deny that came within that wait.
        QVERIFY(!folder.exists("pending-toolu_e2e.json")); // never a card in acceptEdits mode
        const QStringList left =
            QDir(folder.path()).entryList({"denycheck-*", "denyresp-*", ".dc-*"}, QDir::Files);
        QCOMPARE(left, QStringList{});

        // A harmless command gets an empty answer: the hook prints nothing and Claude Code goes on.
        const auto harmless = runHook(hooks, payload("git status", "acceptEdits"));
        QCOMPARE(harmless.exitCode, 0);
        QCOMPARE(harmless.out, QByteArray());

        // Norva quits: its heartbeat goes stale and the hook no longer asks (the marker may remain).
        policy.reset();
        hooks.age("heartbeat", 31);
        QVERIFY(folder.exists("team-deny-active"));
        const auto passed = runHook(hooks, payload("git push origin main", "acceptEdits"));
        QCOMPARE(passed.exitCode, 0);
        QCOMPARE(passed.out, QByteArray());
        QCOMPARE(QDir(folder.path()).entryList({"denycheck-*"}, QDir::Files), QStringList{});
    }
};
NORVA_TEST(TeamEndToEndTest)
#include "tst_teamEndToEnd.moc"
