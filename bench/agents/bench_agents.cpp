// Measures the approval exchange on this machine and prints a table:
//   1. the time a hook adds to an agent's tool call when Norva is not running (against `sh` doing
//      nothing but read its input, the floor of any hook);
//   2. the time from a pending file's arrival in the approvals folder to its card;
//   3. the time from Allow on the card to the hook printing its answer.
// Usage: bench_agents [rounds]   (runs in a throw-away HOME)

#include "agents/AgentPromptsManager.h"
#include "agents/AgentsPageModel.h"
#include "agents/ApprovalHook.h"
#include "agents/CodexHook.h"
#include "agents/CopilotCLIHook.h"
#include "agents/HookScripts.h"
#include "agents/PromptAlerts.h"
#include "app/Paths.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QCoreApplication>
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

void row(const char* what, const Figures& f)
{
    std::printf("%-58s %8.1f %8.1f %8.1f\n", what, f.median, f.p90, f.mean);
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

const QByteArray claudePayload =
    R"({"session_id":"bench","transcript_path":"/tmp/t.jsonl","cwd":"/work","hook_event_name":"PreToolUse","tool_name":"Bash","tool_input":{"command":"ls"},"permission_mode":"default","tool_use_id":"toolu_bench"})";

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

    std::printf("rounds: %d\n%-58s %8s %8s %8s\n", rounds, "milliseconds", "median", "p90", "mean");

    // 1. Without Norva.
    std::vector<double> floor, claude, claudeFirst, codex, copilot;
    for (int i = 0; i < rounds; ++i) {
        floor.push_back(runOnce("sh", {"-c", "cat >/dev/null"}, claudePayload));
        claude.push_back(runOnce("sh", {pre}, claudePayload));
        QFile::remove(folder + "/term-bench.json");
        claudeFirst.push_back(runOnce("sh", {pre}, claudePayload));
        codex.push_back(runOnce(
            "sh", {folder + "/codex-hook.sh"},
            R"({"session_id":"bench","hook_event_name":"PermissionRequest","permission_mode":"default","tool_name":"shell"})"));
        copilot.push_back(runOnce("sh", {folder + "/copilot-hook.sh", "permissionRequest"},
                                  R"({"sessionId":"bench","toolName":"bash","toolInput":{"command":"ls"}})"));
    }
    row("floor: sh reading the payload, nothing else", summarise(floor));
    row("pretooluse.sh, Norva not running", summarise(claude));
    row("pretooluse.sh, Norva not running, new session (identity)", summarise(claudeFirst));
    row("codex-hook.sh PermissionRequest, Norva not running", summarise(codex));
    row("copilot-hook.sh permissionRequest, Norva not running", summarise(copilot));

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
        QByteArray payload = claudePayload;
        payload.replace("toolu_bench", QByteArray("toolu_answer_") + QByteArray::number(i));
        QProcess hook;
        hook.start("sh", {pre});
        hook.waitForStarted();
        hook.write(payload);
        hook.waitForBytesWritten();
        hook.closeWriteChannel();
        const QString id = QStringLiteral("toolu_answer_%1").arg(i);
        if (!waitUntil([&] { return manager.prompt(id).has_value(); }, 10000))
            continue;
        QElapsedTimer timer;
        timer.start();
        model.allow(id);
        hook.waitForReadyRead(10000);
        answer.push_back(timer.nsecsElapsed() / 1e6);
        hook.waitForFinished(5000);
    }
    row("Allow on the card -> hook prints the allow body", summarise(answer));
    manager.shutdown();
    return 0;
}
