#include "ExchangeCore.h"
#include "JsonText.h"
#include "TempHome.h"
#include "TestMain.h"

#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/CodexHook.h"
#include "agents/hooks/CopilotCLIHook.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/ApprovalExchange.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <utime.h>

using namespace norva;

namespace {

// The command each agent would run, read back from the configuration Norva installed.
QString firstCommand(const QJsonArray& entries, const QString& key)
{
    const QJsonObject group = entries.last().toObject();
    const QJsonArray hooks =
        group.contains(QStringLiteral("hooks")) ? group.value(QStringLiteral("hooks")).toArray() : entries;
    return hooks.at(0).toObject().value(key).toString();
}

QString installedCommand(const QString& agent)
{
    if (agent == "claude") {
        const QJsonObject hooks = readJson(ApprovalHook::settingsPath()).value("hooks").toObject();
        return firstCommand(hooks.value("PermissionRequest").toArray(), "command");
    }
    if (agent == "codex") {
        const QJsonObject hooks = readJson(CodexHook::hooksPath()).value("hooks").toObject();
        return firstCommand(hooks.value("PermissionRequest").toArray(), "command");
    }
    const QJsonObject hooks = readJson(CopilotCLIHook::documentPath()).value("hooks").toObject();
    return firstCommand(hooks.value("permissionRequest").toArray(), "bash");
}

QByteArray payloadFor(const QString& agent)
{
    if (agent == "claude")
        return R"({"session_id":"e2e-claude","transcript_path":"/tmp/t.jsonl","cwd":"/work/shop","prompt_id":"32b2e892-1542-4194-b7c4-0890f0e67016","permission_mode":"default","effort":{"level":"medium"},"hook_event_name":"PermissionRequest","tool_name":"Bash","tool_input":{"command":"npm publish","description":"Publish"},"permission_suggestions":[{"type":"addDirectories","directories":["/work/shop"],"destination":"session"},{"type":"setMode","mode":"acceptEdits","destination":"session"}]})";
    if (agent == "codex")
        return R"({"session_id":"e2e-codex","transcript_path":"/tmp/c.jsonl","cwd":"/work/shop","hook_event_name":"PermissionRequest","permission_mode":"default","tool_name":"shell","tool_input":{"command":["bash","-lc","npm publish"]}})";
    return R"({"sessionId":"e2e-copilot","cwd":"/work/shop","toolName":"bash","toolInput":{"command":"npm publish"}})";
}

std::unique_ptr<QProcess> startHook(const QString& command, const QByteArray& payload)
{
    auto process = std::make_unique<QProcess>();
    process->start("/bin/sh", {"-c", command});
    process->waitForStarted();
    process->write(payload);
    process->waitForBytesWritten(5000);
    process->closeWriteChannel();
    return process;
}

QByteArray finish(QProcess& process, int timeoutMs = 10000)
{
    if (!process.waitForFinished(timeoutMs))
        process.kill();
    return process.readAllStandardOutput().trimmed();
}

// Norva's core as the app runs it: the real clock, the manager with its heartbeat and folder watch,
// and the Agents page model, with all three agents' hooks installed in a temporary HOME.
struct RunningCore : test::ExchangeCore {
    RunningCore() : test::ExchangeCore(systemClock())
    {
        ApprovalHook::install();
        CodexHook::install();
        CopilotCLIHook::install();
        manager->start();
    }
};

} // namespace

// End to end: a real agent payload piped into the installed hook, the card on the Agents page, the
// person's answer through the card's model, and what the hook prints back to the agent.
class ExchangeEndToEndTest : public QObject {
    Q_OBJECT
private slots:
    // The bodies themselves are checked once, in the answers' own table (tst_agentAnswer): here the
    // hook must hand the agent exactly what Norva wrote, or its own way back when Norva lets go.
    void answerFromTheCardReachesTheAgent_data()
    {
        QTest::addColumn<QString>("agent");
        QTest::addColumn<QString>("action");
        for (const char* agent : {"claude", "codex", "copilot"}) {
            for (const char* action : {"allow", "deny", "release"})
                QTest::addRow("%s %s", agent, action) << agent << action;
        }
    }
    void answerFromTheCardReachesTheAgent()
    {
        QFETCH(QString, agent);
        QFETCH(QString, action);
        test::TempHome home;
        RunningCore core;
        auto hook = startHook(installedCommand(agent), payloadFor(agent));
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 10000);
        const QVariantMap card = core.model->cards()->get(0);
        QCOMPARE(card.value("subject").toString(), QStringLiteral("npm publish"));
        QCOMPARE(card.value("folder").toString(), QStringLiteral("shop"));
        const QString id = card.value("id").toString();
        const bool done = action == "allow"  ? core.model->allow(id)
                          : action == "deny" ? core.model->deny(id)
                                             : core.model->answerInTerminal(id);
        QVERIFY(done);
        const QByteArray out = finish(*hook);
        QCOMPARE(hook->exitCode(), 0);
        if (action == "release") {
            QCOMPARE(out, QByteArray(agent == "codex" ? "{}" : "")); // the agent asks in its own way
        } else {
            using D = ApprovalExchange::Decision;
            QCOMPARE(ApprovalExchange::phaseOf(id), HookPhase::permissionRequest); // the body's dialect
            QCOMPARE(QJsonDocument::fromJson(out).object(),
                     ApprovalExchange::decisionBody(id, action == "allow" ? D::allow : D::deny));
        }
        QVERIFY(QDir(Paths::approvalsFolder()).entryList({"pending-*", "alive-*", "resp-*"}).isEmpty());
        QCOMPARE(core.model->count(), 0);
    }

    void killedNorvaHandsThePromptBack()
    {
        test::TempHome home;
        auto core = std::make_unique<RunningCore>();
        auto hook = startHook(installedCommand("claude"), payloadFor("claude"));
        QTRY_COMPARE_WITH_TIMEOUT(core->model->count(), 1, 10000);
        // Killed: no shutdown, the heartbeat simply stops and keeps its last time.
        core.reset();
        const QString heartbeat = Paths::approvalsFolder() + "/heartbeat";
        QVERIFY(QFile::exists(heartbeat));
        QVERIFY(!hook->waitForFinished(300));
        // 31 s without a beat: rather than wait them out, the heartbeat is made 31 s old.
        const time_t stale = static_cast<time_t>(QDateTime::currentSecsSinceEpoch() - 31);
        utimbuf times{stale, stale};
        ::utime(QFile::encodeName(heartbeat).constData(), &times);
        QElapsedTimer handBack;
        handBack.start();
        QCOMPARE(finish(*hook, 5000), QByteArray()); // Claude Code shows its own dialog
        QVERIFY(handBack.elapsed() < 2000);          // one round of the wait, not another 30 s
        QVERIFY(QDir(Paths::approvalsFolder()).entryList({"pending-*", "alive-*"}).isEmpty());
    }

    void quittingNorvaHandsBackAtOnce()
    {
        test::TempHome home;
        RunningCore core;
        auto hook = startHook(installedCommand("codex"), payloadFor("codex"));
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 10000);
        core.manager->shutdown();
        QCOMPARE(finish(*hook, 5000), QByteArray("{}"));
    }

    // Esc in Claude Code kills the waiting hook: its card leaves at the next scan, not minutes later.
    void cardOfAKilledHookLeaves()
    {
        test::TempHome home;
        RunningCore core;
        auto hook = startHook(installedCommand("claude"), payloadFor("claude"));
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 1, 10000);
        hook->kill();
        hook->waitForFinished(2000);
        QTRY_COMPARE_WITH_TIMEOUT(core.model->count(), 0, 10000); // within one fallback scan (5 s)
        QVERIFY(QDir(Paths::approvalsFolder()).entryList({"pending-*", "alive-*"}).isEmpty());
    }
};
NORVA_TEST(ExchangeEndToEndTest)
#include "tst_exchange_e2e.moc"
