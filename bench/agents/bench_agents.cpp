// Measures the approval exchange on this machine and prints a table:
//   1. the time a hook adds to an agent's tool call when Norva is not running, and on Claude Code's
//      fast path with Norva running, each also as a ratio to `sh -c true` timed in the same rounds;
//   2. the time from a pending file's arrival in the approvals folder to its card;
//   3. the time from Allow on the card to the hook printing its answer.
// Usage: bench_agents [rounds]   (runs in a throw-away HOME)

#include "agents/hooks/ApprovalHook.h"
#include "agents/hooks/CodexHook.h"
#include "agents/hooks/CopilotCLIHook.h"
#include "agents/hooks/HookScripts.h"
#include "agents/prompts/AgentPromptsManager.h"
#include "agents/prompts/AgentsPageModel.h"
#include "agents/prompts/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace norva;

namespace {

struct Figures {
    double median = 0;
    double p90 = 0;
    double mean = 0;
};

Figures summarise(std::vector<double> ms)
{
    std::sort(ms.begin(), ms.end());
    Figures f;
    if (ms.empty())
        return f;
    f.median = ms[ms.size() / 2];
    f.p90 = ms[std::min(ms.size() - 1, ms.size() * 9 / 10)];
    for (double v : ms)
        f.mean += v;
    f.mean /= double(ms.size());
    return f;
}

void row(const char* what, const Figures& f, double base = 0)
{
    if (base > 0)
        std::printf("%-62s %8.2f %8.2f %8.2f %7.2fx\n", what, f.median, f.p90, f.mean, f.median / base);
    else
        std::printf("%-62s %8.2f %8.2f %8.2f\n", what, f.median, f.p90, f.mean);
}

double runOnce(const QString& program, const QStringList& args, const QByteArray& input)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.start(program, args);
    process.waitForStarted();
    process.write(input);
    process.waitForBytesWritten();
    process.closeWriteChannel();
    process.waitForFinished(30000);
    return timer.nsecsElapsed() / 1e6;
}

// Claude Code 2.1.x payloads of its two events.
const QByteArray claudePayload =
    R"({"session_id":"bench","transcript_path":"/tmp/t.jsonl","cwd":"/work","permission_mode":"default","hook_event_name":"PreToolUse","tool_name":"Bash","tool_input":{"command":"ls"},"tool_use_id":"toolu_bench"})";
const QByteArray claudePermissionPayload =
    R"({"session_id":"bench","transcript_path":"/tmp/t.jsonl","cwd":"/work","permission_mode":"default","hook_event_name":"PermissionRequest","tool_name":"Bash","tool_input":{"command":"ls"},"permission_suggestions":[]})";

void setAge(const QString& path, qint64 seconds)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Append);
    file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-seconds), QFileDevice::FileModificationTime);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(3, atoi(argv[1])) : 20;
    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "COPILOT_HOME"})
        qunsetenv(name);
    ApprovalHook::install();
    CodexHook::install();
    CopilotCLIHook::install();
    const QString folder = Paths::approvalsFolder();
    const QString pre = folder + "/pretooluse.sh";

    const QString permission = folder + "/permissionrequest.sh";
    const QString heartbeat = folder + "/heartbeat";
    std::printf("rounds: %d\n%-62s %8s %8s %8s %8s\n", rounds, "milliseconds", "median", "p90", "mean",
                "/sh -c");

    // 1. Without Norva (no heartbeat, then one 60 s old), and Claude Code's fast path with Norva
    // alive: no team rules, the session's identity record already there, nothing printed.
    std::vector<double> floor, readFloor, claude, claudeStale, permissionFresh, permissionStale, claudeAlive,
        codex, copilot;
    for (int i = 0; i < rounds; ++i) {
        floor.push_back(runOnce("sh", {"-c", "true"}, claudePayload));
        readFloor.push_back(runOnce("sh", {"-c", "cat >/dev/null"}, claudePayload));
        QFile::remove(heartbeat);
        claude.push_back(runOnce("sh", {pre}, claudePayload));
        permissionFresh.push_back(runOnce("sh", {permission}, claudePermissionPayload));
        codex.push_back(runOnce(
            "sh", {folder + "/codex-hook.sh"},
            R"({"session_id":"bench","hook_event_name":"PermissionRequest","permission_mode":"default","tool_name":"shell"})"));
        copilot.push_back(runOnce("sh", {folder + "/copilot-hook.sh", "permissionRequest"},
                                  R"({"sessionId":"bench","toolName":"bash","toolInput":{"command":"ls"}})"));
        setAge(heartbeat, 60);
        claudeStale.push_back(runOnce("sh", {pre}, claudePayload));
        permissionStale.push_back(runOnce("sh", {permission}, claudePermissionPayload));
        setAge(heartbeat, 0);
        claudeAlive.push_back(runOnce("sh", {pre}, claudePayload));
    }
    QFile::remove(heartbeat);
    const double base = summarise(floor).median;
    row("floor: sh -c true", summarise(floor), base);
    row("sh -c 'cat >/dev/null' reading the payload", summarise(readFloor), base);
    row("pretooluse.sh, Norva not running (no heartbeat)", summarise(claude), base);
    row("pretooluse.sh, Norva not running (heartbeat 60 s old)", summarise(claudeStale), base);
    row("permissionrequest.sh, Norva not running (no heartbeat)", summarise(permissionFresh), base);
    row("permissionrequest.sh, Norva not running (heartbeat 60 s old)", summarise(permissionStale), base);
    row("pretooluse.sh, Norva running, no team rules", summarise(claudeAlive), base);
    row("codex-hook.sh PermissionRequest, Norva not running", summarise(codex), base);
    row("copilot-hook.sh permissionRequest, Norva not running", summarise(copilot), base);

    // 2 and 3. With Norva's core running.
    PreferencesFile prefs(Paths::preferencesFile());
    SettingsStore settings(prefs);
    NoPromptAlerts alerts;
    AgentPromptsManager manager(systemClock(), settings, alerts, folder);
    AgentsPageModel model(manager);
    manager.start();
    waitUntil([] { return false; }, 300); // let the first scan settle

    std::vector<double> arrival;
    ApprovalsFolder approvals(folder);
    for (int i = 0; i < rounds; ++i) {
        const QString id = QStringLiteral("toolu_arrival_%1").arg(i);
        QElapsedTimer timer;
        timer.start();
        approvals.write("pending-" + id + ".json", claudePayload);
        if (waitUntil([&] { return manager.prompt(id).has_value(); }, 10000))
            arrival.push_back(timer.nsecsElapsed() / 1e6);
        manager.releaseToTerminal(id);
        approvals.remove("resp-" + id);
    }
    row("pending file written -> card on the Agents page", summarise(arrival));

    std::vector<double> answer;
    for (int i = 0; i < rounds; ++i) {
        QProcess hook;
        hook.start("sh", {permission});
        hook.waitForStarted();
        hook.write(claudePermissionPayload);
        hook.waitForBytesWritten();
        hook.closeWriteChannel();
        const QString id = QStringLiteral("claude-bench-%1").arg(hook.processId());
        if (!waitUntil([&] { return manager.prompt(id).has_value(); }, 10000))
            continue;
        QElapsedTimer timer;
        timer.start();
        model.allow(id);
        hook.waitForReadyRead(10000);
        answer.push_back(timer.nsecsElapsed() / 1e6);
        hook.waitForFinished(5000);
    }
    row("Allow on the card -> permissionrequest.sh prints the allow body", summarise(answer));
    manager.shutdown();
    return 0;
}
