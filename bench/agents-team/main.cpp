// Measures how fast Norva answers the hooks' never-allow checks: the file round trip alone (a check
// moved into place as the hook does, until its answer exists), and the whole real "pretooluse.sh"
// run in "acceptEdits" mode. Prints median and worst of each.
#include "agents/ApprovalsFolder.h"
#include "agents/hooks/HookScripts.h"
#include "agents/team/TeamPolicy.h"
#include "app/Clock.h"
#include "app/SettingsStore.h"
#include "platform/linux/PreferencesFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace norva;

namespace {

constexpr int kRoundTrips = 1000;
constexpr int kHookRuns = 100;

const QByteArray kPayload =
    R"({"session_id":"bench","tool_name":"Bash","tool_use_id":"t","permission_mode":"acceptEdits",)"
    R"("tool_input":{"command":"make && git push origin main"}})";

void report(const char* what, std::vector<double> samples)
{
    std::sort(samples.begin(), samples.end());
    const double median = samples[samples.size() / 2];
    std::printf("| %-44s | %5zu | %9.3f | %9.3f |\n", what, samples.size(), median, samples.back());
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    PreferencesFile preferences(home.filePath("preferences.toml"));
    SettingsStore settings(preferences);
    const ApprovalsFolder folder(home.filePath("approvals"));
    folder.ensure();
    QFile rules(home.filePath("team-rules.json"));
    rules.open(QIODevice::WriteOnly);
    rules.write(R"({"rules":[{"id":"a","action":"never","kind":"run","pattern":"rm -rf /*"},)"
                R"({"id":"b","action":"never","kind":"run","pattern":"git push*"}]})");
    rules.close();
    TeamPolicy policy(settings, systemClock(), folder.path(), rules.fileName(), QString());
    policy.start();

    std::vector<double> roundTrips;
    for (int index = 0; index < kRoundTrips; ++index) {
        const QString key = QStringLiteral("claude-pre-%1").arg(100000 + index);
        const QString temporary = folder.filePath(QStringLiteral(".dc-") + key);
        const QString check = folder.filePath(QStringLiteral("denycheck-") + key + QStringLiteral(".json"));
        const QString answer = folder.filePath(QStringLiteral("denyresp-") + key);
        QFile out(temporary);
        out.open(QIODevice::WriteOnly);
        out.write(kPayload);
        out.close();
        QElapsedTimer timer;
        timer.start();
        QFile::rename(temporary, check);
        while (!QFileInfo::exists(answer))
            QThread::usleep(50);
        roundTrips.push_back(timer.nsecsElapsed() / 1e6);
        QFile::remove(answer);
        QFile::remove(check);
    }

    HookScripts::write(QStringLiteral("pretooluse.sh"), folder);
    folder.write(QStringLiteral("term-bench.json"), "{}");
    std::vector<double> hookRuns;
    int denied = 0;
    for (int index = 0; index < kHookRuns; ++index) {
        folder.touch(QStringLiteral("heartbeat"), QDateTime::currentDateTime());
        QProcess sh;
        QElapsedTimer timer;
        timer.start();
        sh.start(QStringLiteral("/bin/sh"), {folder.filePath(QStringLiteral("pretooluse.sh"))});
        sh.write(kPayload);
        sh.closeWriteChannel();
        sh.waitForFinished(10000);
        hookRuns.push_back(timer.nsecsElapsed() / 1e6);
        denied += sh.readAllStandardOutput().contains("\"deny\"") ? 1 : 0;
    }

    std::printf("| %-44s | %5s | %9s | %9s |\n", "measure", "runs", "median ms", "worst ms");
    std::printf("|%s|%s|%s|%s|\n", "----------------------------------------------", "-------", "-----------",
                "-----------");
    report("deny-check file round trip (check to answer)", roundTrips);
    report("whole pretooluse.sh run, acceptEdits, denied", hookRuns);
    std::printf("\n%d of %d hook runs printed the deny body.\n", denied, kHookRuns);
    return 0;
}
